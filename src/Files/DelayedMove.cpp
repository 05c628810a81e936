#include "Files/DelayedMove.h"

#include <windows.h>

#include "Common/importWin32API.h"

namespace {

bool MoveDelayed(const char *from, const char *to)
{
    return Kernel32().MoveFileExA(from, to, MOVEFILE_DELAY_UNTIL_REBOOT) != FALSE;
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
