// Jumps back and calls from which no run comes out again.
#include <algorithm>
#include <map>
#include <set>

#include "Pack/CheckContext.h"

namespace {

// Whether the answer of a condition can change while the steps from `from` to `to` run again and again. A file, a value
// and a restart are a matter of the world outside, a flag of the steps.
bool CanChange(const ScriptGroup &group, const GroupWays &ways, uint32_t from, uint32_t to)
{
    const ScriptStep &test = group.mSteps[to];
    if (test.mCommand->mEffect != ETests || test.mWord == "IfRebootRequired") {
        return true;
    }
    if (test.mWord != "CheckFlag") {
        return false;
    }
    for (uint32_t at = from; at <= to; ++at) {
        const ScriptStep &step = group.mSteps[at];
        const bool sets = step.mCommand != nullptr && step.mCommand->mEffect == ESetsFlag &&
                          step.Field(0) == test.Field(0) && step.Field(1) != test.Field(1);
        if (sets || !ways.mWays[at].mCalls.empty()) {
            return true;
        }
    }
    return false;
}

// Whether a step between two others can lead out of them.
bool LeadsOut(const GroupWays &ways, uint32_t from, uint32_t to)
{
    for (uint32_t at = from; at < to; ++at) {
        for (const uint32_t next : ways.mWays[at].mNext) {
            if (next < from || next > to) {
                return true;
            }
        }
    }
    return false;
}

// By step: whether some way from it leads to the end of the group.
std::vector<bool> CanEnd(const GroupWays &ways, const std::function<bool(const StepWay &)> &passes)
{
    const size_t count = ways.mWays.size();
    std::vector<std::vector<uint32_t>> from(count + 1);
    for (uint32_t at = 0; at < count; ++at) {
        if (passes(ways.mWays[at])) {
            for (const uint32_t next : ways.mWays[at].mNext) {
                from[std::min<size_t>(next, count)].push_back(at);
            }
        }
    }
    std::vector<bool> ends(count + 1, false);
    std::vector<uint32_t> waiting = {static_cast<uint32_t>(count)};
    ends[count] = true;
    while (!waiting.empty()) {
        const uint32_t at = waiting.back();
        waiting.pop_back();
        for (const uint32_t before : from[at]) {
            if (!ends[before]) {
                ends[before] = true;
                waiting.push_back(before);
            }
        }
    }
    return ends;
}

void CheckJumps(CheckContext &context, const ScriptGroup &group, const GroupWays &ways)
{
    const std::vector<bool> ends = CanEnd(ways, [](const StepWay &) { return true; });
    for (uint32_t at = 0; at < group.mSteps.size(); ++at) {
        const ScriptStep &step = group.mSteps[at];
        const bool jumps = step.mCommand != nullptr && step.mCommand->HasTarget() && !ways.mWays[at].mNext.empty();
        const uint32_t target = jumps ? ways.mWays[at].mNext.front() : at + 1;
        if (!jumps || target > at || ways.mReached[at] == 0) {
            continue;
        }
        const ScriptPlace place = step.PlaceOfField(step.FieldAt(step.mCommand->CountFields() - 1));
        const ScriptPlace back = group.mSteps[target].Place();
        if (!ends[at]) {
            context.mFound.Add(ECheckEndlessJump, place,
                               "from here on the steps run again without end, from line " + std::to_string(back.mLine),
                               {back});
        } else if (step.mCommand->mEffect != EJumps && !CanChange(group, ways, target, at) &&
                   !LeadsOut(ways, target, at)) {
            context.mFound.Add(ECheckEndlessJump, place,
                               "once true, " + step.mWord + " stays true: the steps from line " +
                                   std::to_string(back.mLine) + " on run again without end",
                               {back});
        }
    }
}

// The groups of which no way comes back, because all of them lead into groups of the kind. Those whose own jumps have
// no end are not among them.
std::set<const ScriptGroup *> FindEndless(const CheckContext &context)
{
    std::set<const ScriptGroup *> endless;
    for (const auto &group : context.mModel.Groups()) {
        const GroupWays *const ways = context.mFlow.WaysOf(*group);
        if (ways != nullptr && !ways->mWays.empty() && CanEnd(*ways, [](const StepWay &) { return true; })[0]) {
            endless.insert(group.get());
        }
    }
    for (bool changed = true; changed;) {
        changed = false;
        for (auto at = endless.begin(); at != endless.end();) {
            const bool ends = CanEnd(*context.mFlow.WaysOf(**at), [&](const StepWay &way) {
                return way.mMayCall || std::none_of(way.mCalls.begin(), way.mCalls.end(),
                                                    [&](const ScriptGroup *call) { return endless.count(call) != 0; });
            })[0];
            changed = changed || ends;
            at = ends ? endless.erase(at) : std::next(at);
        }
    }
    return endless;
}

// Whether calls among the endless groups lead from one to another.
bool Leads(const CheckContext &context, const std::set<const ScriptGroup *> &endless, const ScriptGroup *from,
           const ScriptGroup *to)
{
    std::set<const ScriptGroup *> seen;
    std::vector<const ScriptGroup *> waiting = {from};
    while (!waiting.empty()) {
        const ScriptGroup *const group = waiting.back();
        waiting.pop_back();
        if (group == to) {
            return true;
        }
        if (endless.count(group) == 0 || !seen.insert(group).second) {
            continue;
        }
        for (const StepWay &way : context.mFlow.WaysOf(*group)->mWays) {
            waiting.insert(waiting.end(), way.mCalls.begin(), way.mCalls.end());
        }
    }
    return false;
}

void CheckCircles(CheckContext &context)
{
    const std::set<const ScriptGroup *> endless = FindEndless(context);
    for (const ScriptGroup *const group : endless) {
        const GroupWays &ways = *context.mFlow.WaysOf(*group);
        for (size_t at = 0; at < group->mSteps.size(); ++at) {
            const StepWay &way = ways.mWays[at];
            const auto call = std::find_if(way.mCalls.begin(), way.mCalls.end(), [&](const ScriptGroup *called) {
                return !way.mMayCall && Leads(context, endless, called, group);
            });
            if (call != way.mCalls.end() && ways.mReached[at] != 0) {
                const bool itself = *call == group;
                context.mFound.Add(ECheckEndlessGroup, group->mSteps[at].Place(),
                                   "[" + group->mName + "] calls " +
                                       (itself ? "itself" : "[" + (*call)->mName + "], which leads back to it,") +
                                       " on every way through it: the run stops when its stack is used up",
                                   {(*call)->mPlace});
            }
        }
    }
}

} // namespace

void CheckEndless(CheckContext &context)
{
    for (const auto &group : context.mModel.Groups()) {
        const GroupWays *const ways = context.mFlow.WaysOf(*group);
        if (ways != nullptr && !group->mSteps.empty()) {
            CheckJumps(context, *group, *ways);
        }
    }
    CheckCircles(context);
}
