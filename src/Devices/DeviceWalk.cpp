#include "Devices/DeviceWalk.h"

#include <windows.h>

#include "Common/CSystemState.h"
#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Devices/DeviceIds.h"
#include "Devices/DeviceTable.h"
#include "Files/FileExists.h"

namespace {

// The size by which 32-bit Windows knows the structure.
static_assert(sizeof(SP_DEVINFO_DATA) == 28, "SP_DEVINFO_DATA has the layout of 32-bit Windows");

constexpr ULONG kInstanceIdSize = 200; // the longest instance id, MAX_DEVICE_ID_LEN

struct DeviceListPolicy : HandlePolicy {
    static Type Empty() { return INVALID_HANDLE_VALUE; }
    static void Close(Type value) { SetupApi().SetupDiDestroyDeviceInfoList(value); }
};
using CDeviceList = COwner<DeviceListPolicy>;

CDeviceList OpenDeviceList(const char *enumerator, bool present)
{
    const DWORD flags = DIGCF_ALLCLASSES | (present ? DIGCF_PRESENT : 0);
    return CDeviceList(
        SetupApi().SetupDiGetClassDevsExA(nullptr, enumerator, nullptr, flags, nullptr, nullptr, nullptr));
}

bool GetDevice(const CDeviceList &list, DWORD index, SP_DEVINFO_DATA &device_O)
{
    device_O = SP_DEVINFO_DATA();
    device_O.cbSize = sizeof(device_O);
    return SetupApi().SetupDiEnumDeviceInfo(list.Get(), index, &device_O) != FALSE;
}

bool IsLive(DEVINST device)
{
    ULONG status = 0;
    ULONG problem = 0;
    return CfgMgr32().CM_Get_DevNode_Status(&status, &problem, device, 0) == CR_SUCCESS;
}

// The instance id as Windows spells it, traced; empty when Windows does not tell, and then no record matches.
std::string GetInstanceId(DEVINST device)
{
    char id[kInstanceIdSize + 1] = {};
    const CONFIGRET cmret = CfgMgr32().CM_Get_Device_ID_ExA(device, id, kInstanceIdSize, 0, nullptr);
    TVX_ASSERT(cmret == CR_SUCCESS);
    trace(7, "EnumerateSupportedDevices: Checking device %s\n", id);
    return id;
}

void RemoveDevice(const CDeviceList &list, SP_DEVINFO_DATA &device_I_O, const std::string &instanceId,
                  const SupportedDevice &record)
{
    if ((record.mFlags & kDeviceI2C) != 0) {
        // Nothing would bring the node back before the next start of Windows: such a bus is not scanned again.
        trace(1, "EnumerateSupportedDevices: NOT removing I2C device %s\n", instanceId.c_str());
        return;
    }
    trace(1, "EnumerateSupportedDevices: Removing %s\n", instanceId.c_str());
    SetupApi().SetupDiRemoveDevice(list.Get(), &device_I_O);
}

void MarkFound(DevicesFound &devices_I_O, SupportedDevice &device_I_O)
{
    trace(1, "EnumerateSupportedDevices: %s found\n", device_I_O.mId.c_str());
    device_I_O.mFound = true;
    devices_I_O.mDevicePresence |= device_I_O.mFlags;
    if ((device_I_O.mFlags & kDeviceOwnData) == 0) {
        return;
    }
    devices_I_O.mProductName = ProductNameOf(device_I_O.mId);
    const std::string dataFile = ".\\" + devices_I_O.mProductName + ".dat";
    if (FileExistsStep(dataFile, true)) {
        devices_I_O.mOemDataFile = dataFile;
    }
}

} // namespace

void BuildSupportedDevices(DevicesFound &devices_I_O)
{
    devices_I_O.mDeviceList =
        SupportedDevicesFrom(gDeviceTable, kDeviceRowCount, IsOSTypeWin8(CSystemState::GetOSType()));
}

DWORD EnumerateSupportedDevices(DevicesFound &devices_I_O, const char *enumerator, bool present, bool remove)
{
    CDeviceList list = OpenDeviceList(enumerator, present);
    if (!list) {
        return GetLastError();
    }
    SP_DEVINFO_DATA device;
    for (DWORD index = 0; GetDevice(list, index, device); ++index) {
        const bool live = IsLive(device.DevInst);
        if (live != present) {
            continue; // a list of all devices holds the live ones too, and a device may go while we look
        }
        const std::string instanceId = UpperAscii(GetInstanceId(device.DevInst));
        // A node can match several records, and every one of them is marked and asks for the removal.
        for (SupportedDevice &record : devices_I_O.mDeviceList) {
            if (!Contains(instanceId, record.mId)) {
                continue;
            }
            if (live) {
                MarkFound(devices_I_O, record);
            }
            if (remove) {
                RemoveDevice(list, device, instanceId, record);
            }
        }
    }
    return static_cast<DWORD>(SetupApi().SetupDiDestroyDeviceInfoList(list.Release()));
}

void RemoveDeviceInfoValue(const char *enumerator, const std::string &fragment)
{
    if (fragment.empty()) {
        return;
    }
    const CDeviceList list = OpenDeviceList(enumerator, false);
    if (!list) {
        return;
    }
    SP_DEVINFO_DATA device;
    for (DWORD index = 0; GetDevice(list, index, device); ++index) {
        if (!Contains(UpperAscii(GetInstanceId(device.DevInst)), fragment)) {
            continue;
        }
        const HKEY opened =
            SetupApi().SetupDiOpenDevRegKey(list.Get(), &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_ALL_ACCESS);
        if (opened != INVALID_HANDLE_VALUE) {
            const CRegKey key(opened);
            RegDeleteValueA(key.Get(), "DeviceInfo");
        }
    }
}
