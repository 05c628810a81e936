#include "Pack/CheckContext.h"

#include "Common/StringUtilities.h"

void ForEachStep(CheckContext &context, const std::function<void(const CheckedStep &)> &visit)
{
    for (const auto &group : context.mModel.Groups()) {
        for (uint32_t index = 0; index < group->mSteps.size(); ++index) {
            const RunSet runs = context.mFlow.RunsOf(*group, index);
            visit({*group, index, group->mSteps[index], runs != 0 ? runs : context.mFlow.AllRuns(), runs != 0});
        }
    }
}

void ForEachField(const ScriptStep &step, const FieldVisit &visit)
{
    if (step.mCommand == nullptr) {
        return;
    }
    for (size_t number = 0; number < step.mCommand->CountFields(); ++number) {
        const size_t at = step.FieldAt(number);
        if (at < step.mFields.size()) {
            visit(step.mCommand->mFields[number], at, step.mFields[at].mText);
        }
    }
}

bool IsPathField(EFieldKind kind)
{
    switch (kind) {
    case EFieldSource:
    case EFieldCustomSource:
    case EFieldData:
    case EFieldLinked:
    case EFieldProgram:
    case EFieldCompanion:
    case EFieldFile:
    case EFieldFolder:
    case EFieldScript:
    case EFieldKey:
    case EFieldDevice:
        return true;
    default:
        return false;
    }
}

bool IsAllowField(const std::string &text)
{
    return TrimCopy(text).compare(0, 6, "check:") == 0;
}

std::string Listed(const std::vector<std::string> &names)
{
    std::string list;
    for (const std::string &name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}
