// Entry of the program.
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "Common/importWin32API.h"
#include "Common/Paths.h"
#include "Common/Trace.h"
#include "Common/TraceFile.h"
#include "Installer/CommandLine.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/Outcomes.h"
#include "Installer/Reboot.h"
#include "Installer/ResponseFiles.h"

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

// `note`: what there is to tell of the time before the trace was open.
uint32_t RunInstaller(const std::string &commandLine, const std::string &note, bool removeRole, HINSTANCE instance,
                      HINSTANCE previousInstance, int showCommand)
{
    const auto tearDown = [](CWinInstallMain *run) { run->TearDown(); }; // and not delete
    const std::unique_ptr<CWinInstallMain, decltype(tearDown)> installer(new CWinInstallMain(commandLine, removeRole),
                                                                         tearDown);
    if (!note.empty()) {
        trace(0, "%s\n", note.c_str());
    }
    const uint32_t result = installer->Run(instance, previousInstance, showCommand);
    trace(7, "[Response Result]\n");
    trace(7, "Resultcode=%d\n", static_cast<int>(result & ~kResultRebootNow));
    return result;
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previousInstance, LPSTR tail, int showCommand)
{
    HardenLibrarySearch();
    SetErrorMode(SEM_FAILCRITICALERRORS); // no box for a drive without a medium, on any thread
    OpenTraceGate();
    const bool removeRole = DecideRole(tail);
    const std::string folder = TempFolder();
    DropOutputResponse(folder);
    const uint32_t result = Guarded([&] {
        std::string commandLine = tail;
        std::string note;
        const std::string response = TakeInputResponse(folder, note);
        if (!response.empty()) {
            commandLine = response + " " + commandLine;
        }
        return RunInstaller(commandLine, note, removeRole, instance, previousInstance, showCommand);
    });

    // The request to reboot stays in the process, and is honoured whatever happens to the exit code.
    const uint32_t exitCode = ExitCodeOf(result);
    WriteOutputResponse(folder, exitCode);
    CloseTraceGate();
    if ((result & kResultRebootNow) != 0) {
        RebootMachine();
    }
    // At once, without the destructors of the process: a worker whose window was closed in the middle of its steps ends
    // with the process and not before.
    ExitProcess(exitCode);
}
