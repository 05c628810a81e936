#include "Actions/DelayedMove.h"

#include <windows.h>

#include "Common/importWin32API.h"

namespace {

// Bound by name at each call, so that a Windows without the entry answers a failure.
bool MoveDelayed(const char *from, const char *to)
{
    const auto moveFileEx =
        BindEntry<BOOL(WINAPI *)(LPCSTR, LPCSTR, DWORD)>(GetModuleHandleA("KERNEL32.DLL"), "MoveFileExA");
    return moveFileEx != nullptr && moveFileEx(from, to, MOVEFILE_DELAY_UNTIL_REBOOT) != FALSE;
}

} // namespace

bool DeleteAtNextBoot(const std::string &from)
{
    return MoveDelayed(from.c_str(), nullptr);
}

bool MoveAtNextBoot(const std::string &from, const std::string &to)
{
    return MoveDelayed(from.c_str(), to.c_str());
}
