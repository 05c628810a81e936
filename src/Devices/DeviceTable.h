// The product list: which tablets this package serves, and what each of them has.
#pragma once

#include <cstddef>
#include <cstdint>

// Flags of a device. Those of all devices found are or-ed into the run's device presence, on which the
// presence conditions of the script and the choice of services rest.
constexpr uint32_t kDeviceTouch = 0x1;
constexpr uint32_t kDevicePen = 0x2;        // pen of a tablet that lies on the desk
constexpr uint32_t kDeviceDisplayPen = 0x4; // pen that works on a screen
constexpr uint32_t kDeviceOwnData = 0x8;    // may have a data file of its own beside the script
constexpr uint32_t kDeviceExpressKeys =
    0x10;                                    // has keys of its own; for the driver, the installer reads nothing from it
constexpr uint32_t kDeviceIdText = 0x20;     // the id text stands for the ids
constexpr uint32_t kDeviceI2C = 0x40;        // the same, on an I2C bus; its node is never removed from the tree
constexpr uint32_t kDeviceBulkTouch = 0x100; // served by the bulk touch driver, on interface 0
constexpr uint32_t kDeviceModernOnly = 0x200;        // counts on Windows 8 and 8.1 only
constexpr uint32_t kDeviceNotModern = 0x400;         // does not count on Windows 8 and 8.1
constexpr uint32_t kDeviceModernInterface0 = 0x800;  // interface 0 on Windows 8 and 8.1
constexpr uint32_t kDeviceModernInterface1 = 0x1000; // interface 1 there; goes before the former

// Devices with one of these bits have drivers of their own and are left out of the HID router's loops.
// Two of the bits belong to no device of the list.
constexpr uint32_t kDeviceNoHidRouter = 0x22100;

// The USB vendor id of the maker.
constexpr uint16_t kVendorId = 0x7A1C;

struct DeviceRow {
    uint16_t mProductId;
    uint16_t mVendorId;
    uint32_t mFlags;
    const char *mIdText; // fragments of device ids separated by "/"; null without kDeviceIdText or kDeviceI2C
};

constexpr size_t kDeviceRowCount = 42;
constexpr size_t kQuilloCount = 13;

// The products and, behind them, a closing row with both ids 0xFFFF. Readers take the closing row along: it gives a
// record of its own, which no device matches.
extern const DeviceRow gDeviceTable[kDeviceRowCount];

// USB product ids of the consumer family, all in the table too. Whether one of them was ever attached
// decides about the closing page.
extern const uint16_t gQuilloProductIds[kQuilloCount];
