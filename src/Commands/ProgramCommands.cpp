// The script's commands that run programs, and the one that removes the preferences that programs leave.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/DriverNames.h"
#include "Common/Trace.h"
#include "Script/CRunState.h"
#include "Script/Step.h"
#include "Services/ExecuteFile.h"
#include "Services/Preferences.h"
#include "Services/UserHelp.h"

namespace {

// The pause before the file is optional: a first field that does not begin with a number other than 0 is the file
// itself.
void ExecuteStep(CStep &step, bool wait, bool disableRedirect, bool hidden)
{
    const int32_t pause = step.Number();
    const std::string file = pause != 0 ? step.Expanded() : step.ExpandedAgain();
    const std::string parameters = step.Expanded();
    ExecuteFile(file, parameters, pause, wait, disableRedirect, hidden);
}

MacroExpander ExpanderOf(CStep &step)
{
    return [&step](const std::string &text) { return step.Main().ExpandMacros(text); };
}

} // namespace

void StepExecute(CStep &step)
{
    ExecuteStep(step, true, true, false);
}

void StepExecuteRedir(CStep &step)
{
    ExecuteStep(step, true, false, false);
}

void StepExecuteAsync(CStep &step)
{
    ExecuteStep(step, false, true, false);
}

// Hidden, and with the redirection on, like ExecuteRedir.
void StepExecuteStealth(CStep &step)
{
    ExecuteStep(step, true, false, true);
}

void StepDeleteAllPrefs(CStep &)
{
    trace(7, "RemoveAll prefs ...\n");
    RemoveAll(CDriverType::Get(), false);
    trace(7, "RemoveAll completed with status: %i\n", static_cast<int>(GetLastError()));
}

void StepSetupUserHelpApp(CStep &step)
{
    SetupUserHelpApp(ExpanderOf(step), step.Main().mLanguage.GetName());
}

void StepRemoveUserHelpApp(CStep &step)
{
    RemoveUserHelpApp(ExpanderOf(step));
}
