// Starting and stopping services: what is asked, how long it is waited for, what counts as success. There are two ways,
// and they differ on purpose. The one for scripts sleeps between its looks, waits without a limit and forgives; the one
// for the driver's own service never sleeps and gives up on a service that makes no progress.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// States and errors as the service manager numbers them.
constexpr uint32_t kServiceStopped = 1;
constexpr uint32_t kServiceStartPending = 2;
constexpr uint32_t kServiceStopPending = 3;
constexpr uint32_t kServiceRunning = 4;
constexpr uint32_t kErrorServiceAlreadyRunning = 1056;
constexpr uint32_t kErrorServiceNotActive = 1062;

struct ServiceStatus {
    uint32_t mState = 0;
    uint32_t mCheckPoint = 0;
    uint32_t mWaitHint = 0; // milliseconds
};

// One service of the machine's service manager, and the clock that waits are measured with. What answers false has set
// the last error. The end of the object closes what it opened.
class IServiceAccess {
public:
    virtual ~IServiceAccess() = default;
    virtual bool OpenManager() = 0;
    virtual bool OpenNamed(const std::string &name) = 0;
    virtual bool RequestStop(ServiceStatus &status_O) = 0;
    virtual bool RequestStart() = 0; // without arguments for the service
    virtual bool Query(ServiceStatus &status_O) = 0;
    virtual uint32_t TickCount() = 0; // milliseconds, wraps after 49.7 days
    virtual void Wait(uint32_t milliseconds) = 0;
    virtual uint32_t Error() = 0;
    virtual void SetError(uint32_t error) = 0;
};

// The time between two looks at a service that a script waits for: its hint, kept between 1 and 10 seconds.
uint32_t PollTime(uint32_t waitHint);

// Stops or starts the service `name` for a script and waits for it; a service that never leaves its pending state is
// waited for without end. Answers whether that counts as done: a service that was not running counts as stopped; one
// that is missing, refuses to start or ends again at once counts as started.
bool ControlNamedService(IServiceAccess &access, const std::string &name, bool stop);

// Asks something of an open service; raises a CTvxException when that fails.
using ServiceAction = std::function<void(IServiceAccess &access)>;

// Carries out `action` on a service (that of the consumer line when `name` is empty) and waits until it leaves
// `pendingState`. The wait never sleeps. It ends with "Service is hung" when the checkpoint stands still for longer
// than the hint. Answers false when anything was raised, which then stands in the trace.
bool RunServiceAction(IServiceAccess &access, const std::string &name, const ServiceAction &action,
                      uint32_t pendingState);

// Starts or stops the service of a driver type. There is no second try, and a service that runs already is a failure to
// start; one that does not run is no failure to stop.
bool StartDriverService(IServiceAccess &access, int32_t driverType);
bool StopDriverService(IServiceAccess &access, int32_t driverType);
