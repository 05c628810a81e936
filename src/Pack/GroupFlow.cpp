#include "Pack/GroupFlow.h"

#include <utility>

#include "Pack/PackMacros.h"
#include "Script/Macros.h"

namespace {

bool IsNamed(const ScriptStep &step, const char *name)
{
    return step.mWord == name;
}

} // namespace

CGroupFlow::CGroupFlow(CPackageModel &model, const std::vector<std::string> &commands)
    : mModel(model), mCommands(commands)
{
    constexpr uint32_t kUndecided = 4711;
    const uint32_t wide = model.Number("MAIN", "WIN64_OVERRIDE", kUndecided);
    if (wide != kUndecided) {
        mAllRuns = wide != 0 ? kRuns64 : kRuns32;
    }
    Enter(model.Group("", "Install"), kInstallRuns & mAllRuns);
    Enter(model.Group("", "Uninstall"), kUninstallRuns & mAllRuns);
    for (const std::string &command : commands) {
        Enter(model.Group("", command), kCommandRuns & mAllRuns);
    }
    while (!mWaiting.empty()) {
        ScriptGroup &group = *mWaiting.back();
        mWaiting.pop_back();
        Follow(group);
    }
    LoadRest();
}

// The list of groups and that of files grow on the way.
void CGroupFlow::LoadRest()
{
    const auto linkAll = [this] {
        for (size_t at = 0; at < mModel.Groups().size(); ++at) {
            ScriptGroup &group = *mModel.Groups()[at];
            if (mWays.count(&group) == 0) {
                GroupWays ways = WaysFor(group);
                mWays.emplace(&group, std::move(ways));
            }
        }
    };
    linkAll();
    for (size_t number = 0; number < mModel.Files().size(); ++number) {
        const ScriptFile file = mModel.Files()[number];
        for (const ProfileSection &section : file.mFile->Sections()) {
            const std::string name = gCodePage.FromWide(section.mName);
            if (section.mPlace.mLine != 0 && !name.empty() && !mModel.IsDataSection(name) &&
                !mModel.IsLanguageSection(name)) {
                mModel.Group(file.mRole == EScriptRole::ECalled ? ".\\" + file.mPath : std::string(), name);
            }
        }
        linkAll();
    }
}

const GroupWays *CGroupFlow::WaysOf(const ScriptGroup &group) const
{
    const auto found = mWays.find(&group);
    return found != mWays.end() && found->second.mEntry != 0 ? &found->second : nullptr;
}

RunSet CGroupFlow::RunsOf(const ScriptGroup &group, uint32_t step) const
{
    const GroupWays *const ways = WaysOf(group);
    return ways != nullptr ? ways->mReached[step] : RunSet{0};
}

GroupWays CGroupFlow::WaysFor(ScriptGroup &group)
{
    GroupWays ways;
    ways.mReached.resize(group.mSteps.size(), 0);
    for (uint32_t step = 0; step < group.mSteps.size(); ++step) {
        ways.mWays.push_back(WayOf(group, step));
    }
    return ways;
}

void CGroupFlow::Enter(ScriptGroup &group, RunSet runs)
{
    auto found = mWays.find(&group);
    if (found == mWays.end()) {
        found = mWays.emplace(&group, GroupWays()).first;
        found->second = WaysFor(group);
    }
    GroupWays &ways = found->second;
    if ((runs & ~ways.mEntry) != 0) {
        ways.mEntry |= runs;
        mWaiting.push_back(&group);
    }
}

// Takes the runs that enter a group along all its ways until nothing new comes.
void CGroupFlow::Follow(ScriptGroup &group)
{
    GroupWays &ways = mWays.at(&group);
    std::vector<uint32_t> waiting;
    const auto reach = [&](uint32_t step, RunSet runs) {
        if (step < ways.mReached.size() && (runs & ~ways.mReached[step]) != 0) {
            ways.mReached[step] |= runs;
            waiting.push_back(step);
        }
    };
    reach(0, ways.mEntry);
    while (!waiting.empty()) {
        const uint32_t step = waiting.back();
        waiting.pop_back();
        const RunSet runs = ways.mReached[step];
        const StepWay &way = ways.mWays[step];
        for (ScriptGroup *const called : way.mCalls) {
            if ((runs & way.mCallOnly) != 0) {
                Enter(*called, runs & way.mCallOnly);
            }
        }
        for (size_t at = 0; at < way.mNext.size(); ++at) {
            reach(way.mNext[at], runs & way.mOnly[at]);
        }
    }
}

StepWay CGroupFlow::WayOf(ScriptGroup &group, uint32_t at)
{
    const ScriptStep &step = group.mSteps[at];
    const auto end = static_cast<uint32_t>(group.mSteps.size());
    StepWay way;
    const auto goOn = [&](uint32_t next, RunSet only = 0xFF) {
        way.mNext.push_back(next);
        way.mOnly.push_back(only);
    };
    if (step.mWord.empty() && step.mFields.empty()) {
        goOn(end); // the interpreter takes an empty text for the end of the list
        return way;
    }
    if (step.mCommand == nullptr) {
        if (!step.mCall.empty()) {
            TakeCall(group, at, step.mCall, step.Field(0), way);
        }
        goOn(at + 1);
        return way;
    }
    if (step.mCommand->mEffect == EEndsGroup) {
        goOn(end);
    } else if (IsNamed(step, "Command")) {
        TakeCall(group, at, ExtractBangName(step.Field(0)), step.Field(1), way);
        goOn(at + 1);
    } else if (IsNamed(step, "Language")) {
        for (const PackageLanguage &language : mModel.Languages()) {
            way.mCalls.push_back(&mModel.Group(group.mScript, language.mName));
        }
        way.mMayCall = way.mCalls.size() > 1;
        goOn(at + 1);
    } else if (step.mCommand->HasTarget()) {
        const bool always = step.mCommand->mEffect == EJumps;
        const RunSet yes = IsNamed(step, "Is64") ? kRuns64 : IsNamed(step, "Not64") ? kRuns32 : RunSet{0xFF};
        const std::string target = step.Field(step.mCommand->CountFields() - 1);
        TakeTarget(group, target, at, way);
        way.mMayCall = !always;
        way.mCallOnly = yes;
        way.mOnly.assign(way.mNext.size(), yes);
        // A group that was called comes back; a jump that was taken does not.
        if (!always || way.mNext.empty()) {
            goOn(at + 1, way.mNext.empty() || yes == 0xFF ? 0xFF : static_cast<RunSet>(~yes));
        }
    } else {
        goOn(at + 1);
    }
    return way;
}

void CGroupFlow::TakeTarget(const ScriptGroup &group, const std::string &target, uint32_t step, StepWay &way_I_O)
{
    const std::string name = ExtractBangName(target);
    if (!name.empty()) {
        TakeCall(group, step, name, std::string(), way_I_O);
    } else if (!target.empty()) {
        way_I_O.mNext.push_back(group.mList->Find(target));
    }
}

void CGroupFlow::TakeCall(const ScriptGroup &group, uint32_t step, const std::string &name, const std::string &file,
                          StepWay &way_I_O)
{
    CPackMacros macros;
    const std::string path = ExpandMacros(file, macros);
    const bool other = !path.empty() && path != ".";
    if (other && !mModel.AddFile(path, EScriptRole::ECalled)) {
        mMissingCalls.push_back({&group, step, path});
        way_I_O.mMayCall = true;
        return;
    }
    if (!name.empty()) {
        way_I_O.mCalls.push_back(&mModel.Group(other ? path : group.mScript, name));
    }
}
