// The calls into the window system that a run may need before, or without, its window. user32 is loaded by the first of
// them: importing it would double the start-up time of a silent run.
#pragma once

#include <windows.h>

// SendMessageA; 0 when there is no window system.
LRESULT SendToWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// The window of the installer, null while there is none. Set by the thread that makes and destroys it.
HWND InstallerWindow();
void SetInstallerWindow(HWND window);

// MessageBoxA in front of the installer's window, waiting for the answer; 0 when no box could be shown.
int ShowMessageBox(const char *text, const char *title, UINT style);

// Shows the wait cursor for the length of a scope when there is a window, and brings the former one back.
class CWaitCursor {
public:
    CWaitCursor();
    ~CWaitCursor();
    CWaitCursor(const CWaitCursor &) = delete;
    CWaitCursor &operator=(const CWaitCursor &) = delete;

private:
    HCURSOR mFormer = nullptr;
};
