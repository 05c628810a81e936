// Labels and the jumps to them.
#include <map>
#include <set>

#include "Pack/CheckContext.h"
#include "Script/Macros.h"

namespace {

constexpr char kDoneLabel[] = "DONE"; // what the program's list gives a step DONE
constexpr char kDoneTarget[] = "<DONE>";

bool IsLabel(const std::string &text)
{
    return text.size() > 2 && text.front() == '<' && text.find('>') == text.size() - 1;
}

// The target of a step and the field that it stands in; false for a step without one.
bool TargetOf(const ScriptStep &step, std::string &text_O, size_t &at_O)
{
    if (step.mCommand == nullptr || !step.mCommand->HasTarget()) {
        return false;
    }
    at_O = step.FieldAt(step.mCommand->CountFields() - 1);
    text_O = at_O < step.mFields.size() ? step.mFields[at_O].mText : std::string();
    return !text_O.empty();
}

void CheckTarget(CheckContext &context, const ScriptGroup &group, const ScriptStep &step,
                 const std::vector<std::string> &labels, std::set<std::string> &used_O)
{
    std::string text;
    size_t at = 0;
    if (!TargetOf(step, text, at) || !ExtractBangName(text).empty()) {
        return;
    }
    if (!IsLabel(text)) {
        std::string hint = NearestHint("<" + text + ">", labels);
        hint = text == kDoneLabel || text == "done" ? "; did you mean \"<DONE>\"?" : hint;
        context.mFound.Add(ECheckBadTarget, step.PlaceOfField(at),
                           "\"" + text + "\" is neither a <label> nor a !GROUP!, and ends the group" + hint);
        return;
    }
    used_O.insert(text);
    if (text != kDoneTarget && group.mList->Find(text) == group.mList->Count()) {
        context.mFound.Add(ECheckMissingLabel, step.PlaceOfField(at),
                           "no line of [" + group.mName + "] has the label " + text + ", so the group ends" +
                               NearestHint(text, labels));
    }
}

void CheckGroup(CheckContext &context, const ScriptGroup &group)
{
    std::vector<std::string> labels = {kDoneTarget};
    std::map<std::string, const ScriptStep *> last;
    const auto placeOfLabel = [](const ScriptStep &step) { return step.mLine.PlaceOf(0, step.mLabel.size()); };
    for (const ScriptStep &step : group.mSteps) {
        if (step.mLabel.empty() || step.mLabel == kDoneLabel) {
            continue;
        }
        const ScriptStep *&known = last[step.mLabel];
        if (known != nullptr) {
            context.mFound.Add(ECheckDuplicateLabel, placeOfLabel(*known),
                               step.mLabel + " stands again in line " + std::to_string(placeOfLabel(step).mLine) +
                                   ", and that one counts",
                               {placeOfLabel(step)});
        }
        known = &step;
        labels.push_back(step.mLabel);
    }
    std::set<std::string> used;
    for (const ScriptStep &step : group.mSteps) {
        CheckTarget(context, group, step, labels, used);
    }
    for (const auto &[label, step] : last) {
        if (label == kDoneTarget) {
            context.mFound.Add(ECheckUnusedLabel, placeOfLabel(*step),
                               "a jump to <DONE> ends the group and does not come here");
        } else if (used.count(label) == 0) {
            context.mFound.Add(ECheckUnusedLabel, placeOfLabel(*step), "nothing jumps to " + label);
        }
    }
}

} // namespace

void CheckLabels(CheckContext &context)
{
    for (const auto &group : context.mModel.Groups()) {
        CheckGroup(context, *group);
    }
}
