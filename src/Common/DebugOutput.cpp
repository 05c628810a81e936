#include "Common/DebugOutput.h"

#include <windows.h>

#include "Common/Handles.h"

namespace {

// OutputDebugStringA raises an exception and looks the monitor's buffer up at every call, several times the cost of the
// write to the trace file, also when nobody listens. So the monitor is looked for now and then instead.
constexpr DWORD kLookAgainMs = 250;

// The section object that a debug monitor makes: the contract between OutputDebugString and its monitors.
bool IsMonitorThere()
{
    return static_cast<bool>(CHandle(OpenFileMappingA(FILE_MAP_READ, FALSE, "DBWIN_BUFFER")));
}

// KdDebuggerEnabled of KUSER_SHARED_DATA, which every process maps read-only at this address.
bool IsKernelDebugged()
{
    constexpr uintptr_t kKdDebuggerEnabled = 0x7FFE02D4;
    return (*reinterpret_cast<const volatile unsigned char *>(kKdDebuggerEnabled) & 1) != 0;
}

// Read and written by all tracing threads; the worst that a race can do is one look-up more.
volatile DWORD gLastLook = 0;
volatile bool gLooked = false;
volatile bool gMonitorThere = false;

} // namespace

void DebugOutput(const char *message)
{
    const DWORD now = GetTickCount();
    if (!gLooked || now - gLastLook >= kLookAgainMs) {
        gLooked = true;
        gLastLook = now;
        gMonitorThere = IsMonitorThere();
    }
    if (gMonitorThere || IsDebuggerPresent() || IsKernelDebugged()) {
        OutputDebugStringA(message);
    }
}
