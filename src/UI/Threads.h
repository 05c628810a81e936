// The two threads of a run, and the messages by which the worker drives the window.
#pragma once

#include <windows.h>

#include "Common/Handles.h"
#include "Script/Progress.h"

constexpr UINT WM_TVX_CLEARCONTROLS = WM_USER + 1; // destroy all page controls
constexpr UINT WM_TVX_PROGRESSPAGE = WM_USER + 2;  // build the progress page
constexpr UINT WM_TVX_DONEDIALOG = WM_USER + 3;    // the work is over, show the closing page

// Runs the group of the run between a cleared window and the closing page; every message is answered before the next.
DWORD WINAPI DoWorkByThread(LPVOID);

// Moves the bar by one step every half second while it stands below its target; ends when it is full or the run over.
DWORD WINAPI DoProgressByThread(LPVOID);

// The bar and the thread that creeps it.
class CProgressThread : public IProgress {
public:
    bool HasBegun() const override { return static_cast<bool>(mThread); }
    void Begin() override;
    bool HasBar() const override { return mProgressBar != nullptr; }
    void Show(uint32_t position) override;

    // Closes the handle of the thread, for which nobody waits.
    void Close() { mThread.Reset(); }

    // The progress control once the progress page exists, else null. Set by the window's thread while the worker waits
    // for the answer to its message.
    HWND mProgressBar = nullptr;

private:
    CHandle mThread;
};
