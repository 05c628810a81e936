#include "Services/ServiceControl.h"

#include <algorithm>
#include <exception>

#include "Common/DriverNames.h"
#include "Common/TvxException.h"
#include "Services/DirectTrace.h"

namespace {

constexpr uint32_t kShortestPoll = 1000;
constexpr uint32_t kLongestPoll = 10000;
constexpr int kStartAttempts = 29;
constexpr uint32_t kRestartDelay = 1000;
constexpr uint16_t kRaisedStatus = 0xFFFF;

// Carries the error of the call that failed: the first throw of a thread clears the thread's last error.
class CServiceException : public CTvxException {
public:
    CServiceException(const char *message, uint32_t error)
        : CTvxException(nullptr, 0, message, kRaisedStatus), mError(error)
    {
    }
    uint32_t Error() const { return mError; }

private:
    uint32_t mError;
};

[[noreturn]] void Raise(IServiceAccess &access, const char *message)
{
    throw CServiceException(message, access.Error());
}

// Makes the error of the failed call the last error again, and answers it.
int RestoredError(IServiceAccess &access, const std::exception &exception)
{
    if (const auto *raised = dynamic_cast<const CServiceException *>(&exception)) {
        access.SetError(raised->Error());
    }
    return static_cast<int>(access.Error());
}

void OpenManagerOrRaise(IServiceAccess &access)
{
    if (!access.OpenManager()) {
        Raise(access, "OpenSCManager failed");
    }
}

void OpenServiceOrRaise(IServiceAccess &access, const std::string &name)
{
    if (!access.OpenNamed(name)) {
        Raise(access, "OpenService failed");
    }
}

void QueryOrRaise(IServiceAccess &access, ServiceStatus &status_O)
{
    if (!access.Query(status_O)) {
        Raise(access, "Couldn't query service status");
    }
}

// Sleeps for the poll time of the last answer and asks anew.
bool Poll(IServiceAccess &access, ServiceStatus &status_I_O)
{
    access.Wait(PollTime(status_I_O.mWaitHint));
    return access.Query(status_I_O);
}

// `resultOfRaise_O` is what a refusal counts as.
bool StopAndWait(IServiceAccess &access, bool &resultOfRaise_O)
{
    ServiceStatus status;
    if (!access.RequestStop(status)) {
        resultOfRaise_O = access.Error() == kErrorServiceNotActive;
        Raise(access, "ControlService SERVICE_CONTROL_STOP failed");
    }
    while (status.mState != kServiceStopped) {
        if (!Poll(access, status)) {
            return false;
        }
    }
    return true;
}

// A service that is still stopping answers that it runs, so it is asked again. Answers false when it never takes it.
bool StartWithPatience(IServiceAccess &access)
{
    for (int attempt = 0; attempt < kStartAttempts; ++attempt) {
        if (access.RequestStart()) {
            return true;
        }
        if (access.Error() != kErrorServiceAlreadyRunning) {
            Raise(access, "Cannot start service");
        }
        trace(7, "Restarting service\n");
        access.Wait(kRestartDelay);
    }
    return false;
}

bool StartAndWait(IServiceAccess &access)
{
    if (!StartWithPatience(access)) {
        return false;
    }
    // The manager has not been asked yet: the first wait is the shortest one, whatever the service hints at.
    ServiceStatus status;
    while (status.mState != kServiceRunning) {
        if (!Poll(access, status)) {
            return false;
        }
        if (status.mState == kServiceStopped) {
            return true;
        }
    }
    return true;
}

} // namespace

uint32_t PollTime(uint32_t waitHint)
{
    return std::clamp(waitHint, kShortestPoll, kLongestPoll);
}

bool ControlNamedService(IServiceAccess &access, const std::string &name, bool stop)
{
    if (name.empty()) {
        trace(7, "No service name provided.\n");
        return false;
    }
    bool result = false; // what counts when something is raised
    try {
        OpenManagerOrRaise(access);
        result = !stop; // a service that is missing or cannot be started is none to wait for
        OpenServiceOrRaise(access, name);
        result = stop ? StopAndWait(access, result) : StartAndWait(access);
    } catch (const std::exception &exception) {
        const int error = RestoredError(access, exception);
        trace(result ? 7 : 3, "%s:%d\n", exception.what(), error);
    }
    return result;
}

bool RunServiceAction(IServiceAccess &access, const std::string &name, const ServiceAction &action,
                      uint32_t pendingState)
{
    try {
        OpenManagerOrRaise(access);
        // The fall-back is the same for all lines.
        OpenServiceOrRaise(access, name.empty() ? GetDriverSplitName(EDS_ServiceName, EDriverConPen) : name);
        action(access);
        ServiceStatus status;
        QueryOrRaise(access, status);
        uint32_t start = access.TickCount();
        uint32_t lastCheckPoint = status.mCheckPoint;
        while (status.mState == pendingState) {
            QueryOrRaise(access, status);
            if (status.mCheckPoint > lastCheckPoint) {
                start = access.TickCount();
                lastCheckPoint = status.mCheckPoint;
            } else if (access.TickCount() - start > status.mWaitHint) {
                Raise(access, "Service is hung"); // also when this very answer tells of another state
            }
        }
        return true;
    } catch (const std::exception &exception) {
        const int error = RestoredError(access, exception);
        TVX_TRACE_DIRECT("Exception: %s:%d\n", exception.what(), error);
        return false;
    }
}

bool StartDriverService(IServiceAccess &access, int32_t driverType)
{
    TVX_TRACE_DIRECT("Starting service %s\n", DriverTypeName(driverType).c_str());
    const auto start = [](IServiceAccess &service) {
        if (!service.RequestStart()) {
            Raise(service, "Failed to start service");
        }
    };
    return RunServiceAction(access, GetDriverSplitName(EDS_ServiceName, driverType), start, kServiceStartPending);
}

bool StopDriverService(IServiceAccess &access, int32_t driverType)
{
    TVX_TRACE_DIRECT("Stopping service %s\n", DriverTypeName(driverType).c_str());
    const auto stop = [](IServiceAccess &service) {
        ServiceStatus status;
        if (service.RequestStop(status)) {
            return;
        }
        if (service.Error() != kErrorServiceNotActive) {
            Raise(service, "SERVICE_CONTROL_STOP failed");
        }
        TVX_TRACE_DIRECT("Service not running\n");
    };
    return RunServiceAction(access, GetDriverSplitName(EDS_ServiceName, driverType), stop, kServiceStopPending);
}
