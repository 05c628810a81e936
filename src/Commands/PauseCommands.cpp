// Commands that keep the run waiting.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/Trace.h"
#include "Script/Step.h"
#include "UI/WindowCalls.h"

void StepDelay(CStep &step)
{
    const int32_t milliseconds = step.Number();
    trace(7, "Sleeping %i\n", static_cast<int>(milliseconds));
    Sleep(milliseconds > 0 ? static_cast<DWORD>(milliseconds) : 0); // a negative number would mean for ever
}

// Waits for an answer also in a silent run: it is there for whoever follows a script with a debugger.
void StepBreak(CStep &)
{
    ShowMessageBox("BREAK", "BREAK", MB_ICONWARNING);
}
