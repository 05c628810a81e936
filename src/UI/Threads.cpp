// The worker, which runs the steps behind the window, and the thread that creeps the bar towards what the steps done so
// far justify. Nobody waits for either; both reach the run only through the process-wide pointer.
#include "UI/Threads.h"

#include "Common/Trace.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/Progress.h"
#include "UI/WindowCalls.h"

namespace {

constexpr UINT PBM_SETPOS_MESSAGE = WM_USER + 2; // PBM_SETPOS of the progress control
constexpr DWORD kCreepPauseMs = 500;
constexpr DWORD kIdlePauseMs = 100;

void SendBarPosition(const CWinInstallMain &main)
{
    if (main.mBarValue > PROGRESS_MAX) {
        traceExpectation("mBarValue <= PROGRESS_MAX");
    }
    SendToWindow(main.mProgressBar, PBM_SETPOS_MESSAGE, main.mBarValue, 0);
}

} // namespace

DWORD WINAPI DoWorkByThread(LPVOID)
{
    trace(6, "DoWorkByThread\n");
    CWinInstallMain &main = *gWinInstallMain;
    SendToWindow(main.mhWnd, WM_TVX_CLEARCONTROLS, 0, 0);
    SendToWindow(main.mhWnd, WM_TVX_PROGRESSPAGE, 0, 0);
    main.DoWork();
    SendToWindow(main.mhWnd, WM_TVX_CLEARCONTROLS, 0, 0);
    SendToWindow(main.mhWnd, WM_TVX_DONEDIALOG, 0, 0);
    return 0;
}

DWORD WINAPI DoProgressByThread(LPVOID)
{
    trace(6, "DoProgressByThread\n");
    while (CWinInstallMain *const main = gWinInstallMain) {
        if (main->mBarValue >= PROGRESS_MAX) {
            break;
        }
        DWORD pause = kIdlePauseMs;
        if (main->mBarValue < main->mBarTarget) {
            if (main->mProgressBar != nullptr) {
                main->mBarValue += main->mBarStep;
                SendBarPosition(*main);
            }
            pause = kCreepPauseMs;
        }
        Sleep(pause);
    }
    return 0;
}

void CWinInstallMain::StartProgressThread()
{
    mProgressThread = CreateThread(nullptr, 0, DoProgressByThread, nullptr, 0, nullptr);
}

void CWinInstallMain::SetBarPosition(uint32_t value, bool relative)
{
    if (mProgressBar == nullptr) {
        return;
    }
    mBarValue = relative ? mBarValue + value : value;
    SendBarPosition(*this);
}
