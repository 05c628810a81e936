// Groups that are missing, empty or never run, and steps that nothing reaches.
#include <map>

#include "Common/StringUtilities.h"
#include "Pack/CheckContext.h"
#include "Script/Macros.h"

namespace {

// All sections that can be groups, for a hint at what was meant.
std::vector<std::string> GroupNames(const CPackageModel &model)
{
    std::vector<std::string> names;
    for (const ScriptFile &file : model.Files()) {
        for (const ProfileSection &section : file.mFile->Sections()) {
            const std::string name = gCodePage.FromWide(section.mName);
            if (section.mPlace.mLine != 0 && !model.IsDataSection(name)) {
                names.push_back(name);
            }
        }
    }
    return names;
}

// The place of the call in a step: the word or the target.
ScriptPlace PlaceOfCall(const ScriptStep &step)
{
    if (step.mCommand == nullptr || step.mFields.empty()) {
        return step.Place();
    }
    return step.PlaceOfField(step.mCommand->HasTarget() ? step.FieldAt(step.mCommand->CountFields() - 1) : 0);
}

void CheckCalls(CheckContext &context, const ScriptGroup &group, const GroupWays &ways,
                const std::vector<std::string> &names)
{
    for (size_t at = 0; at < group.mSteps.size(); ++at) {
        const ScriptStep &step = group.mSteps[at];
        if (step.mWord == "Language") {
            continue; // a script has a group for the languages that need one
        }
        for (const ScriptGroup *const called : ways.mWays[at].mCalls) {
            if (!called->mExists) {
                const std::string where =
                    called->mScript.empty() ? "no script file" : "neither " + called->mScript + " nor an included file";
                context.mFound.Add(ECheckMissingGroup, PlaceOfCall(step),
                                   where + " has a group [" + called->mName + "]" + NearestHint(called->mName, names));
            }
        }
    }
}

void CheckRoots(CheckContext &context, const std::vector<std::string> &commands, const std::vector<std::string> &names)
{
    std::vector<std::string> roots = {"Install", "Uninstall"};
    roots.insert(roots.end(), commands.begin(), commands.end());
    for (const std::string &root : roots) {
        const ScriptGroup &group = context.mModel.Group("", root);
        if (!group.mExists) {
            context.mFound.Add(ECheckMissingGroup, {0, 1, 1, 1},
                               "the script has no group [" + root + "], with which a run begins" +
                                   NearestHint(root, names));
        }
    }
}

// By place: a group that two scripts have in common is the same lines.
using Reached = std::map<ScriptPlace, bool>;

void CheckReached(CheckContext &context, const ScriptGroup &group, const Reached &reached)
{
    uint32_t count = 0;
    for (size_t at = group.mSteps.size(); at-- > 0;) {
        const bool lost = !reached.at(group.mSteps[at].mLine.PlaceOf(0));
        count += lost ? 1 : 0;
        const bool first = at == 0 || reached.at(group.mSteps[at - 1].mLine.PlaceOf(0));
        if (lost && first) {
            context.mFound.Add(ECheckUnreachableStep, group.mSteps[at].Place(),
                               count == 1 ? "nothing reaches this step"
                                          : "nothing reaches these " + std::to_string(count) + " steps");
            count = 0;
        }
    }
}

} // namespace

void CheckGroups(CheckContext &context)
{
    const std::vector<std::string> names = GroupNames(context.mModel);
    CheckRoots(context, context.mFlow.Commands(), names);
    Reached reached;
    std::map<ScriptPlace, bool> used; // by the place of the group
    for (const auto &group : context.mModel.Groups()) {
        const GroupWays *const ways = context.mFlow.WaysOf(*group);
        if (group->mExists) {
            used[group->mPlace] = used[group->mPlace] || ways != nullptr;
        }
        for (uint32_t at = 0; at < group->mSteps.size(); ++at) {
            bool &step = reached[group->mSteps[at].mLine.PlaceOf(0)];
            step = step || context.mFlow.RunsOf(*group, at) != 0;
        }
    }
    for (const auto &group : context.mModel.Groups()) {
        if (!group->mExists) {
            continue;
        }
        const GroupWays *const ways = context.mFlow.WaysOf(*group);
        const bool language = context.mModel.IsLanguageSection(group->mName);
        if (ways != nullptr) {
            CheckCalls(context, *group, *ways, names);
            if (!language) {
                CheckReached(context, *group, reached);
            }
            if (group->mSteps.empty()) {
                context.mFound.Add(ECheckEmptyGroup, group->mPlace, "[" + group->mName + "] has no step");
            }
        } else {
            CheckCalls(context, *group, context.mFlow.LinksOf(*group), names);
            if (!used[group->mPlace] && !language) {
                context.mFound.Add(ECheckUnusedGroup, group->mPlace,
                                   "no run reaches [" + group->mName +
                                       "]; one that /command runs is named with "
                                       "--command " +
                                       group->mName);
            }
        }
    }
    for (const MissingCall &call : context.mFlow.MissingCalls()) {
        const ScriptStep &step = call.mGroup->mSteps[call.mStep];
        const size_t at = step.mCommand == nullptr ? 0 : 1;
        const bool bare = call.mFile.find_first_of("\\/:") == std::string::npos;
        if (bare) {
            context.mFound.Add(ECheckPathWithoutFolder, step.PlaceOfField(at),
                               "Windows reads " + call.mFile + " in its own folder; write .\\\\" + call.mFile);
        } else {
            context.mFound.Add(ECheckMissingScript, step.PlaceOfField(at),
                               call.mFile + " is not in the package: the call is skipped");
        }
    }
}
