// Checks for an earlier package on the machine, or for the remains of one that waits for a restart of Windows. They
// write nothing, with the one exception that is told where it happens.
#include "Installer/EarlierInstallation.h"

#include <windows.h>

#include <string>

#include "Actions/FileExists.h"
#include "Actions/Redirection.h"
#include "Actions/RegAccess.h"
#include "Common/DriverNames.h"
#include "Common/FileVersion.h"
#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Common/StringUtilities.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "Common/WinFileVersion.h"
#include "Installer/Commands.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/ScriptAccess.h"
#include "Installer/Step.h"

namespace {

// The services of this package and of its predecessors. One line of the package stands here twice and another one
// not at all; a service of that one may well be marked for deletion.
constexpr const char *kServices[] = {
    "TabletService",    "TabletServicePen", "TabletServiceTavix", "TouchServicePen",   "TouchServiceTavix",
    "TabletServiceISD", "TouchServiceISD",  "VTabletServiceCon",  "VTabletServiceCon", "VTabletServiceISD",
};

constexpr char kSessionManagerKey[] = "\\SYSTEM\\CURRENTCONTROLSET\\Control\\Session Manager";
constexpr char kVirtualHidKey[] = "\\SYSTEM\\CURRENTCONTROLSET\\Services\\vhidmini";
constexpr char kVirtualHidName[] = "Tavix Virtual Hid driver";

// The last package that had pen tablets and built-in ones in one comes before this version.
constexpr char kSplitVersion[] = "5.2.3-0";

// A product, and the version from which on (itself excluded) it does without the virtual HID driver.
struct VirtualHidUser {
    const char *mPath;
    const char *mThreshold;
};
constexpr VirtualHidUser kProUser = {"!PROGFILES!\\Tablet\\Tavix\\Tavix_Tablet.exe", "6.3.0-0"};
constexpr VirtualHidUser kISDUser = {"!PROGFILES!\\Tablet\\ISD\\ISD_Tablet.exe", "7.0.5-0"};
constexpr VirtualHidUser kPenUser = {"!PROGFILES!\\Tablet\\Pen\\Pen_Tablet.exe", "5.3.0-0"};

// Earlier packages lie where 64-bit Windows keeps its own files, so all files are looked at without redirection.
bool IsThere(const std::string &path)
{
    return FileExistsStep(path, true);
}

FileVersion VersionOf(const std::string &path)
{
    const STDisableRedirect redirect(true);
    return ReadProductVersion(AnsiToUtf8(path));
}

// A file without a version counts as old: any version is newer than none.
bool IsThereAndOlder(const std::string &path, const FileVersion &threshold)
{
    return IsThere(path) && IsNewerThan(threshold, VersionOf(path));
}

bool IsClear(CWinInstallMain &main, const VirtualHidUser &user)
{
    const std::string path = main.ExpandMacros(user.mPath);
    return !IsThere(path) || IsNewerThan(VersionOf(path), FileVersion(user.mThreshold, false));
}

bool IsDirty(SC_HANDLE manager, const char *name)
{
    const CServiceHandle service(OpenServiceA(manager, name, SERVICE_ALL_ACCESS));
    if (!service) {
        return false;
    }
    if (ChangeServiceConfigA(service.Get(), SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr, nullptr)) {
        return false;
    }
    trace(10, "ChangeServiceConfig failed %i\n", static_cast<int>(GetLastError()));
    return true;
}

bool ArePendingRenames()
{
    const CRegLocationScope location(RegLocation{kRootLocalMachine, kSessionManagerKey, std::string()});
    return !ReadString("", "PendingFileRenameOperations", "", true).empty();
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
    if (!EqualsNoCase(ReadString("", "DisplayName", "", true), kVirtualHidName)) {
        PopRegLocation();
        return false;
    }
    trace(9, "Deleted previous vhidmini key\n");
    WriteRegString("", "", "", REG_SZ); // nothing under no name: the key itself
    return true;
}

} // namespace

bool IsServiceConfigDirty()
{
    const CServiceHandle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    if (!manager) {
        return false;
    }
    for (const char *name : kServices) {
        if (IsDirty(manager.Get(), name)) {
            return true;
        }
    }
    return false;
}

// Whether remains of an earlier package ask for a restart of Windows before anything is installed. Reads that fail
// have found nothing.
bool CWinInstallMain::MustRebootBeforeInstall()
{
    const std::string system = ExpandMacros("!SYSTEM!");
    const std::string remove = ExpandMacros("!PROGRAM FILES!\\Tablet\\Remove.exe");
    const std::string hook = ExpandMacros("!SYSTEM!\\tabhook.dll");
    const std::string must = ExpandMacros(ReadString("MAIN", "MustUninstallFile", ""));
    const std::string dat = JoinPath(system, GetDriverSplitName(EDS_DatName, mDriverType));
    const std::string pen = ExpandMacros("!SYSTEM!\\drivers\\penclass.sys");

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

// Whether a package is or was installed that had pen tablets and built-in ones in one. Found once, it stays found: the
// script removes that package in the course of the run.
bool CWinInstallMain::DetectPreISDSplit()
{
    const FileVersion split(kSplitVersion, false);
    if (IsThereAndOlder(ExpandMacros("!SYSTEM!\\Pen_Tablet.exe"), split) ||
        (IsThereAndOlder(ExpandMacros("!PROGFILES!\\VTouch\\Remove.exe"), split) &&
         !IsThere(ExpandMacros("!PROGFILES!\\Tablet\\Pen\\Pen_Tablet.exe")))) {
        mPreSplitDetected = true;
    }
    return mPreSplitDetected;
}

// Whether the virtual HID driver may go: no other product on the machine is too old to do without it. The package does
// not look at itself.
bool CWinInstallMain::VHIDObsolete()
{
    switch (mDriverType & kDriverLineMask) {
    case 1: // Consumer
        return IsClear(*this, kISDUser) && IsClear(*this, kProUser);
    case 2: // Professional
        return IsClear(*this, kPenUser) && IsClear(*this, kISDUser);
    case 3: // ISD
        return IsClear(*this, kProUser) && IsClear(*this, kPenUser);
    default:
        return false;
    }
}

void StepDetectPreISDSplit(CStep &step)
{
    BranchOn(step, step.Main().DetectPreISDSplit(), ", PreISD Split detected goto step", ", No old PreISD Split");
}

void StepIfVHIDObsolete(CStep &step)
{
    BranchOn(step, step.Main().VHIDObsolete(), ", VHID Obsolete goto step", ", VHID still needed");
}
