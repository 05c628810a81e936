// Entry of the program.
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Common/importWin32API.h"
#include "Common/Trace.h"
#include "Common/TraceFile.h"
#include "Installer/CommandLine.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/Reboot.h"
#include "Installer/ResponseFiles.h"

// The run-time library's copy of the command line; its headers leave the function out.
extern "C" char **__cdecl __p__acmdln();

namespace {

// The longest command line that the platform hands to a process, in characters.
constexpr ptrdiff_t kLongestCommandLine = 0x8000;

// The run-time library cuts the argument tail off its own copy of the command line; nothing in front of that copy is
// ours to read.
bool DecideRole(const char *tail)
{
    const char *const commandLine = *__p__acmdln();
    const bool inside = tail >= commandLine && tail - commandLine < kLongestCommandLine;
    const bool remove = inside && IsRemoveRole(commandLine, tail);
    if (remove) {
        traceAlways("File run as remove\n");
    }
    return remove;
}

uint32_t RunInstaller(const std::string &commandLine, bool removeRole, HINSTANCE instance, HINSTANCE previousInstance,
                      int showCommand)
{
    CWinInstallMain installer(commandLine, removeRole);
    const uint32_t result = installer.Run(instance, previousInstance, showCommand);
    trace(7, "[Response Result]\n");
    trace(7, "Resultcode=%d\n", static_cast<int>(result & ~kResultRebootNow));
    return result;
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previousInstance, LPSTR tail, int showCommand)
{
    HardenLibrarySearch();
    OpenTraceGate();
    const bool removeRole = DecideRole(tail);
    const std::string folder = ResponseFolder();
    std::string commandLine = tail;
    const std::string response = TakeInputResponse(folder);
    if (!response.empty()) {
        commandLine = response + " " + commandLine;
    }

    const uint32_t result = RunInstaller(commandLine, removeRole, instance, previousInstance, showCommand);

    // The request to reboot stays in the process, and is honoured whatever happens to the exit code.
    const bool rebootNow = (result & kResultRebootNow) != 0;
    const uint32_t exitCode = (result & kResultSuppressError) != 0 ? 0 : result & ~kResultRebootNow;
    WriteOutputResponse(folder, exitCode);
    CloseTraceGate();
    if (rebootNow) {
        RebootMachine();
    }
    return static_cast<int>(exitCode);
}
