// The walks over the device tree.
#pragma once

#include <windows.h>

#include <string>

#include "Devices/DevicesFound.h"

// Rebuilds the list from the product table: all found marks are lost, mDevicePresence is not.
void BuildSupportedDevices(DevicesFound &devices_I_O);

// With `present` the walk sees the devices attached now under `enumerator` ("USB", "HID") and marks their records
// found; without it the walk sees the remembered ones. `remove` takes the nodes of supported devices out of the tree.
// Answers what closing the list answered, or the last error when there was no list.
DWORD EnumerateSupportedDevices(DevicesFound &devices_I_O, const char *enumerator, bool present, bool remove);

// Deletes the value "DeviceInfo" from the hardware key of every device under `enumerator` ("USB", "HID"),
// attached or remembered, whose instance id contains `fragment` (upper case). What Windows keeps there about
// a device is read anew when its driver is installed again. Does nothing for an empty fragment, and reports no
// failure.
void RemoveDeviceInfoValue(const char *enumerator, const std::string &fragment);
