// The run with a window.
#include "Common/Trace.h"
#include "Installer/CWinInstallMain.h"

// There are no pages yet: the run goes on as a silent one, and its exit code is that of a silent one.
uint32_t CWinInstallMain::WindowedRun(int)
{
    trace(5, "No window in this version, the run is silent\n");
    return SilentRun();
}
