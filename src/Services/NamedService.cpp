#include "Services/NamedService.h"

namespace {

ServiceStatus Taken(const SERVICE_STATUS &status)
{
    return {status.dwCurrentState, status.dwCheckPoint, status.dwWaitHint};
}

} // namespace

bool CWinServiceAccess::OpenManager()
{
    mManager.Reset(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    return static_cast<bool>(mManager);
}

bool CWinServiceAccess::OpenNamed(const std::string &name)
{
    mService.Reset(OpenServiceA(mManager.Get(), name.c_str(), SERVICE_ALL_ACCESS));
    return static_cast<bool>(mService);
}

bool CWinServiceAccess::RequestStop(ServiceStatus &status_O)
{
    SERVICE_STATUS status = {};
    const bool stopped = ControlService(mService.Get(), SERVICE_CONTROL_STOP, &status) != FALSE;
    status_O = Taken(status);
    return stopped;
}

bool CWinServiceAccess::RequestStart()
{
    return StartServiceA(mService.Get(), 0, nullptr) != FALSE;
}

bool CWinServiceAccess::Query(ServiceStatus &status_O)
{
    SERVICE_STATUS status = {};
    const bool queried = QueryServiceStatus(mService.Get(), &status) != FALSE;
    status_O = Taken(status);
    return queried;
}

uint32_t CWinServiceAccess::TickCount()
{
    return GetTickCount();
}

void CWinServiceAccess::Wait(uint32_t milliseconds)
{
    Sleep(milliseconds);
}

uint32_t CWinServiceAccess::Error()
{
    return GetLastError();
}

void CWinServiceAccess::SetError(uint32_t error)
{
    SetLastError(error);
}

bool ControlNamedService(const std::string &name, bool stop)
{
    CWinServiceAccess access;
    return ControlNamedService(access, name, stop);
}
