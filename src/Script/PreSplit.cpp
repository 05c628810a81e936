#include "Script/PreSplit.h"

#include "Devices/RouterProgram.h"
#include "Files/EarlierPackages.h"
#include "Script/CRunState.h"

EarlierProgram LookUpEarlierProgram(const CRunState &run, const std::string &path)
{
    const RouterProgram program = LookUpRouterProgram(run.ExpandMacros(path));
    return {program.mExists, program.mVersion};
}

bool DetectPreISDSplit(CRunState &run)
{
    if (IsPreISDSplitInstalled([&](const std::string &path) { return LookUpEarlierProgram(run, path); })) {
        run.mPreSplitDetected = true;
    }
    return run.mPreSplitDetected;
}
