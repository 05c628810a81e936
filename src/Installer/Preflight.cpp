// A later read has the result of the earlier one as its default. So the script wins over the settings, the settings
// over the command line, and a value that equals its default decides nothing.
#include "Installer/Preflight.h"

#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "Installer/PreflightRules.h"
#include "Script/PackageKind.h"

namespace {

constexpr uint32_t kAdministrator = 1;
constexpr uint32_t kProductTablet = 1;
constexpr uint32_t kProductTouchUser = 2;

const char *LowerYesNo(uint32_t value)
{
    return value != 0 ? "yes" : "no";
}

// The switches from the settings, then from the script; INK is read once more behind these, from the OEM's file.
// Answers whether a Windows that the package is not made for is no obstacle.
uint32_t ReadSwitches(RunSwitches &run_I_O, IPreflightFacts &facts)
{
    run_I_O.mInk = facts.Setting("INK", run_I_O.mInk);
    run_I_O.mWinTE = facts.Setting("WINTE", run_I_O.mWinTE);
    run_I_O.mWin64 = facts.Setting("WIN64", run_I_O.mWin64);
    run_I_O.mAllowOEM = facts.Setting("AllowOEM", run_I_O.mAllowOEM);
    const uint32_t obsolete = facts.Setting("Obs", 0);

    const uint32_t allowObsoleteOS = facts.ScriptNumber("OBSOS_OVERRIDE", obsolete);
    run_I_O.mInk = facts.ScriptNumber("INK_OVERRIDE", run_I_O.mInk);
    run_I_O.mWinTE = facts.ScriptNumber("WINTE_OVERRIDE", run_I_O.mWinTE);
    run_I_O.mWin64 = facts.ScriptNumber("WIN64_OVERRIDE", run_I_O.mWin64);
    const uint32_t isdFlag = facts.ScriptNumber("ISD", 0);
    const uint32_t visdFlag = facts.ScriptNumber("VISD", 0);
    const uint32_t touchFlag = facts.ScriptNumber("TOUCH", 0);
    run_I_O.mAllowOEM = facts.ScriptNumber("AllowOEM", run_I_O.mAllowOEM);
    run_I_O.mDriverKind = DriverKindFrom(isdFlag, visdFlag, touchFlag);
    return allowObsoleteOS;
}

// The group to run. A group of the command line makes an installation even of a run that was to remove the package.
void ChooseGroup(CRunState &run_I_O, IPreflightFacts &facts)
{
    if (!run_I_O.mCommandOverride.empty()) {
        run_I_O.mCommand = facts.TextSetting("InstallCommand", run_I_O.mCommandOverride);
        run_I_O.mUninstall = false;
    } else if (run_I_O.mUninstall) {
        run_I_O.mCommand = facts.TextSetting("UninstallCommand", "Uninstall");
    } else {
        run_I_O.mCommand = facts.TextSetting("InstallCommand", "Install");
    }
}

} // namespace

EPreflightAction TakePreflightDecisions(CRunState &run_I_O, IPreflightFacts &facts)
{
    const uint32_t allowObsoleteOS = ReadSwitches(run_I_O, facts);
    facts.RemoveSetting("VInstall");
    run_I_O.mInk = facts.OemInk(run_I_O.mInk);
    ChooseGroup(run_I_O, facts);
    const int32_t osType = facts.OSType();
    if (IsVistaOrLaterPlatform(osType)) {
        run_I_O.mInk = 1; // behind all overrides, which thus have an effect on Windows XP only
    }
    run_I_O.mProductMask |= facts.PathExists(".\\system32\\ISD_Tablet.exe") ? kProductTablet : 0;
    run_I_O.mProductMask |= facts.PathExists(".\\system32\\ISD_TouchUser.exe") ? kProductTouchUser : 0;
    trace(5, "Using mCommand %s; ink %s, TE %s, 64 %s\n", run_I_O.mCommand.c_str(), LowerYesNo(run_I_O.mInk),
          LowerYesNo(run_I_O.mWinTE), LowerYesNo(run_I_O.mWin64));

    // A removal is refused like an installation on a Windows that the package does not know.
    if (allowObsoleteOS == 0 && !IsSupportedPlatform(osType)) {
        trace(1, "Platform not supported\n");
        run_I_O.mInstallType = ENotSupported;
        return EPreflightGoOn;
    }
    // A package for built-in tablets installs on machines that have one; it can be removed anywhere.
    if (run_I_O.mDriverKind == kDriverKindISD && run_I_O.GetFlag("NOHARDWARE_OVERRIDE") == 0 &&
        run_I_O.CountFound() == 0 && !run_I_O.mUninstall) {
        trace(1, "No device found that this package is for\n");
        run_I_O.mInstallType = ENoISDHardware;
        return EPreflightGoOn;
    }
    if (facts.UserAdminType() != kAdministrator) {
        run_I_O.mInstallType = ENonAdmin;
        trace(1, "User is not admin\n");
        return IsVistaOrLaterPlatform(osType) ? EPreflightElevate : EPreflightGoOn;
    }
    if (run_I_O.mUninstall) {
        run_I_O.mInstallType = EUninstallAllowed; // nothing that an earlier installation left keeps a removal away
    } else if (facts.MustRebootBeforeInstall()) {
        run_I_O.mInstallType = ERebootBefore;
        run_I_O.mRebootRequired = true;
    }
    return EPreflightGoOn;
}
