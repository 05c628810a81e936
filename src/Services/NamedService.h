// Services of this machine.
#pragma once

#include <windows.h>

#include <string>

#include "Common/Handles.h"
#include "Services/ServiceControl.h"

// The local service manager with its default database. The handles, of all rights, are closed at the end of the object,
// that of the service first.
class CWinServiceAccess : public IServiceAccess {
public:
    bool OpenManager() override;
    bool OpenNamed(const std::string &name) override;
    bool RequestStop(ServiceStatus &status_O) override;
    bool RequestStart() override;
    bool Query(ServiceStatus &status_O) override;
    uint32_t TickCount() override;
    void Wait(uint32_t milliseconds) override;
    uint32_t Error() override;
    void SetError(uint32_t error) override;

private:
    CServiceHandle mManager;
    CServiceHandle mService;
};

// ControlNamedService() on this machine.
bool ControlNamedService(const std::string &name, bool stop);
