// The user programs of the driver: asked to start or to end by an event of the driver, and watched in the list of
// processes until they have.
#pragma once

#include <cstdint>
#include <string>

#include "Common/DriverNames.h"

// The event and the processes of the machine. The end of the object closes the event.
class IUserProcessAccess {
public:
    virtual ~IUserProcessAccess() = default;
    virtual bool OpenNamedEvent(const std::string &name) = 0;
    virtual void Signal() = 0;
    // The id of the program that has this name for the driver type, 0 when it does not run.
    virtual uint32_t FindProcess(EDriverSplitName name, int32_t driverType) = 0;
    virtual bool IsAlive(uint32_t processId) = 0;
    virtual void Wait(uint32_t milliseconds) = 0;
};

// Sets the start event and waits, 10 seconds at most, until the three programs of the type run. Answers whether they
// do; false at once when nobody has made the event.
bool StartUserProcesses(IUserProcessAccess &access, int32_t driverType);

// Sets the stop event and waits, 10 seconds at most, until those of the three programs that ran have ended. One that is
// started meanwhile is not waited for.
bool StopUserProcesses(IUserProcessAccess &access, int32_t driverType);

// Whether the program of a list entry, a path or a bare name, is called `wanted`, in whatever case.
bool IsProcessNamed(const std::wstring &entry, const std::wstring &wanted);

// The name of a list entry's program, less folder and extension.
std::wstring AppName(const std::wstring &entry);
