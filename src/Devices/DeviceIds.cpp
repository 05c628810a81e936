#include "Devices/DeviceIds.h"

#include <algorithm>
#include <cstdio>

#include "Common/TokenSplitter.h"
#include "Devices/DevicesFound.h"

namespace {

bool Counts(const DeviceRow &row, bool modern)
{
    return (row.mFlags & (modern ? kDeviceNotModern : kDeviceModernOnly)) == 0;
}

std::string IdOf(const DeviceRow &row, bool modern)
{
    std::string id = UsbId(row.mVendorId, row.mProductId);
    if (modern && (row.mFlags & kDeviceModernInterface1) != 0) {
        id += "&MI_01";
    } else if (modern && (row.mFlags & kDeviceModernInterface0) != 0) {
        id += "&MI_00";
    }
    // On top of the former: a row with both kinds of flags has both endings.
    if ((row.mFlags & kDeviceBulkTouch) != 0) {
        id += "&MI_00";
    }
    return id;
}

} // namespace

std::string UsbId(uint16_t vendorId, uint16_t productId)
{
    char text[sizeof("VID_FFFF&PID_FFFF")];
    std::snprintf(text, sizeof(text), "VID_%04X&PID_%04X", static_cast<unsigned>(vendorId),
                  static_cast<unsigned>(productId));
    return text;
}

std::vector<SupportedDevice> SupportedDevicesFrom(const DeviceRow *rows, size_t count, bool modern)
{
    std::vector<SupportedDevice> devices;
    std::for_each(rows, rows + count, [&](const DeviceRow &row) {
        if (!Counts(row, modern)) {
            return;
        }
        if ((row.mFlags & (kDeviceIdText | kDeviceI2C)) == 0) {
            devices.push_back({IdOf(row, modern), row.mFlags, false});
            return;
        }
        TokenSplitter pieces("/", row.mIdText);
        for (std::string piece = pieces.First(); !pieces.AtEnd(); piece = pieces.Next()) {
            devices.push_back({piece, row.mFlags, false});
        }
    });
    return devices;
}

bool DevicesFound::IsProductAttached(const std::string &text) const
{
    return std::any_of(mDeviceList.begin(), mDeviceList.end(),
                       [&](const SupportedDevice &device) { return device.mFound && Contains(device.mId, text); });
}

size_t DevicesFound::CountFound() const
{
    return static_cast<size_t>(std::count_if(mDeviceList.begin(), mDeviceList.end(),
                                             [](const SupportedDevice &device) { return device.mFound; }));
}

bool Contains(const std::string &id, const std::string &fragment)
{
    return id.find(fragment) != std::string::npos;
}

std::string HidInstanceId(const std::string &id)
{
    return "HID\\" + id + "&Col01";
}

std::string UsbInstanceId(const std::string &id)
{
    return (Contains(id, "PID") ? "USB\\" : "ACPI\\") + id;
}

std::string ProductNameOf(std::string id)
{
    std::replace(id.begin(), id.end(), '&', '_');
    return id;
}
