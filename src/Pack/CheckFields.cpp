// What single fields say: numbers, permissions, versions, flags, companions, blanks.
#include <algorithm>
#include <map>

#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Pack/CheckContext.h"
#include "Pack/NumberText.h"
#include "Script/OSVersion.h"

namespace {

constexpr char kPermissions[] = "Users:FullControl";
constexpr size_t kLongestPath = 259; // of those entries of the platform that the actions call

// What the program sets or tests itself.
const std::vector<std::string> kProgramFlags = {"SKIP_MTAPI",         "FORCE_MTAPI",        "SKIP_PEN_SERVICE",
                                                "FORCE_PEN_SERVICE",  "SKIP_TOUCH_SERVICE", "FORCE_TOUCH_SERVICE",
                                                "NOHARDWARE_OVERRIDE"};

bool HasMarks(const std::string &text)
{
    return text.find_first_of("!^") != std::string::npos;
}

// Numbers that are read in another way than others, by command: the bounds of what they mean.
std::string FaultOfMeaning(const ScriptStep &step, const std::string &text)
{
    const int32_t number = DecimalNumber(text);
    const std::string &word = step.mWord;
    if (word == "InstallPenClass" && (number < 0 || number > 4)) {
        return "a start type is a number from 0 to 4";
    }
    if (word == "ChangeFriendlyName" && (number < 0 || number > 255)) {
        return "of this number the low 8 bits count, " + std::to_string(number & 0xFF);
    }
    if (word == "Delay" && number < 0) {
        return "a negative number of milliseconds does not wait";
    }
    const bool unnamed = step.mCommand->mEffect == EWritesValue && (step.Field(1).empty() || step.Field(1) == "@");
    if (unnamed && number % 256 == 0) {
        return "under the unnamed value, a multiple of 256 deletes the key";
    }
    return std::string();
}

void CheckNumber(CheckContext &context, const ScriptStep &step, const CommandField &field, size_t at)
{
    const std::string &text = step.mFields[at].mText;
    if (text.empty() || (field.mReading == EReadExpanded && HasMarks(text))) {
        return;
    }
    std::string fault = FaultOfNumber(text);
    if (field.mKind == EFieldPause && !fault.empty()) {
        fault = "\"" + text + "\" is read as a pause of " + std::to_string(DecimalNumber(text)) + " ms; write .\\\\" +
                text + " for a file";
    }
    if (fault.empty()) {
        fault = FaultOfMeaning(step, text);
    }
    if (!fault.empty()) {
        context.mFound.Add(ECheckBadNumber, step.PlaceOfField(at), fault);
    }
}

// A pause of 0 is no pause but the file.
void CheckNoPause(CheckContext &context, const ScriptStep &step)
{
    if (step.mCommand->mFields[0].mKind == EFieldPause && !step.mFields.empty() &&
        FaultOfNumber(step.mFields.front().mText).empty() && DecimalNumber(step.mFields.front().mText) == 0) {
        context.mFound.Add(ECheckBadNumber, step.PlaceOfField(0), "a pause of 0 is taken for the file; leave it out");
    }
}

void CheckVersion(CheckContext &context, const ScriptStep &step, size_t at)
{
    const std::string &text = step.mFields[at].mText;
    const WantedOSVersion wanted = ParseOSVersion(text);
    if (text.find('.') == std::string::npos) {
        context.mFound.Add(ECheckBadVersion, step.PlaceOfField(at),
                           "a version without a point is that of no Windows; write " + text + ".x or " + text + ".1");
    } else if (wanted.mMajor < 5 || wanted.mMajor > 6 || (!wanted.mAnyMinor && wanted.mMinor > 3)) {
        context.mFound.Add(ECheckBadVersion, step.PlaceOfField(at),
                           "no Windows from XP on says so of itself to this program: 5.1 to 6.3 are those that do");
    }
}

void CheckBlanks(CheckContext &context, const ScriptStep &step, const CommandField &field, size_t at)
{
    const std::string &text = step.mFields[at].mText;
    const bool free = field.mKind == EFieldText || field.mKind == EFieldValueName || field.mKind == EFieldPause;
    if (free || text.empty() || (text.front() != ' ' && text.back() != ' ')) {
        return;
    }
    const bool front = text.front() == ' ';
    context.mFound.Add(ECheckBlankInField, step.PlaceInField(at, front ? 0 : text.size() - 1, 1),
                       "this blank belongs to the field \"" + std::string(field.mName) + "\"");
}

// Some companions have to be programs and others libraries, whatever is done with the name.
void CheckCompanion(CheckContext &context, const ScriptStep &step, size_t at)
{
    const std::string text = ToLowerCopy(step.mFields[at].mText);
    const bool program = text.find(".exe") != std::string::npos;
    const std::string &word = step.mWord;
    if (!program && (word == "RemoveTvxHidRouter" || word == "SetDeviceProperties")) {
        context.mFound.Add(ECheckCompanionKind, step.PlaceOfField(at), word + " needs a program, a name with .exe");
    } else if (program && (word == "DevRemoveOEMINF" || word == "ChangeFriendlyName")) {
        context.mFound.Add(ECheckCompanionKind, step.PlaceOfField(at), word + " needs a library, not a program");
    }
}

void CheckField(CheckContext &context, const ScriptStep &step, const CommandField &field, size_t at)
{
    const std::string &text = step.mFields[at].mText;
    switch (field.mKind) {
    case EFieldNumber:
    case EFieldPause:
        CheckNumber(context, step, field, at);
        break;
    case EFieldPermissions:
        if (!text.empty() && text != kPermissions && !HasMarks(text)) {
            context.mFound.Add(ECheckBadPermissions, step.PlaceOfField(at),
                               "the one text for permissions is " + std::string(kPermissions));
        }
        break;
    case EFieldVersion:
        CheckVersion(context, step, at);
        break;
    case EFieldCompanion:
        CheckCompanion(context, step, at);
        break;
    default:
        break;
    }
    if (IsPathField(field.mKind) && text.size() > kLongestPath) {
        context.mFound.Add(ECheckValueTooLong, step.PlaceOfField(at),
                           "a path has at most " + std::to_string(kLongestPath) + " characters");
    }
    CheckBlanks(context, step, field, at);
}

// --- flags ---

struct FlagUses {
    std::map<std::string, ScriptPlace> mSet;
    std::map<std::string, ScriptPlace> mTested;
};

void TakeStaticFlags(CheckContext &context, FlagUses &uses_I_O)
{
    for (uint32_t file = 0; file < context.mModel.Files().size(); ++file) {
        const ProfileSection *const section = context.mModel.File(file).Find(u"STATIC_FLAGS");
        for (const ProfileLine &line : section != nullptr ? section->mLines : std::vector<ProfileLine>()) {
            if (line.IsComment()) {
                continue;
            }
            uses_I_O.mSet.insert({gCodePage.FromWide(line.mKey), CPackageModel::PlaceOfKey(&line, file)});
            const std::string fault = line.mHasValue ? FaultOfNumber(gCodePage.FromWide(line.mValue)) : "";
            if (!fault.empty()) {
                context.mFound.Add(ECheckBadNumber, CPackageModel::PlaceOfValue(&line, file), fault);
            }
        }
    }
}

void CheckFlags(CheckContext &context, const FlagUses &uses)
{
    std::vector<std::string> names = kProgramFlags;
    for (const auto &[name, place] : uses.mSet) {
        names.push_back(name);
    }
    const auto isProgramFlag = [](const std::string &name) {
        return std::find(kProgramFlags.begin(), kProgramFlags.end(), name) != kProgramFlags.end();
    };
    for (const auto &[name, place] : uses.mTested) {
        if (uses.mSet.count(name) == 0) {
            context.mFound.Add(ECheckFlagNeverSet, place,
                               "nothing sets the flag " + name + ", so it is 0" + NearestHint(name, names));
        }
    }
    names = kProgramFlags;
    for (const auto &[name, place] : uses.mTested) {
        names.push_back(name);
    }
    for (const auto &[name, place] : uses.mSet) {
        if (uses.mTested.count(name) == 0 && !isProgramFlag(name)) {
            context.mFound.Add(ECheckFlagNeverRead, place,
                               "neither a step nor the program looks at the flag " + name + NearestHint(name, names));
        }
    }
}

} // namespace

void CheckFields(CheckContext &context)
{
    FlagUses uses;
    TakeStaticFlags(context, uses);
    ForEachStep(context, [&](const CheckedStep &checked) {
        const ScriptStep &step = checked.mStep;
        if (step.mCommand == nullptr) {
            return;
        }
        ForEachField(step, [&](const CommandField &field, size_t at, const std::string &text) {
            CheckField(context, step, field, at);
            if (field.mKind == EFieldFlag && !text.empty()) {
                auto &flags = step.mCommand->mEffect == ESetsFlag ? uses.mSet : uses.mTested;
                flags.insert({text, step.PlaceOfField(at)});
            }
        });
        CheckNoPause(context, step);
    });
    CheckFlags(context, uses);
}
