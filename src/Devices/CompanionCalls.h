// The calls of the driver commands, carried out on the machine.
#pragma once

#include "Devices/DevicesFound.h"
#include "Devices/DriverCalls.h"

// Walks mark the devices of `devices_I_O`; a companion program that asks for a restart of Windows sets the flag.
class CCompanionCalls final : public CDriverCalls {
public:
    CCompanionCalls(const std::string &companion, DevicesFound &devices_I_O, bool &rebootRequired_O)
        : mCompanion(companion), mDevices(devices_I_O), mRebootRequired(rebootRequired_O)
    {
    }

    void Walk(const char *enumerator, bool present, bool remove) override;
    void RemoveDeviceInfo(const char *enumerator, const std::string &fragment) override;
    void Update(const std::string &device, const std::string &inf) override;
    void Remove(const std::string &device) override;
    void Run(const std::string &parameters) override;

private:
    const std::string mCompanion;
    DevicesFound &mDevices;
    bool &mRebootRequired;
};
