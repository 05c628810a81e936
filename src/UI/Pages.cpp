// Building the pages, and carrying out what their buttons mean.
#include "UI/CInstallerWindow.h"

#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "Common/Trace.h"
#include "Devices/Quillo.h"
#include "Script/CRunState.h"
#include "Script/PreSplit.h"
#include "UI/AgreementFile.h"
#include "UI/Threads.h"
#include "UI/WindowCalls.h"

namespace {

constexpr char kDefaultTitle[] = "Installer";
constexpr char kButtonClass[] = "BUTTON";
constexpr char kTextClass[] = "STATIC";
constexpr char kBarClass[] = "msctls_progress32";
constexpr DWORD kVisibleChild = WS_CHILD | WS_VISIBLE;
constexpr DWORD kButtonStyle = kVisibleChild | WS_TABSTOP | WS_GROUP | BS_NOTIFY | BS_CENTER | BS_VCENTER;
constexpr DWORD kAgreementStyle = kVisibleChild | WS_VSCROLL | WS_BORDER | ES_READONLY | ES_MULTILINE;
constexpr int32_t kPageButtonWidth = 170;

// Centres a window in its parent, or on the screen, and shows it.
void CenterWindow(HWND hwnd, const WindowSize &size)
{
    const HWND parent = User32().GetParent(hwnd);
    RECT area = {};
    User32().GetWindowRect(parent != nullptr ? parent : User32().GetDesktopWindow(), &area);
    const WindowCorner corner = Centred(area.left, area.top, area.right, area.bottom, size);
    User32().SetWindowPos(hwnd, nullptr, corner.mX, corner.mY, size.mWidth, size.mHeight,
                          SWP_SHOWWINDOW | SWP_NOCOPYBITS);
    User32().InvalidateRect(hwnd, nullptr, TRUE);
}

void DestroyControl(HWND &control_I_O)
{
    if (control_I_O != nullptr) {
        User32().DestroyWindow(control_I_O);
        control_I_O = nullptr;
    }
}

} // namespace

// --- what an event leads to ---

void CInstallerWindow::Carry(HWND hwnd, const PageAction &action)
{
    if (action.mClearControls) {
        ClearControls();
    }
    if (action.mPage == EPageLicense) {
        CreateLicense(hwnd);
    } else if (action.mPage != ENoPage) {
        CreatePage(hwnd, KeysOf(action.mPage));
    }
    if (action.mStartWorker) {
        // Without the agreement the worker starts while the window is still being made; its messages find it already.
        SetInstallerWindow(hwnd);
        mWorkerThread.Reset(CreateThread(nullptr, 0, DoWorkByThread, nullptr, 0, nullptr));
        mWorkersBusy += mWorkerThread ? 1 : 0;
    }
    mRun.mRebootNow = mRun.mRebootNow || action.mRebootNow;
    mRun.mDeclined = mRun.mDeclined || action.mDeclined;
    if (action.mClose) {
        User32().PostMessageA(InstallerWindow(), WM_CLOSE, 0, 0);
    }
}

void CInstallerWindow::ShowEndPage(HWND hwnd)
{
    mWorkersBusy = std::max(mWorkersBusy - 1, 0);
    EndFacts facts;
    facts.mUninstall = mRun.mUninstall;
    facts.mFromIFE = mRun.mFromIFE;
    facts.mRebootRequired = mRun.mRebootRequired;
    facts.mDriverKind = mRun.mDriverKind;
    facts.mOldDeskDriver = [this] { return DetectPreISDSplit(mRun) && IsQuilloPresent(); };
    Carry(hwnd, EndDecision(facts));
}

// --- pages ---

void CInstallerWindow::CreatePage(HWND hwnd, const PageKeys &keys)
{
    mMetrics.mButtonWidth = kPageButtonWidth; // a width of the script is for the agreement that comes first
    User32().SetWindowTextA(hwnd, Words(keys.mTitle, kDefaultTitle).c_str());
    const PageLayout layout = LayOutPage(mMetrics, keys.HasLeft(), keys.HasRight());
    if (keys.HasLeft()) {
        MakeButton(hwnd, Words(keys.mLeft, ""), layout.mLeft, keys.LeftId());
    }
    if (keys.HasRight()) {
        MakeButton(hwnd, Words(keys.mRight, ""), layout.mRight, EButton130);
    }
    mTextLabel = MakeControl(hwnd, kTextClass, Words(keys.mText, ""), kVisibleChild | SS_CENTER, layout.mText, 0,
                             mTextFont.Get());
    mFocusButton = ButtonOf(keys.FocusId());
    User32().SetFocus(mFocusButton);
    FinishPage(hwnd, kPageSize);
}

void CInstallerWindow::CreateLicense(HWND hwnd)
{
    User32().SetWindowTextA(hwnd, Words("LicenseTitle", kDefaultTitle).c_str());
    const LicenseLayout layout = LayOutLicense(mMetrics);
    MakeButton(hwnd, Words("AcceptText", "_AcceptText_"), layout.mAccept, EButton129);
    MakeButton(hwnd, Words("DeclineText", "_DeclineText_"), layout.mDecline, EButton132);
    mTextLabel2 = MakeControl(hwnd, kTextClass, Words("LicenseText2", "_LicenseText2_"), kVisibleChild | SS_LEFT,
                              layout.mLowerText, 0, mTextFont.Get());
    mTextLabel = MakeControl(hwnd, kTextClass, Words("LicenseText1", "_LicenseText1_"), kVisibleChild | SS_LEFT,
                             layout.mUpperText, 0, mTextFont.Get());
    mRichEdit = MakeAgreement(hwnd, layout.mAgreement);
    mFocusButton = mButton132; // who presses Return without looking declines
    User32().SetFocus(mFocusButton);
    FinishPage(hwnd, kLicenseSize);
}

