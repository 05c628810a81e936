// Steps that only test something and jump, and the flags that some of them test. The words of the outcomes are fixed,
// also where two commands share them: Is64 and Not64 say what IsInk and NotInk say.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "Common/winplats.h"
#include "Devices/DeviceTable.h"
#include "Files/FileExists.h"
#include "Script/CRunState.h"
#include "Script/OSVersion.h"
#include "Script/Step.h"

namespace {

bool IsXPFamily()
{
    return IsOSTypeXP(CSystemState::GetOSType());
}

bool IsRunningVersion(const WantedOSVersion &wanted)
{
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    return GetVersionExA(&version) && wanted.Matches(version.dwMajorVersion, version.dwMinorVersion);
}

bool HasPenService(const CStep &step)
{
    return PenService(step.Main(), step.Main().GetServiceFacts());
}

bool HasTouchService(const CStep &step)
{
    return TouchService(step.Main(), step.Main().GetServiceFacts());
}

void BranchOnFile(CStep &step, bool wanted, bool disableRedirect)
{
    const std::string path = step.Expanded();
    const bool exists = FileExistsStep(path, disableRedirect);
    trace(7, exists ? "%s Exists\n" : "%s does not Exist\n", path.c_str());
    BranchOn(step, exists == wanted, nullptr, nullptr);
}

} // namespace

void StepNotExist(CStep &step)
{
    BranchOnFile(step, false, true);
}

void StepNotExistRedir(CStep &step)
{
    BranchOnFile(step, false, false);
}

void StepExist(CStep &step)
{
    BranchOnFile(step, true, true);
}

void StepExistRedir(CStep &step)
{
    BranchOnFile(step, true, false);
}

void StepProductIDIsAttached(CStep &step)
{
    BranchOn(step, step.Main().IsProductAttached(step.Expanded()), nullptr, nullptr);
}

void StepProductIDIsNotAttached(CStep &step)
{
    BranchOn(step, !step.Main().IsProductAttached(step.Expanded()), nullptr, nullptr);
}

void StepIsWin8(CStep &step)
{
    BranchOn(step, IsOSTypeWin8(CSystemState::GetOSType()), ", IsWin8 goto", ", Not Win8");
}

void StepIsWin7(CStep &step)
{
    const int32_t platform = CSystemState::GetOSType();
    const bool seven = platform == kOSTypeWin7 || platform == kOSTypeWin7HomeBasic || platform == kOSTypeWin7Starter;
    BranchOn(step, seven, ", IsWin7 goto", ", Not Win7");
}

void StepIsVista(CStep &step)
{
    BranchOn(step, CSystemState::GetOSType() == kOSTypeVista, ", IsVista goto", ", Not Vista");
}

void StepIsXP(CStep &step)
{
    BranchOn(step, IsXPFamily(), ", IsXP goto step", ", Not XP");
}

void StepIsXPPro(CStep &step)
{
    BranchOn(step, IsXPFamily() && !IsTabletPC(), ", IsXPPro goto step", ", Not XPPro");
}

void StepIsXPTE(CStep &step)
{
    BranchOn(step, IsXPFamily() && IsTabletPC(), ", IsXPTE goto step", ", Not XPTE");
}

void StepInstallTouchCheck(CStep &step)
{
    BranchOn(step, HasTouchService(step), ", Install touch service", ", Do not install touch");
}

void StepInstallPenCheck(CStep &step)
{
    BranchOn(step, HasPenService(step), ", Install pen service", ", Do not install pen service");
}

void StepInstallBothCheck(CStep &step)
{
    const bool both = HasPenService(step) && HasTouchService(step);
    BranchOn(step, both, ", Install both services", ", Do not install both services");
}

void StepNoDriverRequired(CStep &step)
{
    const bool none = !HasTouchService(step) && !HasPenService(step);
    BranchOn(step, none, ", No driver necessary", ", Some driver components necessary");
}

void StepIsTouchPresent(CStep &step)
{
    BranchOn(step, (step.Main().mDevicePresence & kDeviceTouch) != 0, ", Touch is present", ", Touch is not present");
}

void StepIsPenPresent(CStep &step)
{
    BranchOn(step, PenPresent(step.Main(), step.Main().GetServiceFacts()), ", Pen is present", ", Pen is not present");
}

void StepIsInk(CStep &step)
{
    BranchOn(step, step.Main().mInk != 0, ", Is Ink goto step", ", Not Ink");
}

void StepNotInk(CStep &step)
{
    BranchOn(step, step.Main().mInk == 0, ", Is Not Ink goto step", ", Is Ink");
}

void StepIs64(CStep &step)
{
    BranchOn(step, step.Main().mWin64 != 0, ", Is Ink goto step", ", Not Ink");
}

void StepNot64(CStep &step)
{
    BranchOn(step, step.Main().mWin64 == 0, ", Is Not Ink goto step", ", Is Ink");
}

void StepOSVersion(CStep &step)
{
    const std::string field = step.Plain();
    const bool matches = IsRunningVersion(ParseOSVersion(field));
    trace(7, "Is OS=%s, %s\n", field.c_str(), matches ? "True" : "False");
    BranchOn(step, matches, nullptr, nullptr);
}

void StepSetFlag(CStep &step)
{
    const std::string name = step.Plain();
    const int32_t value = step.Number();
    step.Main().SetFlag(name, value);
    trace(7, ", setting [%s] to [%d]\n", name.c_str(), static_cast<int>(value));
}

void StepCheckFlag(CStep &step)
{
    const std::string name = step.Plain();
    const int32_t value = step.Number();
    const bool equal = step.Main().GetFlag(name) == value;
    trace(7, equal ? ", %s = %d, goto step\n" : ", %s is not %d or does not exist\n", name.c_str(),
          static_cast<int>(value));
    BranchOn(step, equal, nullptr, nullptr);
}
