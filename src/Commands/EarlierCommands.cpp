// The conditions on earlier installations.
#include "Commands/Commands.h"
#include "Common/DriverNames.h"
#include "Script/CRunState.h"
#include "Script/PreSplit.h"
#include "Script/Step.h"

void StepDetectPreISDSplit(CStep &step)
{
    BranchOn(step, DetectPreISDSplit(step.Main()), ", PreISD Split detected goto step", ", No old PreISD Split");
}

void StepIfVHIDObsolete(CStep &step)
{
    const bool obsolete = VHIDObsolete(
        CDriverType::Get(), [&](const std::string &path) { return LookUpEarlierProgram(step.Main(), path); });
    BranchOn(step, obsolete, ", VHID Obsolete goto step", ", VHID still needed");
}
