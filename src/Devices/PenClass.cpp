#include "Devices/PenClass.h"

#include <windows.h>

#include "Common/Handles.h"
#include "Devices/ServiceGroupList.h"

namespace {

constexpr char kServiceName[] = "PenClass";
constexpr char kDisplayName[] = "Pen Class";
constexpr char kGroupOrderKey[] = "SYSTEM\\CurrentControlSet\\Control\\ServiceGroupOrder";
constexpr char kGroupOrderValue[] = "List";

// Ends a worker: its outcome in the last error, true for 0.
bool Settle(DWORD error)
{
    SetLastError(error);
    return error == ERROR_SUCCESS;
}

DWORD Reconfigure(SC_HANDLE manager, const std::string &file, uint32_t startType)
{
    const CServiceHandle service(OpenServiceA(manager, kServiceName, SERVICE_CHANGE_CONFIG));
    const bool changed =
        service && ChangeServiceConfigA(service.Get(), SERVICE_NO_CHANGE, startType, SERVICE_NO_CHANGE, file.c_str(),
                                        kPenClassGroup, nullptr, nullptr, nullptr, nullptr, kDisplayName);
    return changed ? ERROR_SUCCESS : GetLastError();
}

// Answers an error number of the platform, 0 for success.
DWORD RegisterService(const std::string &file, uint32_t startType)
{
    const CServiceHandle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    if (!manager) {
        return GetLastError();
    }
    const CServiceHandle service(CreateServiceA(manager.Get(), kServiceName, kDisplayName, SERVICE_ALL_ACCESS,
                                                SERVICE_KERNEL_DRIVER, startType, SERVICE_ERROR_NORMAL, file.c_str(),
                                                kPenClassGroup, nullptr, nullptr, nullptr, nullptr));
    if (service) {
        return ERROR_SUCCESS;
    }
    const DWORD error = GetLastError();
    const bool exists = error == ERROR_DUP_NAME || error == ERROR_SERVICE_EXISTS;
    return exists ? Reconfigure(manager.Get(), file, startType) : error;
}

bool SameName(const char *one, const char *other)
{
    return lstrcmpiA(one, other) == 0;
}

// Likewise. The list is written only when it has changed.
DWORD PutGroupInOrder()
{
    CRegKey key;
    LONG error = RegOpenKeyExA(HKEY_LOCAL_MACHINE, kGroupOrderKey, 0, KEY_ALL_ACCESS, key.Receive());
    if (error != ERROR_SUCCESS) {
        return static_cast<DWORD>(error);
    }
    std::string list(kGroupListLimit, '\0');
    DWORD size = static_cast<DWORD>(list.size());
    error =
        RegQueryValueExA(key.Get(), kGroupOrderValue, nullptr, nullptr, reinterpret_cast<BYTE *>(list.data()), &size);
    if (error != ERROR_SUCCESS) {
        return static_cast<DWORD>(error);
    }
    list.resize(size);
    switch (AddPenClass(list, SameName)) {
    case EGroupListComplete:
        return ERROR_SUCCESS;
    case EGroupListNoPointerClass:
        return ERROR_INVALID_DATA;
    case EGroupListTooLong:
        return ERROR_BUFFER_OVERFLOW;
    case EGroupListExtended:
        break;
    }
    return static_cast<DWORD>(RegSetValueExA(key.Get(), kGroupOrderValue, 0, REG_MULTI_SZ,
                                             reinterpret_cast<const BYTE *>(list.data()),
                                             static_cast<DWORD>(list.size())));
}

} // namespace

bool InstallPenClassService(const std::string &file, uint32_t startType)
{
    const DWORD error = RegisterService(file, startType);
    return Settle(error != ERROR_SUCCESS ? error : PutGroupInOrder());
}

bool RemovePenClassService()
{
    const CServiceHandle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    if (!manager) {
        return false;
    }
    const CServiceHandle service(OpenServiceA(manager.Get(), kServiceName, SERVICE_ALL_ACCESS));
    if (!service) {
        const DWORD error = GetLastError();
        return Settle(error == ERROR_SERVICE_DOES_NOT_EXIST ? ERROR_SUCCESS : error);
    }
    if (!DeleteService(service.Get())) {
        const DWORD error = GetLastError();
        return Settle(error == ERROR_SERVICE_MARKED_FOR_DELETE ? ERROR_SUCCESS : error);
    }
    return Settle(ERROR_SUCCESS);
}
