// What the walks over the device tree have found out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Devices/SupportedDevice.h"

struct DevicesFound {
    std::vector<SupportedDevice> mDeviceList;
    uint32_t mDevicePresence = 0;               // flags of all devices found, or-ed; only ever gains bits
    std::string mProductName;                   // of the last device that may have a data file of its own
    std::string mOemDataFile = ".\\isdoem.dat"; // the last such file that was there

    // Whether a device was found whose id contains `text`, exact with regard to case.
    bool IsProductAttached(const std::string &text) const;

    // Number of list records with the found mark.
    size_t CountFound() const;
};
