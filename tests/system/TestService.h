// Services made for a test.
#pragma once

#include <windows.h>

#include <winsvc.h>

#include <memory>
#include <string>

// Whether the service manager answers, after ten seconds at most: under load Wine's is late, or starts once more.
inline bool WaitForServiceManager()
{
    for (int i = 0; i < 100; ++i) {
        if (const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT)) {
            CloseServiceHandle(manager);
            return true;
        }
        Sleep(100);
    }
    return false;
}

// A service, held open, made when a program is given; null when it could not be made or is not there.
inline std::shared_ptr<void> OpenTestService(const std::string &name, const std::string &program = "")
{
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service =
        program.empty() ? OpenServiceA(manager, name.c_str(), SERVICE_ALL_ACCESS)
                        : CreateServiceA(manager, name.c_str(), nullptr, SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
                                         SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL, program.c_str(), nullptr, nullptr,
                                         nullptr, nullptr, nullptr);
    CloseServiceHandle(manager);
    return {service, [](void *handle) { CloseServiceHandle(static_cast<SC_HANDLE>(handle)); }};
}

// Its state, 1 stopped, 2 starting, 3 stopping, 4 running, and its process; all 0 when there is none.
inline SERVICE_STATUS_PROCESS TestServiceStatus(const std::string &name)
{
    SERVICE_STATUS_PROCESS status = {};
    DWORD size = 0;
    QueryServiceStatusEx(static_cast<SC_HANDLE>(OpenTestService(name).get()), SC_STATUS_PROCESS_INFO,
                         reinterpret_cast<BYTE *>(&status), sizeof status, &size);
    return status;
}

// Ends the process of the service and takes the service away with the object, whoever made it.
inline std::shared_ptr<void> DropServiceLater(const std::string &name)
{
    return {nullptr, [name](void *) {
                const HANDLE process =
                    OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, TestServiceStatus(name).dwProcessId);
                TerminateProcess(process, 1);
                WaitForSingleObject(process, 10000);
                CloseHandle(process);
                DeleteService(static_cast<SC_HANDLE>(OpenTestService(name).get()));
            }};
}
