#include "UI/WindowCalls.h"

#include "Common/importWin32API.h"

namespace {

// Written by the thread of the window alone. The worker reads it behind the messages that it sends, so that it sees a
// window that stands or none.
HWND volatile gInstallerWindow = nullptr;

} // namespace

LRESULT SendToWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return User32().SendMessageA(window, message, wParam, lParam);
}

HWND InstallerWindow()
{
    return gInstallerWindow;
}

void SetInstallerWindow(HWND window)
{
    gInstallerWindow = window;
}

int ShowMessageBox(const char *text, const char *title, UINT style)
{
    return User32().MessageBoxA(InstallerWindow(), text, title, style);
}

CWaitCursor::CWaitCursor()
{
    if (InstallerWindow() != nullptr) {
        mFormer = User32().SetCursor(User32().LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT)));
    }
}

CWaitCursor::~CWaitCursor()
{
    if (mFormer != nullptr) {
        User32().SetCursor(mFormer);
    }
}
