// The registry commands of the script: each reads its fields in order and calls its action. Keys go to the action as
// they stand, since a leading macro of a key is a name of PlatformData; only the two tests for existence expand theirs.
// A word that ends in Redir works in the view of this process, its plain form in the 64-bit one.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/Paths.h"
#include "Common/Trace.h"
#include "Registry/RegistryActions.h"
#include "Script/CRunState.h"
#include "Script/ScriptRegPath.h"
#include "Script/Step.h"

namespace {

bool KeyExists(CStep &step)
{
    const std::string key = step.Expanded();
    const std::string name = step.Plain();
    return RegKeyExists(ParseRegPath(key), name);
}

void SetText(CStep &step, DWORD type, bool hasPermissions, ERegView view)
{
    const std::string key = step.Plain();
    const std::string name = step.Expanded();
    const std::string value = step.Expanded();
    RegLocation location = ParseRegPath(key);
    if (hasPermissions) {
        location.mPermissions = step.Expanded();
    }
    SetRegValue(location, name, value, type, view);
}

void RemoveEntry(CStep &step, ERegView view)
{
    const std::string key = step.Plain();
    const std::string name = step.Expanded();
    const std::string value = step.Expanded();
    RemoveRegMultiEntry(ParseRegPath(key), name, value, view);
}

void SetNumber(CStep &step, ERegView view)
{
    const std::string key = step.Plain();
    const std::string name = step.Expanded();
    const std::string value = step.Expanded();
    SetRegDword(ParseRegPath(key), name, value, view);
}

// Copies a value of an OEM data file into the registry. Reads the fields file, name and key, each only when the one
// before led somewhere; `section` is where the file holds the name.
void SetFromOemFile(CStep &step, const std::string &section)
{
    const std::string file = step.Expanded();
    trace(7, "Oem File %s\n", file.c_str());
    if (!PathExists(file)) {
        trace(7, "Missing\n");
        return;
    }
    const std::string name = step.Plain();
    trace(7, "Get %s/%s\n", section.c_str(), name.c_str());
    std::string value;
    {
        const CScriptScope script(step.Main().Script(), file);
        value = step.Main().Script().ReadString(section, name, std::string(), true);
    }
    if (value.empty()) {
        trace(7, "Empty\n");
        return;
    }
    SetOemRegValue(ParseRegPath(step.Plain()), name, value);
}

} // namespace

void StepRegNotExist(CStep &step)
{
    if (!KeyExists(step)) {
        step.TakeTarget();
    }
}

void StepRegExist(CStep &step)
{
    if (KeyExists(step)) {
        step.TakeTarget();
    }
}

void StepCheckRegDWORD(CStep &step)
{
    const std::string key = step.Plain();
    const std::string name = step.Expanded();
    const std::string value = step.Plain();
    if (CheckRegDword(ParseRegPath(key), name, value)) {
        step.TakeTarget();
    }
}

void StepRegValueString(CStep &step)
{
    SetText(step, REG_SZ, true, ERegView64);
}

void StepRegValueStringRedir(CStep &step)
{
    SetText(step, REG_SZ, true, ERegViewProcess);
}

void StepRegValueMultiStringAppe(CStep &step)
{
    SetText(step, REG_MULTI_SZ, false, ERegView64);
}

void StepRegValueMultiStringAppeRedir(CStep &step)
{
    SetText(step, REG_MULTI_SZ, false, ERegViewProcess);
}

void StepRegValueMultiStringDele(CStep &step)
{
    RemoveEntry(step, ERegView64);
}

void StepRegValueMultiStringDeleRedir(CStep &step)
{
    RemoveEntry(step, ERegViewProcess);
}

void StepRegValueExpStr(CStep &step)
{
    SetText(step, REG_EXPAND_SZ, false, ERegView64);
}

void StepRegValueDWORD(CStep &step)
{
    SetNumber(step, ERegView64);
}

void StepRegValueDWORDRedir(CStep &step)
{
    SetNumber(step, ERegViewProcess);
}

void StepRegValueFromFile(CStep &step)
{
    SetFromOemFile(step, "REGISTRY");
}

// The name of a link, for DeleteCustomLink to find it by.
void StepLinkValueFromFile(CStep &step)
{
    SetFromOemFile(step, "LINK");
}
