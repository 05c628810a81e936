// A service made for a test.
#pragma once

#include <windows.h>

#include <winsvc.h>

#include <memory>
#include <string>

// Marked for deletion as long as the pointer holds it open, or a sound one; null when it could not be made.
inline std::shared_ptr<void> MakeTestService(const std::string &name, bool markForDeletion)
{
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service = CreateServiceA(manager, name.c_str(), nullptr, SERVICE_ALL_ACCESS,
                                             SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                                             "C:\\nowhere.exe", nullptr, nullptr, nullptr, nullptr, nullptr);
    CloseServiceHandle(manager);
    if (service == nullptr || (markForDeletion && !DeleteService(service))) {
        return nullptr;
    }
    return std::shared_ptr<void>(service, [](void *handle) {
        DeleteService(static_cast<SC_HANDLE>(handle)); // one that is marked stays so
        CloseServiceHandle(static_cast<SC_HANDLE>(handle));
    });
}
