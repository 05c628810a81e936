// The registry commands of the script: each reads its fields in order and calls its action. Keys go to the action as
// they stand, since a leading macro of a key is a name of PlatformData; only the two tests for existence expand theirs.
// A word that ends in Redir works in the view of this process, its plain form in the 64-bit one.
#include <windows.h>

#include "Actions/RegistryActions.h"
#include "Installer/Commands.h"
#include "Installer/Step.h"

namespace {

bool KeyExists(CStep &step)
{
    const std::string key = step.Expanded();
    const std::string name = step.Plain();
    return RegKeyExists(key, name);
}

void SetText(CStep &step, DWORD type, bool hasPermissions, bool view64)
{
    const std::string key = step.Plain();
    const std::string name = step.Expanded();
    const std::string value = step.Expanded();
    const std::string permissions = hasPermissions ? step.Expanded() : std::string();
    SetRegValue(key, name, value, permissions, type, view64);
}

void RemoveEntry(CStep &step, bool view64)
{
    const std::string key = step.Plain();
    const std::string name = step.Expanded();
    const std::string value = step.Expanded();
    RemoveRegMultiEntry(key, name, value, view64);
}

void SetNumber(CStep &step, bool view64)
{
    const std::string key = step.Plain();
    const std::string name = step.Expanded();
    const std::string value = step.Expanded();
    SetRegDword(key, name, value, view64);
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
    if (CheckRegDword(key, name, value)) {
        step.TakeTarget();
    }
}

void StepRegValueString(CStep &step)
{
    SetText(step, REG_SZ, true, true);
}

void StepRegValueStringRedir(CStep &step)
{
    SetText(step, REG_SZ, true, false);
}

void StepRegValueMultiStringAppe(CStep &step)
{
    SetText(step, REG_MULTI_SZ, false, true);
}

void StepRegValueMultiStringAppeRedir(CStep &step)
{
    SetText(step, REG_MULTI_SZ, false, false);
}

void StepRegValueMultiStringDele(CStep &step)
{
    RemoveEntry(step, true);
}

void StepRegValueMultiStringDeleRedir(CStep &step)
{
    RemoveEntry(step, false);
}

void StepRegValueExpStr(CStep &step)
{
    SetText(step, REG_EXPAND_SZ, false, true);
}

void StepRegValueDWORD(CStep &step)
{
    SetNumber(step, true);
}

void StepRegValueDWORDRedir(CStep &step)
{
    SetNumber(step, false);
}

void StepRegValueFromFile(CStep &step)
{
    RegValueFromOemFile("REGISTRY", step);
}
