#include "UI/WindowCalls.h"

#include "Common/importWin32API.h"

namespace {

// Stays loaded: user32 cannot be unloaded sensibly once a thread has used it.
HMODULE WindowSystem()
{
    static const HMODULE library = LoadSystemLibrary("user32.dll");
    return library;
}

template <typename TEntry>
TEntry WindowEntry(const char *name)
{
    return WindowSystem() != nullptr ? BindEntry<TEntry>(WindowSystem(), name) : nullptr;
}

HCURSOR SetCursorTo(HCURSOR cursor)
{
    static const auto setCursor = WindowEntry<decltype(&SetCursor)>("SetCursor");
    return setCursor != nullptr ? setCursor(cursor) : nullptr;
}

} // namespace

LRESULT SendToWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    static const auto send = WindowEntry<decltype(&SendMessageA)>("SendMessageA");
    return send != nullptr ? send(window, message, wParam, lParam) : 0;
}

int ShowMessageBox(HWND owner, const char *text, const char *title, UINT style)
{
    static const auto box = WindowEntry<decltype(&MessageBoxA)>("MessageBoxA");
    return box != nullptr ? box(owner, text, title, style) : 0;
}

CWaitCursor::CWaitCursor(HWND window)
{
    if (window == nullptr) {
        return;
    }
    static const auto load = WindowEntry<decltype(&LoadCursorA)>("LoadCursorA");
    if (load != nullptr) {
        mFormer = SetCursorTo(load(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT)));
    }
}

CWaitCursor::~CWaitCursor()
{
    if (mFormer != nullptr) {
        SetCursorTo(mFormer);
    }
}
