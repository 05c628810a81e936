#include "Pack/PackageCheck.h"

#include <algorithm>

#include "Pack/Allowances.h"
#include "Pack/CheckContext.h"

CPackageCheck::CPackageCheck(IScriptSource &source, const CPackageTree &tree, const std::vector<std::string> &commands)
    : mModel(std::make_unique<CPackageModel>(source, tree))
{
    if (!HasScript()) {
        return;
    }
    CGroupFlow flow(*mModel, commands);
    CheckContext context{*mModel, flow, mFound, std::string()};
    CheckSettings(context);
    CheckSections(context);
    CheckLetters(context);
    CheckSteps(context);
    CheckFields(context);
    CheckKeys(context);
    CheckLabels(context);
    CheckGroups(context);
    CheckEndless(context);
    CheckEscapes(context);
    CheckMacros(context);
    CheckPages(context);
    CheckRemoval(context);
    CheckFiles(context);
    CheckInventory(context);
    ApplyAllowances(*mModel, mFound);
}

size_t CPackageCheck::Count(ESeverity severity) const
{
    return static_cast<size_t>(std::count_if(Found().begin(), Found().end(), [&](const Diagnostic &found) {
        return InfoOf(found.mCheck).mSeverity == severity;
    }));
}

size_t CPackageCheck::CountSteps() const
{
    size_t count = 0;
    for (const auto &group : mModel->Groups()) {
        count += group->mSteps.size();
    }
    return count;
}