// Its text is the file's bytes; the control tells rich text from plain by itself.
HWND CInstallerWindow::MakeAgreement(HWND hwnd, const ControlPlace &place) const
{
    const std::vector<char> text = ReadAgreement(mRun.ExpandMacros(Words("LicenseFile", "_LicenseFile_")));
    const HWND control =
        User32().CreateWindowExA(0, mRichEdit20 ? "RichEdit20A" : "RichEdit", "", kAgreementStyle, 0, 0, 0, 0, hwnd,
                                 reinterpret_cast<HMENU>(EAgreementControl), mhInstance, nullptr);
    if (place.mY < 0) {
        traceExpectation("y >= 0");
    }
    if (place.mHeight < 0) {
        traceExpectation("h >= 0");
    }
    User32().MoveWindow(control, place.mX, place.mY, place.mWidth, place.mHeight, FALSE);
    SendToWindow(control, WM_SETFONT, reinterpret_cast<WPARAM>(mButtonFont.Get()), TRUE);
    if (!text.empty()) {
        ShowAgreement(control, text);
    }
    return control;
}

void CInstallerWindow::CreateProgress(HWND hwnd)
{
    User32().SetWindowTextA(hwnd, Words("ProgressTitle", kDefaultTitle).c_str());
    mProgress.mProgressBar = MakeControl(hwnd, kBarClass, "", kVisibleChild, kBarPlace, 0, nullptr);
    SendToWindow(mProgress.mProgressBar, PBM_SETRANGE, 0, MAKELPARAM(0, PROGRESS_MAX));
    mTextLabel = MakeControl(hwnd, kTextClass, Words("InstallProgress", "_InstallProgress_"), kVisibleChild | SS_CENTER,
                             kProgressTextPlace, 0, mTextFont.Get());
    FinishPage(hwnd, kProgressSize);
    mRun.mBarValue = 0;
    SendToWindow(mProgress.mProgressBar, PBM_SETPOS, 0, 0);
    FlashProgress(true);
}

void CInstallerWindow::ClearControls()
{
    trace(6, "ClearControls\n");
    DestroyControl(mTextLabel);
    DestroyControl(mTextLabel2);
    // The progress thread may still hold the bar's handle behind a DONE step; a message to a window that is gone does
    // nothing.
    DestroyControl(mProgress.mProgressBar);
    DestroyControl(mRichEdit);
    for (HWND *const button : {&mButton129, &mButton130, &mButton132, &mButton131}) {
        if (*button != nullptr) {
            User32().SetWindowLongA(*button, GWL_WNDPROC, reinterpret_cast<LONG>(mpButtonProc));
            DestroyControl(*button);
        }
    }
}

// --- their parts ---

// A word of the language, or what stands in its place where the script has none.
std::string CInstallerWindow::Words(const char *key, const char *placeholder) const
{
    return mRun.Script().ReadLanguageString(mRun.mLanguage.GetName(), key, placeholder);
}

// A control whose place is outside the window is reported and made.
HWND CInstallerWindow::MakeControl(HWND hwnd, const char *windowClass, const std::string &text, DWORD style,
                                   const ControlPlace &place, int id, HFONT font) const
{
    ExpectInside(place);
    const HWND control =
        User32().CreateWindowExA(0, windowClass, text.c_str(), style, place.mX, place.mY, place.mWidth, place.mHeight,
                                 hwnd, reinterpret_cast<HMENU>(id), mhInstance, nullptr);
    if (font != nullptr) {
        SendToWindow(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    }
    return control;
}

HWND CInstallerWindow::MakeButton(HWND hwnd, const std::string &text, const ControlPlace &place, int id)
{
    const HWND button = MakeControl(hwnd, kButtonClass, text, kButtonStyle, place, id, mButtonFont.Get());
    const auto mpTempProc =
        reinterpret_cast<WNDPROC>(User32().SetWindowLongA(button, GWL_WNDPROC, reinterpret_cast<LONG>(ButtonWndProc)));
    if (mpButtonProc == nullptr) {
        mpButtonProc = mpTempProc;
    }
    if (mpButtonProc != mpTempProc) {
        traceExpectation("mpButtonProc == mpTempProc");
    }
    ButtonOf(id) = button;
    return button;
}

HWND &CInstallerWindow::ButtonOf(int id)
{
    switch (id) {
    case EButton129:
        return mButton129;
    case EButton131:
        return mButton131;
    case EButton132:
        return mButton132;
    default:
        return mButton130;
    }
}

// Shows the page, with the marks of the keyboard (the focus, the letters behind Alt), which Windows otherwise hides
// from those who began with the mouse.
void CInstallerWindow::FinishPage(HWND hwnd, const WindowSize &size) const
{
    CenterWindow(hwnd, size);
    SendToWindow(hwnd, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS | UISF_HIDEACCEL), 0);
}
