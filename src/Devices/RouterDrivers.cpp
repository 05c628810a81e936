#include "Devices/RouterDrivers.h"

#include "Common/Trace.h"
#include "Devices/CompanionLine.h"
#include "Devices/DeviceIds.h"
#include "Devices/DeviceTable.h"

namespace {

// The serial bridge of tablets on a COM port; a foreign chip, so it is no device of the list.
constexpr char kSerialBridge[] = "USB\\VID_10C4&PID_EA60";

constexpr char kVendorFragment[] = "VID_7A1C";

// Calls `work` with the id of each device found whose flags `serves` wants, in the order of the list.
template <typename TServes, typename TWork>
void ForEachFound(const SupportedDevices &devices, TServes serves, TWork work)
{
    for (const SupportedDevice &device : devices) {
        if (device.mFound && serves(device.mFlags)) {
            work(device.mId);
        }
    }
}

// A bulk touch device has none of the router's drivers, and the other way round.
bool ServedByRouter(uint32_t flags)
{
    return (flags & kDeviceNoHidRouter) == 0;
}

bool ServedByBulkTouch(uint32_t flags)
{
    return (flags & kDeviceBulkTouch) != 0;
}

// Windows builds the HID nodes of attached devices anew, above the drivers to come; remembered USB nodes would bring
// the former drivers back.
void ClearOldNodes(CDriverCalls &calls)
{
    calls.Walk("HID", true, true);
    calls.Walk("USB", false, true);
}

} // namespace

void InstallTvxHidRouter(const SupportedDevices &devices, const std::string &inf, CDriverCalls &calls)
{
    trace(1, "InstallTvxHidRouter: %s\n", inf.c_str());
    ClearOldNodes(calls);
    calls.RemoveDeviceInfo("USB", kVendorFragment);
    ForEachFound(devices, ServedByRouter, [&](const std::string &id) { calls.Update(UsbInstanceId(id), inf); });
}

void InstallRouterFilter(const SupportedDevices &devices, const std::string &inf, CDriverCalls &calls)
{
    trace(1, "InstallRouterFilter: %s\n", inf.c_str());
    ForEachFound(devices, ServedByRouter, [&](const std::string &id) { calls.Update(HidInstanceId(id), inf); });
}

void InstallSiLabs(const std::string &inf, CDriverCalls &calls)
{
    trace(1, "InstallSiLabs: %s\n", inf.c_str());
    calls.Update(kSerialBridge, inf);
}

void RemoveTvxHidRouter(const SupportedDevices &devices, CDriverCalls &calls)
{
    trace(1, "RemoveTvxHidRouter\n");
    ClearOldNodes(calls);
    ForEachFound(devices, ServedByRouter, [&](const std::string &id) { calls.Remove(UsbInstanceId(id)); });
    calls.Run(kRescanParameters); // as a program, also when the companion is a library
}

void RemoveSiLabs(CDriverCalls &calls)
{
    trace(1, "RemoveSiLabs\n");
    calls.Remove(kSerialBridge);
}

void InstallBulkTouch(const SupportedDevices &devices, const std::string &inf, CDriverCalls &calls)
{
    trace(1, "InstallBulkTouch: %s\n", inf.c_str());
    calls.Walk("HID", true, false);
    ForEachFound(devices, ServedByBulkTouch, [&](const std::string &id) { calls.Update(UsbInstanceId(id), inf); });
}

void RemoveBulkTouch(const SupportedDevices &devices, CDriverCalls &calls)
{
    trace(1, "RemoveBulkTouch\n");
    calls.Walk("USB", false, true);
    ForEachFound(devices, ServedByBulkTouch, [&](const std::string &id) { calls.Remove(UsbInstanceId(id)); });
}
