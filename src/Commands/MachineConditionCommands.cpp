// Steps that test something of the machine and jump.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "Common/winplats.h"
#include "Files/FileExists.h"
#include "Script/OSVersion.h"
#include "Script/Step.h"

namespace {

bool IsXPFamily()
{
    return IsOSTypeXP(CSystemState::GetOSType());
}

bool IsRunningVersion(const WantedOSVersion &wanted)
{
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    return GetVersionExA(&version) && wanted.Matches(version.dwMajorVersion, version.dwMinorVersion);
}

void BranchOnFile(CStep &step, bool wanted, bool disableRedirect)
{
    const std::string path = step.Expanded();
    const bool exists = FileExistsStep(path, disableRedirect);
    trace(7, exists ? "%s Exists\n" : "%s does not Exist\n", path.c_str());
    BranchOn(step, exists == wanted, nullptr, nullptr);
}

} // namespace

void StepNotExist(CStep &step)
{
    BranchOnFile(step, false, true);
}

void StepNotExistRedir(CStep &step)
{
    BranchOnFile(step, false, false);
}

void StepExist(CStep &step)
{
    BranchOnFile(step, true, true);
}

void StepExistRedir(CStep &step)
{
    BranchOnFile(step, true, false);
}

void StepIsXPPro(CStep &step)
{
    BranchOn(step, IsXPFamily() && !IsTabletPC(), ", IsXPPro goto step", ", Not XPPro");
}

void StepIsXPTE(CStep &step)
{
    BranchOn(step, IsXPFamily() && IsTabletPC(), ", IsXPTE goto step", ", Not XPTE");
}

void StepOSVersion(CStep &step)
{
    const std::string field = step.Plain();
    const bool matches = IsRunningVersion(ParseOSVersion(field));
    trace(7, "Is OS=%s, %s\n", field.c_str(), matches ? "True" : "False");
    BranchOn(step, matches, nullptr, nullptr);
}
