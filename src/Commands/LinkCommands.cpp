// The script's commands on shell links and on the names that the shell shows.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/Trace.h"
#include "Registry/RegAccess.h"
#include "Script/CRunState.h"
#include "Script/ScriptRegPath.h"
#include "Script/Step.h"
#include "Shell/DisplayNames.h"
#include "Shell/ShellLink.h"

namespace {

MacroExpander ExpanderOf(CStep &step)
{
    return [&step](const std::string &text) { return step.Main().ExpandMacros(text); };
}

void CreateLinkOf(CStep &step, bool disableRedirect)
{
    const std::string target = step.Expanded();
    const std::string linkPath = step.Expanded();
    // There is no field for the icon: the link path, as it stands, is read as its number, too.
    const std::string iconText = step.PlainAgain();
    const std::string arguments = step.Plain();
    CreateLinkStep(target, linkPath, iconText, arguments, disableRedirect, ExpanderOf(step));
}

// The name that an OEM data file has for a link.
std::string OemLinkName(CScriptFiles &script, const std::string &oemFile, const std::string &name)
{
    const CScriptScope scope(script, oemFile);
    return script.ReadString("LINK", name, std::string());
}

} // namespace

void StepDeleteCustomLink(CStep &step)
{
    const std::string folder = step.Expanded();
    const std::string key = step.Plain();
    const std::string name = step.Plain();
    DeleteOemLink(folder,
                  [&] { return ReadRegStringAt(ParseRegPath(key), ERegViewProcess, name, std::string(), false); });
}

void StepCreateLink(CStep &step)
{
    CreateLinkOf(step, true);
}

void StepCreateLinkRedir(CStep &step)
{
    CreateLinkOf(step, false);
}

void StepCreateLinkFromFile(CStep &step)
{
    const std::string oemFile = step.Expanded();
    const std::string name = step.Plain();
    const std::string folder = step.Expanded();
    const std::string target = step.Expanded();
    const std::string iconText = step.PlainAgain(); // the target field is the number of the icon, too
    CreateOemLink(
        oemFile, name, [&] { return OemLinkName(step.Main().Script(), oemFile, name); }, folder, target, iconText,
        ExpanderOf(step));
}

void StepSetDisplayName(CStep &step)
{
    const std::string path = step.Expanded();
    const std::string dll = step.Expanded();
    const int stringNumber = step.Number();
    const DWORD errorBefore = GetLastError();
    const bool named = SetDisplayName(path, dll, stringNumber);
    trace(7, "File %s, Display name dll %s, string %i, Set %s %i\n", path.c_str(), dll.c_str(), stringNumber,
          YesNo(named), static_cast<int>(errorBefore));
}

void StepRemoveDisplayNameRecursive(CStep &step)
{
    const std::string path = step.Expanded();
    const DWORD errorBefore = GetLastError();
    const bool removed = RemoveDisplayNameTree(path);
    trace(7, "File %s, Display name Removed %s %i\n", path.c_str(), YesNo(removed), static_cast<int>(errorBefore));
}
