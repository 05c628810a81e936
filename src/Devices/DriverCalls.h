// What the commands for the drivers of all found devices ask for, one call at a time and in a fixed order: walks over
// the device tree, and work of the companion installer. Failures stop nothing, so no call answers anything.
#pragma once

#include <string>

class CDriverCalls {
public:
    CDriverCalls() = default;
    virtual ~CDriverCalls() = default;
    CDriverCalls(const CDriverCalls &) = delete;
    CDriverCalls &operator=(const CDriverCalls &) = delete;

    // EnumerateSupportedDevices() and RemoveDeviceInfoValue() of DeviceWalk.h. A walk can mark more devices found.
    virtual void Walk(const char *enumerator, bool present, bool remove) = 0;
    virtual void RemoveDeviceInfo(const char *enumerator, const std::string &fragment) = 0;

    // CallDevUpdate(), CallDevRemove() and RunCompanion() of Companion.h, with the companion of the command.
    virtual void Update(const std::string &device, const std::string &inf) = 0;
    virtual void Remove(const std::string &device) = 0;
    virtual void Run(const std::string &parameters) = 0;
};
