// The actions on the driver's service and on its user programs, by driver type, and what they ask of the list of
// processes.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// The header of the service manager makes a macro of this name.
#undef StartService

// Stop or start the driver of a type: its service, or its user programs. Answer whether that was seen to happen.
bool StopDrivers(bool service, int32_t driverType);
bool StartDrivers(bool service, int32_t driverType);

// The service of a driver type; see StopDriverService() and StartDriverService(). The trace tells how long it took.
bool StopService(int32_t driverType);
bool StartService(int32_t driverType);

// The user programs of a driver type; see StopUserProcesses() and StartUserProcesses(). The trace tells how long it
// took.
bool StopUserProc(int32_t driverType);
bool StartUserProc(int32_t driverType);

constexpr int32_t kAnySession = -1;

// Id of the first process that is called `name`, a bare file name with its extension in whatever case; 0 for none and
// for an empty name. The process `leaveOut` does not count. Processes of all sessions and folders do: there is no other
// value for `session`, and no `pathFilter` but the empty one.
uint32_t GetProcessIDUsingSnapshot(const std::wstring &name, int32_t session = kAnySession, uint32_t leaveOut = 0,
                                   const std::wstring &pathFilter = std::wstring());

// Name of a process without folder and extension; empty when there is no such process.
std::wstring GetAppNameUsingSnapshot(uint32_t processId);

bool IsProcessAlive(uint32_t processId);
