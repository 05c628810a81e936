// The worker, which runs the steps behind the window, and the thread that creeps the bar towards what the steps done so
// far justify. Nobody waits for either; both reach the run only through the process-wide pointer.
#include "UI/Threads.h"

#include "Common/Trace.h"
#include "Script/CRunState.h"
#include "UI/BarRules.h"
#include "UI/WindowCalls.h"
#include "UI/Work.h"

namespace {

constexpr UINT PBM_SETPOS_MESSAGE = WM_USER + 2; // PBM_SETPOS of the progress control

} // namespace

DWORD WINAPI DoWorkByThread(LPVOID)
{
    // Fetched first: the pointer is taken back when the window closes while a message is on its way.
    CRunState *const run = gWinInstallMain;
    if (run == nullptr) {
        return 0;
    }
    trace(6, "DoWorkByThread\n");
    SendToWindow(InstallerWindow(), WM_TVX_CLEARCONTROLS, 0, 0);
    SendToWindow(InstallerWindow(), WM_TVX_PROGRESSPAGE, 0, 0);
    DoWork(*run);
    SendToWindow(InstallerWindow(), WM_TVX_CLEARCONTROLS, 0, 0);
    SendToWindow(InstallerWindow(), WM_TVX_DONEDIALOG, 0, 0);
    return 0;
}

DWORD WINAPI DoProgressByThread(LPVOID)
{
    trace(6, "DoProgressByThread\n");
    while (CRunState *const run = gWinInstallMain) {
        const BarTurn turn = NextBarTurn(run->mBarValue, run->mBarTarget);
        if (turn.mEnds) {
            break;
        }
        if (turn.mMoves) {
            run->SetBarPosition(run->mBarStep, true); // does nothing without a bar
        }
        Sleep(turn.mPauseMs);
    }
    return 0;
}

void CProgressThread::Begin()
{
    mThread.Reset(CreateThread(nullptr, 0, DoProgressByThread, nullptr, 0, nullptr));
}

void CProgressThread::Show(uint32_t position)
{
    SendToWindow(mProgressBar, PBM_SETPOS_MESSAGE, position, 0);
}
