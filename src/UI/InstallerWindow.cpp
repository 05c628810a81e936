// Making, serving and destroying the window.
#include "UI/CInstallerWindow.h"

#include <commctrl.h>

#include <cstring>

#include "Common/Trace.h"
#include "Script/CRunState.h"
#include "UI/BarRules.h"
#include "UI/Threads.h"
#include "UI/WindowCalls.h"

namespace {

constexpr char kClassName[] = "Tavix_WIN_Installer";
constexpr WORD kLargeIcon = 102;
constexpr WORD kSmallIcon = 108;
constexpr UINT_PTR kFlashTimer = 1;
constexpr UINT kFlashMs = 250;
constexpr int kTextWeight = 400;
constexpr int kButtonWeight = 700;
constexpr int kPointsAnInch = 72;

// The one window of the process, for the procedures that Windows calls. Set while the window is there; they run on its
// thread.
CInstallerWindow *gWindow = nullptr;

// A null font, which makes controls draw in the system's, when it cannot be made.
HFONT CreatePageFont(HWND hwnd, int pointSize, int weight, BYTE charSet, const std::string &faceName)
{
    LOGFONTA font = {};
    const HDC dc = User32().GetDC(hwnd);
    font.lfHeight = -MulDiv(pointSize, Gdi32().GetDeviceCaps(dc, LOGPIXELSY), kPointsAnInch);
    User32().ReleaseDC(hwnd, dc);
    font.lfWeight = weight;
    font.lfCharSet = charSet;
    faceName.copy(font.lfFaceName, sizeof font.lfFaceName - 1);
    return Gdi32().CreateFontIndirectA(&font);
}

} // namespace

LRESULT CALLBACK InstallerWndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return gWindow != nullptr ? gWindow->WndProc(hwnd, message, wParam, lParam)
                              : User32().DefWindowProcA(hwnd, message, wParam, lParam);
}

LRESULT CALLBACK ButtonWndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return gWindow != nullptr ? gWindow->ButtonProc(hwnd, message, wParam, lParam)
                              : User32().DefWindowProcA(hwnd, message, wParam, lParam);
}

bool CInstallerWindow::Create(HINSTANCE instance, int showCommand)
{
    mhInstance = instance;
    gWindow = this;
    ComCtl32().InitCommonControls();
    mRichEdit20.Reset(LoadSystemLibrary("RICHED20.DLL"));
    mRichEdit32.Reset(LoadSystemLibrary("RICHED32.DLL"));
    if (!RegisterWindowClass()) {
        traceExpectation("!\"Could not register window class\"");
        return false;
    }
    const HWND window =
        User32().CreateWindowExA(WS_EX_CONTROLPARENT, kClassName, "", WS_BORDER, CW_USEDEFAULT, CW_USEDEFAULT,
                                 CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, mhInstance, nullptr);
    if (window == nullptr) {
        traceExpectation("!\"Could not create window\"");
        return false;
    }
    SetInstallerWindow(window);
    User32().ShowWindow(window, showCommand);
    User32().UpdateWindow(window);
    // Above everything once, without staying there.
    User32().SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    User32().SetWindowPos(window, HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    return true;
}

bool CInstallerWindow::RegisterWindowClass() const
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = InstallerWndProc;
    windowClass.hInstance = mhInstance;
    windowClass.hIcon = User32().LoadIconA(mhInstance, MAKEINTRESOURCEA(kLargeIcon));
    windowClass.hIconSm = User32().LoadIconA(mhInstance, MAKEINTRESOURCEA(kSmallIcon));
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kClassName;
    return User32().RegisterClassExA(&windowClass) != 0;
}

void CInstallerWindow::RunMessageLoop()
{
    MSG message;
    while (User32().GetMessageA(&message, nullptr, 0, 0) != 0) {
        if (!User32().IsDialogMessageA(InstallerWindow(), &message)) {
            User32().TranslateMessage(&message);
            User32().DispatchMessageA(&message);
        }
    }
}

