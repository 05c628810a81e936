#include "Pack/PlanFlow.h"

#include <algorithm>
#include <string>

#include "Commands/CommandFields.h"
#include "Common/TokenSplitter.h"
#include "Script/Macros.h"

namespace {

constexpr uint32_t kNone = 0xFFFFFFFF;

// The steps that can come behind one.
std::vector<uint32_t> Followers(const StepList &steps, uint32_t at)
{
    const uint32_t end = steps.Count();
    const std::string &text = steps.Records()[at].mText;
    if (text.empty()) {
        return {end};
    }
    TokenSplitter fields(";", text);
    const CommandInfo *const info = FindCommand(fields.First());
    if (info == nullptr) {
        return {at + 1};
    }
    if (info->mEffect == EEndsGroup) {
        return {end};
    }
    if (!info->HasTarget()) {
        return {at + 1};
    }
    std::string target;
    for (size_t field = 0; field < info->CountFields(); ++field) {
        target = fields.Next();
    }
    const bool stays = target.empty() || (target.front() == '!' && !ExtractBangName(target).empty());
    const uint32_t there = stays ? at + 1 : steps.Find(target);
    return info->mEffect == EJumps ? std::vector<uint32_t>{there} : std::vector<uint32_t>{at + 1, there};
}

} // namespace

// The immediate post-dominators, by the iteration of Cooper, Harvey and Kennedy over the reversed ways.
std::vector<uint32_t> MeetingSteps(const StepList &steps)
{
    const uint32_t end = steps.Count();
    std::vector<std::vector<uint32_t>> followers(end + 1), leaders(end + 1);
    for (uint32_t at = 0; at < end; ++at) {
        followers[at] = Followers(steps, at);
        for (const uint32_t next : followers[at]) {
            leaders[next].push_back(at);
        }
    }
    // The steps by when a walk backwards from the end has left them; the end comes last.
    std::vector<uint32_t> order(end + 1, kNone);
    std::vector<uint32_t> left;
    std::vector<std::pair<uint32_t, size_t>> walk{{end, 0}};
    std::vector<bool> met(end + 1, false);
    met[end] = true;
    while (!walk.empty()) {
        const uint32_t at = walk.back().first;
        if (walk.back().second < leaders[at].size()) {
            const uint32_t next = leaders[at][walk.back().second++];
            if (!met[next]) {
                met[next] = true;
                walk.emplace_back(next, 0);
            }
        } else {
            order[at] = static_cast<uint32_t>(left.size());
            left.push_back(at);
            walk.pop_back();
        }
    }
    std::vector<uint32_t> meeting(end + 1, kNone);
    meeting[end] = end;
    for (bool changed = true; changed;) {
        changed = false;
        for (auto step = left.rbegin(); step != left.rend(); ++step) {
            if (*step == end) {
                continue;
            }
            uint32_t common = kNone;
            for (uint32_t next : followers[*step]) {
                if (meeting[next] == kNone) {
                    continue;
                }
                while (common != kNone && common != next) {
                    uint32_t &behind = order[common] < order[next] ? common : next;
                    behind = meeting[behind];
                }
                common = next;
            }
            changed = changed || meeting[*step] != common;
            meeting[*step] = common;
        }
    }
    std::replace(meeting.begin(), meeting.end(), kNone, end); // a circle that never gets there
    meeting.pop_back();
    return meeting;
}
