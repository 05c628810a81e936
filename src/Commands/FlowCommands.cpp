// Commands of the interpreter itself: calling groups, jumping, the trace, the reboot request.
#include "Commands/Commands.h"
#include "Common/Trace.h"
#include "Script/CRunState.h"
#include "Script/Macros.h"
#include "Script/Step.h"

void StepCommand(CStep &step)
{
    const std::string group = ExtractBangName(step.Plain());
    step.Main().CallGroup(group, step.Expanded());
}

void StepSetRebootFlag(CStep &step)
{
    trace(7, "Reboot requested from the script\n");
    step.Main().mRebootRequired = true;
}

void StepIfRebootRequired(CStep &step)
{
    const bool required = step.Main().mRebootRequired;
    trace(7, "IfRebootRequired: %s\n", required ? "yes" : "no");
    BranchOn(step, required, nullptr, nullptr);
}

// The pages cannot be reached from a step; the field is read and that is all.
void StepShowDialog(CStep &step)
{
    step.Plain();
}

void StepLog(CStep &step)
{
    trace(7, "%s\n", step.Plain().c_str());
}

void StepIsComment(CStep &step)
{
    trace(7, "# %s\n", step.Plain().c_str());
}

// A script has one group per language where it needs one, named like the section of the language's words.
void StepLanguage(CStep &step)
{
    step.Main().RunSteps(step.Main().mLanguage.GetName());
}

void StepNULL(CStep &) {}

void StepGoTo(CStep &step)
{
    BranchOn(step, true, nullptr, nullptr);
}

void StepSetDefaultDebugFilePath(CStep &step)
{
    step.Main().mDebugFilePath = step.Expanded();
}

void StepDONE(CStep &step)
{
    step.EndGroup();
}
