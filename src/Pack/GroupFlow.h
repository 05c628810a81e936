// Which steps of a package a run can reach, and on which machines: the ways that the interpreter can take through the
// groups, with both answers of each condition.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Pack/PackageModel.h"

// The kinds of runs, as a set of bits: what is done, on 32-bit or on 64-bit Windows.
using RunSet = uint8_t;
constexpr RunSet kInstall32 = 1, kInstall64 = 2, kUninstall32 = 4, kUninstall64 = 8, kCommand32 = 16, kCommand64 = 32;
constexpr RunSet kInstallRuns = kInstall32 | kInstall64;
constexpr RunSet kUninstallRuns = kUninstall32 | kUninstall64;
constexpr RunSet kCommandRuns = kCommand32 | kCommand64;
constexpr RunSet kRuns64 = kInstall64 | kUninstall64 | kCommand64;
constexpr RunSet kRuns32 = kInstall32 | kUninstall32 | kCommand32;

// Where a step can lead to.
struct StepWay {
    std::vector<uint32_t> mNext;       // steps of the group; the count of its steps for the end
    std::vector<ScriptGroup *> mCalls; // groups that are run on the way
    bool mMayCall = false;             // the calls are made under a condition
    std::vector<RunSet> mOnly;         // of the runs that take each of mNext, beside it
    RunSet mCallOnly = 0xFF;
};

struct GroupWays {
    RunSet mEntry = 0;
    std::vector<RunSet> mReached; // by step: the runs that reach it
    std::vector<StepWay> mWays;
};

// A call of a script file that the package does not have.
struct MissingCall {
    const ScriptGroup *mGroup;
    uint32_t mStep;
    std::string mFile;
};

class CGroupFlow {
public:
    // Follows Install, Uninstall and the groups of /command in `model`, and reads further script files into it. Groups
    // that no run reaches are loaded, too.
    CGroupFlow(CPackageModel &model, const std::vector<std::string> &commands);

    // The ways of a group that a run reaches; null for another.
    const GroupWays *WaysOf(const ScriptGroup &group) const;

    // The ways of any group that the model had when this was made.
    const GroupWays &LinksOf(const ScriptGroup &group) const { return mWays.at(&group); }

    // The runs that reach a step; none for a step of a group that is not reached.
    RunSet RunsOf(const ScriptGroup &group, uint32_t step) const;

    const std::vector<MissingCall> &MissingCalls() const { return mMissingCalls; }

    // The groups of /command.
    const std::vector<std::string> &Commands() const { return mCommands; }

    // Runs that there are: the script may say that all machines count as 32-bit or as 64-bit ones.
    RunSet AllRuns() const { return mAllRuns; }

private:
    void LoadRest();
    GroupWays WaysFor(ScriptGroup &group);
    void Enter(ScriptGroup &group, RunSet runs);
    void Follow(ScriptGroup &group);
    StepWay WayOf(ScriptGroup &group, uint32_t step);
    void TakeTarget(const ScriptGroup &group, const std::string &target, uint32_t step, StepWay &way_I_O);
    void TakeCall(const ScriptGroup &group, uint32_t step, const std::string &name, const std::string &file,
                  StepWay &way_I_O);

    CPackageModel &mModel;
    std::vector<std::string> mCommands;
    RunSet mAllRuns = 0x3F;
    std::map<const ScriptGroup *, GroupWays> mWays;
    std::vector<ScriptGroup *> mWaiting;
    std::vector<MissingCall> mMissingCalls;
};
