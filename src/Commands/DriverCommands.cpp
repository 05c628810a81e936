// Device drivers through the companion installer, device by device. Devices and match texts go to the companion as they
// stand. What came of a call is in the trace only: no step can ask for it.
#include <windows.h>

#include "Common/Trace.h"
#include "Devices/Companion.h"
#include "Commands/Commands.h"
#include "Script/CRunState.h"
#include "Script/Step.h"

namespace {

// Companion, device and INF file; the last error as it stood when they were read.
struct InstallFields {
    explicit InstallFields(CStep &step)
        : mCompanion(step.Expanded()), mDevice(step.Plain()), mInf(step.Expanded()), mError(GetLastError())
    {
    }
    std::string mCompanion;
    std::string mDevice;
    std::string mInf;
    DWORD mError;
};

// Updates have always spoken of a removal here, and readers of the trace know it so.
void TraceUpdate(const InstallFields &fields, bool done)
{
    trace(7, "DLL %s, Device %s, INF %s, Removed %s %i\n", fields.mCompanion.c_str(), fields.mDevice.c_str(),
          fields.mInf.c_str(), YesNo(done), static_cast<int>(fields.mError));
}

void RemoveDevice(CStep &step, bool (*worker)(const std::string &, const std::string &))
{
    const std::string companion = step.Expanded();
    const std::string device = step.Plain();
    const DWORD error = GetLastError();
    const bool done = worker(companion, device);
    trace(7, "DLL %s, Device %s, Removed %s %i\n", companion.c_str(), device.c_str(), YesNo(done),
          static_cast<int>(error));
}

} // namespace

void StepDevInstall(CStep &step)
{
    const InstallFields fields(step);
    const bool done = CallDevInstall(fields.mCompanion, fields.mDevice, fields.mInf);
    trace(7, "DLL %s, Device %s, INF %s, Installed %s %i\n", fields.mCompanion.c_str(), fields.mDevice.c_str(),
          fields.mInf.c_str(), YesNo(done), static_cast<int>(fields.mError));
}

void StepDevUpdate(CStep &step)
{
    const InstallFields fields(step);
    TraceUpdate(fields, CallDevUpdate(fields.mCompanion, fields.mDevice, fields.mInf, step.Main().mRebootRequired));
}

void StepDevInstallSelectedDriver(CStep &step)
{
    const InstallFields fields(step);
    TraceUpdate(fields, CallDevInstallSelectedDriver(fields.mCompanion, fields.mDevice, fields.mInf));
}

void StepDevRemoveSelectedDriver(CStep &step)
{
    RemoveDevice(step, CallDevRemoveSelectedDriver);
}

void StepDevRemove(CStep &step)
{
    RemoveDevice(step, CallDevRemove);
}

void StepDevRemoveOEMINF(CStep &step)
{
    const std::string companion = step.Expanded();
    const std::string match = step.Plain();
    const DWORD error = GetLastError();
    const bool done = CallDevRemoveOemInf(companion, match);
    trace(7, "DLL %s, Match '%s', Removed %s %i\n", companion.c_str(), match.c_str(), YesNo(done),
          static_cast<int>(error));
}
