#include "Devices/DeviceProperties.h"

#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "Devices/CompanionLine.h"

void SetDeviceProperties(const std::vector<SupportedDevice> &devices, int32_t osType, bool enable,
                         const std::string &companion, CDriverCalls &calls, bool &rebootRequired_O)
{
    if (IsOSTypeXP(osType)) {
        return;
    }
    for (const SupportedDevice &device : devices) {
        if (device.mFound) {
            calls.Run(SelectiveSuspendParameters(enable, device.mId));
            trace(7, "Setting device properties with %s\n (%s)\n", companion.c_str(), SelectiveSuspendVerb(enable));
            rebootRequired_O = true;
        }
    }
}
