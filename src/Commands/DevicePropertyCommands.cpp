// The pen class driver, and what is set on or asked of single devices.
#include <windows.h>

#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "Devices/Companion.h"
#include "Devices/CompanionCalls.h"
#include "Devices/DeviceProperties.h"
#include "Devices/PenClass.h"
#include "Devices/TabletQuery.h"
#include "Commands/Commands.h"
#include "Script/CRunState.h"
#include "Script/Step.h"

void StepInstallPenClass(CStep &step)
{
    const std::string file = step.Expanded();
    const int32_t startType = step.Number();
    const DWORD error = GetLastError();
    const bool done = InstallPenClassService(file, static_cast<uint32_t>(startType));
    trace(7, "File %s, StartID %i, Installed %s %i\n", file.c_str(), static_cast<int>(startType), YesNo(done),
          static_cast<int>(error));
}

void StepRemovePenClass(CStep &)
{
    const DWORD error = GetLastError();
    const bool done = RemovePenClassService();
    trace(7, "Removed %s %i\n", YesNo(done), static_cast<int>(error));
}

void StepChangeFriendlyName(CStep &step)
{
    const std::string companion = step.Expanded();
    const auto first = static_cast<uint8_t>(step.Number());
    const auto second = static_cast<uint8_t>(step.Number());
    const auto usage = static_cast<uint8_t>(step.Number());
    const std::string name = step.Plain();
    const DWORD error = GetLastError();
    const bool done = ChangeFriendlyName(companion, first, second, usage, name);
    trace(7, "DLL %s, usage %i, name %s, changed %s %i\n", companion.c_str(), usage, name.c_str(), YesNo(done),
          static_cast<int>(error));
}

void StepQueryISDTabletSize(CStep &)
{
    QueryISDTabletSize();
}

void StepSetDeviceProperties(CStep &step)
{
    const std::string companion = step.Expanded();
    const int32_t value = step.Number();
    CCompanionCalls calls(companion, step.Main(), step.Main().mRebootRequired);
    SetDeviceProperties(step.Main().mDeviceList, CSystemState::GetOSType(), value != 0, companion, calls,
                        step.Main().mRebootRequired);
    trace(7, ", Setting selective suspend with DLL %s: %d\n", companion.c_str(), static_cast<int>(value));
}
