// Keys, clicks and the wheel.
#include "UI/CInstallerWindow.h"

#include <richedit.h>

#include "Common/Trace.h"
#include "Script/CRunState.h"
#include "UI/WindowCalls.h"

namespace {

bool IsHandledKey(WPARAM key)
{
    return IsPageKey(static_cast<uint32_t>(key)) || key == VK_RETURN || key == VK_ESCAPE;
}

} // namespace

void CInstallerWindow::OnCommand(WORD notification, int id)
{
    switch (notification) {
    case BN_CLICKED:
        Carry(InstallerWindow(), ButtonClick(id, mRun.mDialogState));
        break;
    case BN_SETFOCUS:
        if (id >= EButton129 && id <= EButton132) {
            mFocusButton = ButtonOf(id);
        }
        FocusButton();
        break;
    case EN_SETFOCUS: // the agreement took it
        FocusButton();
        break;
    default:
        break;
    }
}

void CInstallerWindow::OnKey(uint32_t key)
{
    const EControl focus = IdOf(mFocusButton);
    if (key == EKeyTab || key == EKeyLeft || key == EKeyRight) {
        const EControl next = FocusBehindKey(key, focus, Buttons());
        if (next != focus) {
            mFocusButton = ButtonOf(next);
        }
        FocusButton();
    }
    ScrollAgreement(ScrollOfKey(key));
}

void CInstallerWindow::ScrollAgreement(const Scroll &scroll) const
{
    if (mRichEdit != nullptr && scroll.mScrolls) {
        SendToWindow(mRichEdit, scroll.mToEnd ? WM_VSCROLL : EM_SCROLL, scroll.mHow, 0);
    }
}

void CInstallerWindow::FocusButton() const
{
    if (mFocusButton == nullptr) {
        traceExpectation("mFocusButton");
    }
    User32().SetFocus(mFocusButton);
}

PageButtons CInstallerWindow::Buttons() const
{
    return {mButton129 != nullptr, mButton130 != nullptr, mButton131 != nullptr, mButton132 != nullptr};
}

EControl CInstallerWindow::IdOf(HWND button) const
{
    if (button == nullptr) {
        return ENoControl;
    }
    return button == mButton129   ? EButton129
           : button == mButton130 ? EButton130
           : button == mButton131 ? EButton131
           : button == mButton132 ? EButton132
                                  : ENoControl;
}

LRESULT CInstallerWindow::ButtonProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    const auto *const asked = reinterpret_cast<const MSG *>(lParam);
    switch (message) {
    case WM_KEYDOWN:
        if (IsPageKey(static_cast<uint32_t>(wParam))) {
            SendToWindow(InstallerWindow(), WM_CHAR, wParam, lParam);
        }
        break;
    case WM_KEYUP: {
        const EControl clicked = ButtonOfKey(static_cast<uint32_t>(wParam), IdOf(hwnd), Buttons());
        if (clicked != ENoControl) {
            SendToWindow(InstallerWindow(), WM_COMMAND, MAKEWPARAM(clicked, BN_CLICKED),
                         reinterpret_cast<LPARAM>(hwnd));
        }
        break;
    }
    case WM_GETDLGCODE:
        // The keys that are handled here are kept from the dialog manager of the message loop. It would take Tab and
        // the arrows for itself, and press the focused button a first time when Return goes down; the second, when it
        // comes up, is the one that is wanted.
        if (asked != nullptr && asked->message == WM_KEYDOWN && IsHandledKey(asked->wParam)) {
            return User32().CallWindowProcA(mpButtonProc, hwnd, message, wParam, lParam) | DLGC_WANTMESSAGE;
        }
        break;
    default:
        break;
    }
    return User32().CallWindowProcA(mpButtonProc, hwnd, message, wParam, lParam);
}
