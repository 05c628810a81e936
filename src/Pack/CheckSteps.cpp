// The words of steps, and how many fields stand behind them.
#include <map>

#include "Pack/CheckContext.h"
#include "Script/Macros.h"

namespace {

const std::vector<std::string> &CommandNames()
{
    static const auto &names = *new std::vector<std::string>([] {
        std::vector<std::string> all;
        for (const CommandInfo &row : gCommandInfos) {
            all.emplace_back(row.mName);
        }
        return all;
    }());
    return names;
}

void CheckWord(CheckContext &context, const CheckedStep &checked)
{
    const ScriptStep &step = checked.mStep;
    if (step.mWord.empty() && step.mFields.empty()) {
        const ScriptPlace place = step.mLine.PlaceOf(0, step.mLine.Raw().size());
        context.mFound.Add(ECheckLabelAlone, place,
                           step.mLabel.empty()
                               ? "an empty step ends the group"
                               : "a label without a step ends the group; write " + step.mLabel + "NULL");
        return;
    }
    // The section of a language holds its words, too.
    if (context.mModel.IsLanguageSection(checked.mGroup.mName) && step.mLine.Text().find('=') != std::string::npos) {
        return;
    }
    std::string hint = NearestHint(step.mWord, CommandNames());
    if (step.mWord.compare(0, 1, "<") == 0) {
        hint = "; a label ends in >";
    } else if (step.mWord.compare(0, 1, "!") == 0) {
        hint = "; a group is called with a mark on both sides, !GROUP!";
    } else if (step.mWord.compare(0, 1, "[") == 0) {
        hint = "; the name of a section ends in ]";
    }
    context.mFound.Add(ECheckUnknownCommand, step.Place(), "no command \"" + step.mWord + "\"" + hint);
}

void CheckCount(CheckContext &context, const ScriptStep &step)
{
    const CommandInfo &command = *step.mCommand;
    for (size_t number = 0; number < command.CountFields(); ++number) {
        const CommandField &field = command.mFields[number];
        const size_t at = step.FieldAt(number);
        if (field.mNeed == ENeedNothing) {
            continue;
        }
        if (at >= step.mFields.size()) {
            const std::string empty = field.mNeed == ENeedField ? "; where it is meant to be empty, end in \";\"" : "";
            context.mFound.Add(ECheckMissingField, step.Place(),
                               step.mWord + " lacks the field \"" + field.mName + "\"" + empty);
            return;
        }
        if (field.mNeed == ENeedText && step.mFields[at].mText.empty()) {
            context.mFound.Add(ECheckMissingField, step.PlaceOfField(at),
                               "the field \"" + std::string(field.mName) + "\" of " + step.mWord + " is empty");
            return;
        }
    }
}

void CheckRest(CheckContext &context, const ScriptStep &step)
{
    const size_t known = step.mCommand == nullptr ? 1 : step.FieldAt(step.mCommand->CountFields());
    for (size_t at = known; at < step.mFields.size(); ++at) {
        if (!step.mFields[at].mText.empty() && !IsAllowField(step.mFields[at].mText)) {
            const std::string word = step.mCommand == nullptr ? "a call" : step.mWord;
            context.mFound.Add(ECheckExtraField, step.PlaceOfField(at), word + " does not look at this field");
            return;
        }
    }
}

} // namespace

void CheckSteps(CheckContext &context)
{
    ForEachStep(context, [&](const CheckedStep &checked) {
        const ScriptStep &step = checked.mStep;
        if (step.mCommand == nullptr && step.mCall.empty()) {
            CheckWord(context, checked);
            return;
        }
        if (step.mCommand != nullptr) {
            CheckCount(context, step);
            if (step.mCommand->mEffect == EShowsBox) {
                context.mFound.Add(ECheckBreakLeft, step.Place(),
                                   "Break waits for somebody who answers its box, in a silent run too");
            }
        }
        CheckRest(context, step);
    });
}
