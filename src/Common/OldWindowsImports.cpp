// Entries that the compiler's run-time library imports and Windows XP does not have. Windows refuses to start a program
// with an import that it cannot resolve; an entry defined here is taken from here and not imported.
#include <windows.h>

namespace {
// Milliseconds since the system started, a counter that wraps after 49.7 days. The run-time library measures the
// time-outs of its own locks with it, so a wrap shortens or lengthens one wait and does no other harm.
ULONGLONG WINAPI tickCount()
{
    return GetTickCount();
}
} // namespace

// The pointer through which the run-time library's objects call; its name is fixed by the linker's convention.
extern "C" {
extern ULONGLONG(WINAPI *const gImportGetTickCount64)() __asm__("__imp__GetTickCount64@0");
ULONGLONG(WINAPI *const gImportGetTickCount64)() = tickCount;
}
