// The kernel driver "PenClass": its service, and the place of its group in the load order of Windows.
#pragma once

#include <cstdint>
#include <string>

// Registers the driver in `file` with this start type, or gives an existing service both, and puts its group in front
// of the pointer class. Answers whether all of that was done or was so before; the last error is then 0 and tells the
// cause otherwise. The service stays registered when only the group fails.
bool InstallPenClassService(const std::string &file, uint32_t startType);

// Deletes the service; the group stays in the list. True also for a service that is gone or marked for deletion. The
// last error is 0 on true and the cause on false.
bool RemovePenClassService();
