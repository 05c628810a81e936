#include "Installer/Reboot.h"

#include <windows.h>

#include "Common/Handles.h"
#include "Common/importWin32API.h"

namespace {

// SHTDN_REASON_FLAG_PLANNED | SHTDN_REASON_MAJOR_HARDWARE | SHTDN_REASON_MINOR_INSTALLATION
constexpr DWORD kPlannedHardwareInstallation = 0x80010002;

void EnableShutdownPrivilege()
{
    CAdvApi32 &advapi = AdvApi32();
    CHandle token;
    if (!advapi.OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, token.Receive())) {
        return;
    }
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    if (advapi.LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &privileges.Privileges[0].Luid)) {
        advapi.AdjustTokenPrivileges(token.Get(), FALSE, &privileges, 0, nullptr, nullptr);
    }
}

} // namespace

void RebootMachine()
{
    EnableShutdownPrivilege();
    User32().ExitWindowsEx(EWX_REBOOT, kPlannedHardwareInstallation);
}
