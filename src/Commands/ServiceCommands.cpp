// The script's commands on services. The name is taken as it stands; the result can be seen in the trace only.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/Trace.h"
#include "Script/Step.h"
#include "Services/NamedService.h"

namespace {

void ServiceStep(CStep &step, bool stop)
{
    const std::string name = step.Plain();
    const DWORD errorBefore = GetLastError();
    const bool done = ControlNamedService(name, stop);
    trace(7, "%s %s %i\n", stop ? "Stopped" : "Started", YesNo(done), static_cast<int>(errorBefore));
}

} // namespace

void StepStopService(CStep &step)
{
    ServiceStep(step, true);
}

void StepStartService(CStep &step)
{
    ServiceStep(step, false);
}
