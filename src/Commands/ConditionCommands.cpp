// Steps that only test what the run knows and jump, and the flags that some of them test. The words of the outcomes are
// fixed, also where two commands share them: Is64 and Not64 say what IsInk and NotInk say.
#include "Commands/Commands.h"
#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "Devices/DeviceTable.h"
#include "Script/CRunState.h"
#include "Script/Step.h"

namespace {

bool HasPenService(const CStep &step)
{
    return PenService(step.Main(), step.Main().GetServiceFacts());
}

bool HasTouchService(const CStep &step)
{
    return TouchService(step.Main(), step.Main().GetServiceFacts());
}

} // namespace

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
    BranchOn(step, IsOSTypeXP(CSystemState::GetOSType()), ", IsXP goto step", ", Not XP");
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
