// Drivers of all devices found: the HID router, its filter, the serial bridge, bulk touch; and the questions whether
// the router is needed.
#include <windows.h>

#include "Common/DriverNames.h"
#include "Devices/CompanionCalls.h"
#include "Devices/RouterDrivers.h"
#include "Devices/RouterProgram.h"
#include "Commands/Commands.h"
#include "Script/CRunState.h"
#include "Script/Step.h"

namespace {

CCompanionCalls CallsOf(CStep &step)
{
    return CCompanionCalls(step.Expanded(), step.Main(), step.Main().mRebootRequired);
}

RouterProgramLookup LookupOf(CStep &step)
{
    return [&step](const std::string &path) { return LookUpRouterProgram(step.Main().ExpandMacros(path)); };
}

} // namespace

void StepInstallTvxHidRouter(CStep &step)
{
    CCompanionCalls calls = CallsOf(step);
    InstallTvxHidRouter(step.Main().mDeviceList, step.Expanded(), calls);
}

void StepInstallRouterFilter(CStep &step)
{
    CCompanionCalls calls = CallsOf(step);
    InstallRouterFilter(step.Main().mDeviceList, step.Expanded(), calls);
}

void StepInstallSiLabs(CStep &step)
{
    CCompanionCalls calls = CallsOf(step);
    InstallSiLabs(step.Expanded(), calls);
}

void StepRemoveTvxHidRouter(CStep &step)
{
    CCompanionCalls calls = CallsOf(step);
    RemoveTvxHidRouter(step.Main().mDeviceList, calls);
}

void StepRemoveSiLabs(CStep &step)
{
    CCompanionCalls calls = CallsOf(step);
    RemoveSiLabs(calls);
}

void StepInstallBulkTouch(CStep &step)
{
    CCompanionCalls calls = CallsOf(step);
    InstallBulkTouch(step.Main().mDeviceList, step.Expanded(), calls);
}

void StepRemoveBulkTouch(CStep &step)
{
    CCompanionCalls calls = CallsOf(step);
    RemoveBulkTouch(step.Main().mDeviceList, calls);
}

void StepShouldUninstallHidRouter(CStep &step)
{
    BranchOn(step, ShouldUninstallHidRouter(CDriverType::Get() & kDriverLineMask, LookupOf(step)),
             ", Should Uninstall HidRouter goto step", ", HidRouter still needed");
}

void StepProNeedsHidRouter(CStep &step)
{
    BranchOn(step, NeedsHidRouter(ERouterProfessional, LookupOf(step)), ", Pro needs HidRouter goto step",
             ", Pro does not need HidRouter");
}

void StepConNeedsHidRouter(CStep &step)
{
    BranchOn(step, NeedsHidRouter(ERouterConsumer, LookupOf(step)), ", Con needs HidRouter goto step",
             ", Con does not need HidRouter");
}

void StepISDNeedsHidRouter(CStep &step)
{
    BranchOn(step, NeedsHidRouter(ERouterISD, LookupOf(step)), ", ISD needs HidRouter goto step",
             ", ISD does not need HidRouter");
}
