// Properties that every found device gets through the companion program.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Devices/DriverCalls.h"
#include "Devices/SupportedDevice.h"

// Switches the selective suspend of each found device on or off by one run of the companion; `companion` is its name
// for the trace. Each run asks for a restart of Windows, whatever it came to. Nothing happens on Windows XP (`osType`
// is the number of CSystemState).
void SetDeviceProperties(const std::vector<SupportedDevice> &devices, int32_t osType, bool enable,
                         const std::string &companion, CDriverCalls &calls, bool &rebootRequired_O);
