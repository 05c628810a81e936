#include "Commands/CommandFields.h"

#include <algorithm>
#include <unordered_map>

namespace {

constexpr CommandField Plain(EFieldKind kind, const char *name)
{
    return {name, kind, EReadPlain, ENeedText};
}

constexpr CommandField Expanded(EFieldKind kind, const char *name)
{
    return {name, kind, EReadExpanded, ENeedText};
}

constexpr CommandField Number(EFieldKind kind, const char *name)
{
    return {name, kind, EReadNumber, ENeedText};
}

constexpr CommandField MayBeEmpty(CommandField field)
{
    return {field.mName, field.mKind, field.mReading, ENeedField};
}

constexpr CommandField Optional(CommandField field)
{
    return {field.mName, field.mKind, field.mReading, ENeedNothing};
}

} // namespace

#define TVX_COMMAND(name, number, effect, view, ...) {#name, number, effect, view, {__VA_ARGS__}},
const CommandInfo gCommandInfos[kCommandCount] = {
#include "Commands/CommandRows.h"
};
#undef TVX_COMMAND

const char *EffectWord(EEffect effect)
{
    switch (effect) {
    case EDoesNothing:
        return "nothing";
    case ETests:
        return "tests";
    case ETestsFile:
        return "tests file";
    case ETestsValue:
        return "tests value";
    case EJumps:
        return "jumps";
    case ECallsGroup:
        return "calls group";
    case EEndsGroup:
        return "ends group";
    case ETraces:
        return "traces";
    case EMovesTrace:
        return "moves trace";
    case EWaits:
        return "waits";
    case EShowsBox:
        return "shows box";
    case EAsksRestart:
        return "asks for restart";
    case ESetsFlag:
        return "sets flag";
    case EWritesFile:
        return "writes file";
    case EWritesFolder:
        return "copies folder";
    case EGivesInf:
        return "gives INF file";
    case EMakesFolder:
        return "makes folder";
    case EDeletesFile:
        return "deletes file";
    case EDeletesFolder:
        return "deletes folder";
    case EEmptiesFolder:
        return "empties folder";
    case EDeletesPrefs:
        return "deletes preferences";
    case EWritesValue:
        return "writes value";
    case EAddsEntry:
        return "adds entry";
    case ETakesEntry:
        return "takes entry";
    case EMakesLink:
        return "makes link";
    case EDeletesLink:
        return "deletes link";
    case ENamesFile:
        return "names file";
    case ERegisters:
        return "registers";
    case EUnregisters:
        return "unregisters";
    case EStartsProgram:
        return "starts program";
    case EStopsService:
        return "stops service";
    case EStartsService:
        return "starts service";
    case EMakesDriver:
        return "installs driver";
    case ERemovesDriver:
        return "removes driver";
    case ENamesDevice:
        return "names device";
    case ESetsDevices:
        return "sets devices";
    case EAsksTablet:
        return "asks tablet";
    }
    return "";
}

size_t CommandInfo::CountFields() const
{
    return static_cast<size_t>(
        std::find_if(mFields, mFields + kMostFields, [](const CommandField &field) { return field.mName == nullptr; }) -
        mFields);
}

bool CommandInfo::HasTarget() const
{
    const size_t count = CountFields();
    return count != 0 && mFields[count - 1].mKind == EFieldTarget;
}

const CommandInfo *FindCommand(std::string_view name)
{
    static const auto &byName = *new std::unordered_map<std::string_view, const CommandInfo *>([] {
        std::unordered_map<std::string_view, const CommandInfo *> rows;
        for (const CommandInfo &row : gCommandInfos) {
            rows[row.mName] = &row;
        }
        return rows;
    }());
    const auto row = byName.find(name);
    return row != byName.end() ? row->second : nullptr;
}