void CInstallerWindow::Close()
{
    mWorkerThread.Reset();
    if (InstallerWindow() != nullptr) {
        traceExpectation("!mhWnd");
        User32().DestroyWindow(InstallerWindow());
    }
    mTextFont.Reset();
    mButtonFont.Reset();
    mRichEdit20.Reset();
    mRichEdit32.Reset();
    gWindow = nullptr;
}

LRESULT CInstallerWindow::WndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        OnCreate(hwnd);
        break;
    case WM_DESTROY:
        OnDestroy();
        return 0;
    case WM_SETFOCUS:
        User32().SetFocus(mFocusButton);
        break;
    case WM_CHAR:
        OnKey(static_cast<uint32_t>(wParam));
        break;
    case WM_COMMAND:
        OnCommand(HIWORD(wParam), LOWORD(wParam));
        break;
    case WM_TIMER:
        if (wParam == kFlashTimer) {
            FlashProgress(false);
        }
        break;
    case WM_MOUSEWHEEL:
        ScrollAgreement(ScrollOfWheel(static_cast<int16_t>(HIWORD(wParam))));
        break;
    case WM_TVX_CLEARCONTROLS:
        ClearControls();
        break;
    case WM_TVX_PROGRESSPAGE:
        CreateProgress(hwnd);
        break;
    case WM_TVX_DONEDIALOG:
        trace(6, "WM_TVX_DONEDIALOG\n");
        ShowEndPage(hwnd);
        break;
    default:
        break;
    }
    return User32().DefWindowProcA(hwnd, message, wParam, lParam);
}

void CInstallerWindow::OnCreate(HWND hwnd)
{
    ReadMetrics(hwnd);
    User32().SetTimer(hwnd, kFlashTimer, kFlashMs, nullptr);
    Carry(hwnd, FirstPage(mRun.mInstallType, mRun.mAgreed));
}

// Sizes and fonts are the language's own.
void CInstallerWindow::ReadMetrics(HWND hwnd)
{
    const std::string section = mRun.mLanguage.GetName();
    const auto number = [this, &section](const char *key, uint32_t otherwise) {
        return mRun.Script().ReadLanguageInteger(section, key, otherwise);
    };
    mMetrics.mTextHeight = BoundedTextHeight(number("TextHeight", static_cast<uint32_t>(mMetrics.mTextHeight)));
    mMetrics.mButtonWidth = static_cast<int32_t>(number("ButtonWidth", static_cast<uint32_t>(mMetrics.mButtonWidth)));
    mMetrics.mButtonHeight =
        static_cast<int32_t>(number("ButtonHeight", static_cast<uint32_t>(mMetrics.mButtonHeight)));
    mMetrics.mTextMargin = BoundedTextMargin(number("TextMargin", mMetrics.mTextMargin));
    const BYTE charSet = number("FontCharSet", 0) != 0 ? DEFAULT_CHARSET : ANSI_CHARSET;
    const std::string face = Words("FontFaceName", "");
    mTextFont.Reset(CreatePageFont(hwnd, mMetrics.mTextHeight, kTextWeight, charSet, face));
    mButtonFont.Reset(CreatePageFont(hwnd, mMetrics.mTextHeight, kButtonWeight, charSet, face));
}

void CInstallerWindow::OnDestroy()
{
    User32().KillTimer(InstallerWindow(), kFlashTimer);
    ClearControls();
    User32().PostQuitMessage(0);
    SetInstallerWindow(nullptr);
}

void CInstallerWindow::FlashProgress(bool reset)
{
    const HWND bar = mProgress.mProgressBar;
    if (bar == nullptr) {
        return;
    }
    mFlashCount = reset ? 0 : mFlashCount + 1;
    SendToWindow(bar, PBM_SETBARCOLOR, 0, static_cast<LPARAM>(BarColour(mFlashCount)));
    if (!reset) {
        // Again, so that the control is painted in its new colour.
        SendToWindow(bar, PBM_SETPOS, mRun.mBarValue, 0);
    }
}
