// The decisions in front of the first page: group, switches, and the refusals.
//
// A later read has the result of the earlier one as its default. So the script wins over the registry, the registry
// over the command line, and a value that equals its default decides nothing.
#include <windows.h>

#include <algorithm>

#include "Actions/RegAccess.h"
#include "Common/CSystemState.h"
#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Common/TextConversions.h"
#include "Common/TokenSplitter.h"
#include "Common/Trace.h"
#include "Installer/AdminType.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/Elevation.h"
#include "Installer/PreflightRules.h"
#include "Installer/ScriptAccess.h"

namespace {

constexpr char kOemScript[] = ".\\isdoem.dat";
constexpr uint32_t kAdministrator = 1;
constexpr uint32_t kProductTablet = 1;
constexpr uint32_t kProductTouchUser = 2;

const char *LowerYesNo(uint32_t value)
{
    return value != 0 ? "yes" : "no";
}

// What the data file of an OEM says about Ink. Where the file is missing, the includes of the script are asked alone.
uint32_t ReadOemInk(uint32_t defaultValue)
{
    const std::string former = SetConfigFile(kOemScript);
    const uint32_t ink = ReadInteger("MAIN", "INK_OVERRIDE", defaultValue);
    SetConfigFile(former);
    return ink;
}

} // namespace

bool CWinInstallMain::TakePreflightDecisions(uint32_t *result_O)
{
    PreflightFacts facts;
    ReadPreflightSwitches(&facts.mAllowObsoleteOS);
    WriteRegString("", "VInstall", "", REG_SZ); // an empty text takes the value away
    mInk = ReadOemInk(mInk);
    ChooseGroup();
    facts.mOSType = CSystemState::GetOSType();
    if (IsVistaOrLaterPlatform(facts.mOSType)) {
        mInk = 1; // behind all overrides, which thus have an effect on Windows XP only
    }
    mProductMask |= PathExists(".\\system32\\ISD_Tablet.exe") ? kProductTablet : 0;
    mProductMask |= PathExists(".\\system32\\ISD_TouchUser.exe") ? kProductTouchUser : 0;
    trace(5, "Using mCommand %s; ink %s, TE %s, 64 %s\n", mCommand.c_str(), LowerYesNo(mInk), LowerYesNo(mWinTE),
          LowerYesNo(mWin64));

    facts.mDriverKind = mDriverKind;
    facts.mHardwareOverride = GetFlag("NOHARDWARE_OVERRIDE");
    facts.mDevicesFound = static_cast<size_t>(std::count_if(
        mDeviceList.begin(), mDeviceList.end(), [](const SupportedDevice &device) { return device.mFound; }));
    facts.mUninstall = mUninstall;
    mInstallType = DecideBeforeRights(facts);
    if (mInstallType == ENotSupported) {
        trace(1, "Platform not supported\n");
    } else if (mInstallType == ENoISDHardware) {
        trace(1, "No device found that this package is for\n");
    }
    if (mInstallType != EInstallAllowed) {
        return false;
    }
    if (GetUserAdminType() != kAdministrator) {
        mInstallType = ENonAdmin;
        trace(1, "User is not admin\n");
        if (!IsVistaOrLaterPlatform(facts.mOSType)) {
            return false;
        }
        *result_O = RelaunchElevated();
        return true;
    }
    if (mUninstall) {
        mInstallType = EUninstallAllowed; // nothing that an earlier installation left keeps a removal from running
    } else if (MustRebootBeforeInstall()) {
        mInstallType = ERebootBefore;
        mRebootRequired = true;
    }
    return false;
}

// The switches from the registry, then from the script; INK is read once more behind these, from the OEM's file.
void CWinInstallMain::ReadPreflightSwitches(uint32_t *allowObsoleteOS_O)
{
    mInk = ReadInteger("", "INK", mInk);
    mWinTE = ReadInteger("", "WINTE", mWinTE);
    mWin64 = ReadInteger("", "WIN64", mWin64);
    mAllowOEM = ReadInteger("", "AllowOEM", mAllowOEM);
    const uint32_t obsolete = ReadInteger("", "Obs", 0);

    *allowObsoleteOS_O = ReadInteger("MAIN", "OBSOS_OVERRIDE", obsolete);
    mInk = ReadInteger("MAIN", "INK_OVERRIDE", mInk);
    mWinTE = ReadInteger("MAIN", "WINTE_OVERRIDE", mWinTE);
    mWin64 = ReadInteger("MAIN", "WIN64_OVERRIDE", mWin64);
    const uint32_t isdFlag = ReadInteger("MAIN", "ISD", 0);
    const uint32_t visdFlag = ReadInteger("MAIN", "VISD", 0);
    const uint32_t touchFlag = ReadInteger("MAIN", "TOUCH", 0);
    mAllowOEM = ReadInteger("MAIN", "AllowOEM", mAllowOEM);
    mDriverKind = DriverKindFrom(isdFlag, visdFlag, touchFlag);
}

// The group to run. A group of the command line makes an installation even of a run that was to remove the package.
void CWinInstallMain::ChooseGroup()
{
    if (!mCommandOverride.empty()) {
        mCommand = ReadString("", "InstallCommand", mCommandOverride);
        mUninstall = false;
    } else if (mUninstall) {
        mCommand = ReadString("", "UninstallCommand", "Uninstall");
    } else {
        mCommand = ReadString("", "InstallCommand", "Install");
    }
}

// The child has the whole command line, the text of the response file included: that file is gone by now.
uint32_t CWinInstallMain::RelaunchElevated()
{
    trace(2, "Launching elevated process and exiting\n");
    CHandle(mRunningMutex).Reset(); // the child is going to take it
    mRunningMutex = nullptr;
    return RunElevated(AnsiToWide(mCommandLine));
}

// Whether the files that a group needs are all there: those listed under its name in the section OSSupportedFiles,
// given that the section MAIN knows the name. No run calls this by itself.
bool CWinInstallMain::CheckGroupFiles(const std::string &group)
{
    if (ReadString("MAIN", group, "").empty()) {
        trace(5, "Command %s missing from main section\n", group.c_str());
        return false;
    }
    const std::string list = ReadString("OSSupportedFiles", group, "");
    if (list.empty()) {
        return true;
    }
    TokenSplitter items(";", list);
    for (std::string item = items.First(); !items.AtEnd(); item = items.Next()) {
        const std::string path = ExpandMacros(item);
        if (!PathExists(path)) {
            trace(5, "File %s missing\n", path.c_str());
            return false;
        }
    }
    return true;
}
