#include "Installer/EarlierInstallation.h"

#include <windows.h>

#include <string>

#include "Common/DriverNames.h"
#include "Common/Paths.h"
#include "Common/Status.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Files/FileExists.h"
#include "Registry/RegAccess.h"
#include "Script/CRunState.h"
#include "Script/ScriptAccess.h"
#include "Services/ServiceConfig.h"

namespace {

constexpr char kSessionManagerKey[] = "\\SYSTEM\\CURRENTCONTROLSET\\Control\\Session Manager";
constexpr char kVirtualHidKey[] = "\\SYSTEM\\CURRENTCONTROLSET\\Services\\vhidmini";
constexpr char kVirtualHidName[] = "Tavix Virtual Hid driver";

// Earlier packages lie where 64-bit Windows keeps its own files, so all files are looked at without redirection.
bool IsThere(const std::string &path)
{
    return FileExistsStep(path, true);
}

bool ArePendingRenames()
{
    const RegLocation location{kRootLocalMachine, kSessionManagerKey, std::string()};
    const bool any = !ReadRegStringAt(location, ERegViewProcess, "PendingFileRenameOperations", "", true).empty();
    if (GetLastStatus() == TVXSTATUS_BUFFER_TOO_SMALL) {
        trace(1, "PendingFileRenameOperations is too long to be read and counts as none\n");
    }
    return any;
}

// The first of three paths at which something stands, empty when none does.
std::string FirstThere(const std::string &first, const std::string &second, const std::string &third)
{
    for (const std::string *path : {&first, &second, &third}) {
        if (IsThere(*path)) {
            return *path;
        }
    }
    return std::string();
}

// Takes away the key of the package's former virtual HID driver, so that the run after the restart finds nothing. A
// key of that name that belongs to another device is left alone. When the key was ours, its location stays on the
// stack: the run ends behind its first page, and the teardown empties the stack.
bool RemoveVirtualHidKey()
{
    PushRegLocation(RegLocation{kRootLocalMachine, kVirtualHidKey, std::string()});
    if (!EqualsNoCase(ReadRegString("DisplayName", "", true), kVirtualHidName)) {
        PopRegLocation();
        return false;
    }
    trace(9, "Deleted previous vhidmini key\n");
    WriteRegString("", "", "", REG_SZ); // nothing under no name: the key itself
    return true;
}

} // namespace

bool MustRebootBeforeInstall(const CRunState &run)
{
    const std::string system = run.ExpandMacros("!SYSTEM!");
    const std::string remove = run.ExpandMacros("!PROGRAM FILES!\\Tablet\\Remove.exe");
    const std::string hook = run.ExpandMacros("!SYSTEM!\\tabhook.dll");
    const std::string must = run.ExpandMacros(ReadString("MAIN", "MustUninstallFile", ""));
    const std::string dat = JoinPath(system, GetDriverSplitName(EDS_DatName, CDriverType::Get()));
    const std::string pen = run.ExpandMacros("!SYSTEM!\\drivers\\penclass.sys");

    if (IsServiceConfigDirty()) {
        trace(9, "Service status is dirty\n");
        return true;
    }
    if (ArePendingRenames()) {
        trace(9, "PendingFileRenameOperations exists\n");
        // An old package without what a finished newer one leaves: the removal of the old one is under way. Renames
        // of others, or a finished installation, are no reason to stop.
        const std::string found = FirstThere(must, remove, hook);
        if (!found.empty() && !IsThere(dat) && !IsThere(pen)) {
            trace(9, "Found %s, missing %s and %s\n", found.c_str(), dat.c_str(), pen.c_str());
            return true;
        }
    }
    return RemoveVirtualHidKey();
}
