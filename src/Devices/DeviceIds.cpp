#include "Devices/DeviceIds.h"

#include <algorithm>
#include <cstdio>

#include "Common/TokenSplitter.h"

namespace {

bool Counts(const DeviceRow &row, bool modern)
{
    return (row.mFlags & (modern ? kDeviceNotModern : kDeviceModernOnly)) == 0;
}

std::string IdOf(const DeviceRow &row, bool modern)
{
    char text[sizeof("VID_FFFF&PID_FFFF")];
    std::snprintf(text, sizeof(text), "VID_%04X&PID_%04X", static_cast<unsigned>(row.mVendorId),
                  static_cast<unsigned>(row.mProductId));
    std::string id = text;
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

std::string UpperCaseId(std::string id)
{
    for (char &character : id) {
        if (character >= 'a' && character <= 'z') {
            character = static_cast<char>(character - 'a' + 'A');
        }
    }
    return id;
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
