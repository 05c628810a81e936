// The walks over the device tree that need nothing of the run; the others are members of CWinInstallMain.
#pragma once

#include <string>

// Deletes the value "DeviceInfo" from the hardware key of every device under `enumerator` ("USB", "HID"),
// attached or remembered, whose instance id contains `fragment` (upper case). What Windows keeps there about
// a device is read anew when its driver is installed again. Does nothing for an empty fragment, and reports no
// failure.
void RemoveDeviceInfoValue(const char *enumerator, const std::string &fragment);
