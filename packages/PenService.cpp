// Pen_Tablet.exe of the sample package: a service that does nothing. Its program also makes and removes it, which the
// package's script has it do: "-install" and "-remove". Answers 0 when the service is there, or gone, behind that.
#include <windows.h>

#include <cstring>
#include <string>

namespace {

constexpr char kName[] = "VTabletServiceCon";

HANDLE gStop = nullptr;
SERVICE_STATUS_HANDLE gService = nullptr;

void Report(DWORD state)
{
    SERVICE_STATUS status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted = state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP : 0;
    SetServiceStatus(gService, &status);
}

void WINAPI Control(DWORD control)
{
    if (control == SERVICE_CONTROL_STOP) {
        Report(SERVICE_STOP_PENDING);
        SetEvent(gStop);
    }
}

void WINAPI Serve(DWORD, char **)
{
    gStop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    gService = RegisterServiceCtrlHandlerA(kName, Control);
    Report(SERVICE_RUNNING);
    WaitForSingleObject(gStop, INFINITE);
    Report(SERVICE_STOPPED);
}

int Install()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, sizeof path - 1);
    const std::string line = std::string("\"") + path + "\"";
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service = CreateServiceA(manager, kName, "Zelno Consumer Service", SERVICE_ALL_ACCESS,
                                             SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START, SERVICE_ERROR_NORMAL,
                                             line.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr);
    const bool there = service != nullptr || GetLastError() == ERROR_SERVICE_EXISTS;
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
    return there ? 0 : 1;
}

int Remove()
{
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service = OpenServiceA(manager, kName, DELETE);
    const bool gone = service != nullptr ? DeleteService(service) : GetLastError() == ERROR_SERVICE_DOES_NOT_EXIST;
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
    return gone ? 0 : 1;
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, char *arguments, int)
{
    if (std::strcmp(arguments, "-install") == 0) {
        return Install();
    }
    if (std::strcmp(arguments, "-remove") == 0) {
        return Remove();
    }
    char name[sizeof kName];
    std::strcpy(name, kName);
    const SERVICE_TABLE_ENTRYA services[] = {{name, Serve}, {nullptr, nullptr}};
    return StartServiceCtrlDispatcherA(services) ? 0 : 1;
}
