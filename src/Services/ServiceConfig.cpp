#include "Services/ServiceConfig.h"

#include <windows.h>

#include "Common/Handles.h"
#include "Common/Trace.h"

namespace {

// The services of this package and of its predecessors. One line of the package stands here twice and another one
// not at all; a service of that one may well be marked for deletion.
constexpr const char *kServices[] = {
    "TabletService",    "TabletServicePen", "TabletServiceTavix", "TouchServicePen",   "TouchServiceTavix",
    "TabletServiceISD", "TouchServiceISD",  "VTabletServiceCon",  "VTabletServiceCon", "VTabletServiceISD",
};

bool IsDirty(SC_HANDLE manager, const char *name)
{
    const CServiceHandle service(OpenServiceA(manager, name, SERVICE_ALL_ACCESS));
    if (!service) {
        return false;
    }
    if (ChangeServiceConfigA(service.Get(), SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr, nullptr)) {
        return false;
    }
    trace(10, "ChangeServiceConfig failed %i\n", static_cast<int>(GetLastError()));
    return true;
}

} // namespace

bool IsServiceConfigDirty()
{
    const CServiceHandle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    if (!manager) {
        return false;
    }
    for (const char *name : kServices) {
        if (IsDirty(manager.Get(), name)) {
            return true;
        }
    }
    return false;
}
