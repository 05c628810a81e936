// The conditions on earlier installations.
#include "Commands/Commands.h"
#include "Common/DriverNames.h"
#include "Files/EarlierPackages.h"
#include "Script/CRunState.h"
#include "Script/PreSplit.h"
#include "Script/Step.h"

void StepDetectPreISDSplit(CStep &step)
{
    BranchOn(step, DetectPreISDSplit(step.Main()), ", PreISD Split detected goto step", ", No old PreISD Split");
}

void StepIfVHIDObsolete(CStep &step)
{
    const bool obsolete =
        VHIDObsolete(CDriverType::Get(), [&](const std::string &text) { return step.Main().ExpandMacros(text); });
    BranchOn(step, obsolete, ", VHID Obsolete goto step", ", VHID still needed");
}
