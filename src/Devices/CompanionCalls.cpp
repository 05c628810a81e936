#include "Devices/CompanionCalls.h"

#include "Devices/Companion.h"
#include "Devices/DeviceWalk.h"

void CCompanionCalls::Walk(const char *enumerator, bool present, bool remove)
{
    EnumerateSupportedDevices(mDevices, enumerator, present, remove);
}

void CCompanionCalls::RemoveDeviceInfo(const char *enumerator, const std::string &fragment)
{
    RemoveDeviceInfoValue(enumerator, fragment);
}

void CCompanionCalls::Update(const std::string &device, const std::string &inf)
{
    CallDevUpdate(mCompanion, device, inf, mRebootRequired);
}

void CCompanionCalls::Remove(const std::string &device)
{
    CallDevRemove(mCompanion, device);
}

void CCompanionCalls::Run(const std::string &parameters)
{
    RunCompanion(mCompanion, parameters);
}
