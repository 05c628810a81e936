// IfNotOlder, IfKernelIsNotOlder, IfINFIsNotOlder: jumps over a part of a group that would install nothing newer.
#include "Commands/Commands.h"
#include "Common/Trace.h"
#include "Files/VersionCompare.h"
#include "Registry/RegAccess.h"
#include "Script/ScriptRegPath.h"
#include "Script/Step.h"

namespace {

// The label is read only when the jump is taken.
void JumpWhenNotOlder(CStep &step, bool sourceIsNewer)
{
    if (!sourceIsNewer) {
        trace(7, "target not older, goto\n");
        step.TakeTarget();
    }
}

} // namespace

// target; source; label
void StepIfNotOlder(CStep &step)
{
    const std::string target = step.Expanded();
    const std::string source = step.Expanded();
    JumpWhenNotOlder(step, IsFileNewer(target, source));
}

// key; value name; source; label. The value holds the path of the target; a missing one is an empty path, older
// than any source with a version. It is read as all values of the installer are: a back-slash stands doubled.
void StepIfKernelIsNotOlder(CStep &step)
{
    const std::string key = step.Expanded();
    const std::string name = step.Expanded();
    const std::string source = step.Expanded();
    const std::string target = ReadRegStringAt(ParseRegPath(key), ERegViewProcess, name, "", false);
    JumpWhenNotOlder(step, IsFileNewer(target, source));
}

// target INF; source INF; label. A DriverVer date that is out of bounds leaves the step as an exception.
void StepIfINFIsNotOlder(CStep &step)
{
    const std::string target = step.Expanded();
    const std::string source = step.Expanded();
    JumpWhenNotOlder(step, IsInfNewer(target, source));
}
