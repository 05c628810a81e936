#include "Script/PreSplit.h"

#include "Files/EarlierPackages.h"
#include "Script/CRunState.h"

bool DetectPreISDSplit(CRunState &run)
{
    if (IsPreISDSplitInstalled([&](const std::string &text) { return run.ExpandMacros(text); })) {
        run.mPreSplitDetected = true;
    }
    return run.mPreSplitDetected;
}
