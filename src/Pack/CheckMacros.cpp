// Macros and the words of languages in steps.
#include <algorithm>
#include <map>

#include "Common/StringUtilities.h"
#include "Pack/CheckContext.h"
#include "Pack/PackMacros.h"
#include "Script/MacroNames.h"
#include "Script/Macros.h"

namespace {

const std::vector<std::string> &MacroNames()
{
    static const auto &names = *new std::vector<std::string>(std::begin(kMacroNames), std::end(kMacroNames));
    return names;
}

bool IsMacro(const std::string &name)
{
    const std::string upper = UpperAscii(name);
    return std::any_of(std::begin(kMacroNames), std::end(kMacroNames),
                       [&](const char *known) { return upper == known; });
}

// The place of a name between its marks in a field, in any case; the whole field when a word brings it in.
ScriptPlace PlaceOfName(const ScriptStep &step, size_t at, char mark, const std::string &name)
{
    const std::string text = UpperAscii(step.mFields[at].mText);
    const std::string marked = mark + UpperAscii(name) + mark;
    const size_t found = text.find(marked);
    return found == std::string::npos ? step.PlaceOfField(at) : step.PlaceInField(at, found, marked.size());
}

class CFieldCheck {
public:
    CFieldCheck(CheckContext &context, const ScriptStep &step, size_t at) : mContext(context), mStep(step), mAt(at) {}

    // A field that the program expands.
    void CheckExpanded()
    {
        const std::string &text = mStep.mFields[mAt].mText;
        if (text.find_first_of("!^") == std::string::npos) {
            return;
        }
        std::map<std::string, std::vector<std::string>> missing; // languages by word
        for (PackageLanguage &language : mContext.mModel.Languages()) {
            CPackMacros macros(mContext.mModel, language);
            ExpandMacros(text, macros);
            Tell(macros);
            for (const std::string &word : macros.mMissingWords) {
                if (language.mHasSection) {
                    missing[word].push_back(language.mName);
                }
            }
            if (!macros.mAskedWords) {
                break;
            }
        }
        for (const auto &[word, languages] : missing) {
            mContext.mFound.Add(ECheckMissingWord, PlaceOfName(mStep, mAt, '^', word),
                                "[" + Listed(languages) + "] has no word " + word + ", which then stands for itself");
        }
    }

    // A field that the program takes as it stands.
    void CheckPlain(bool key)
    {
        const std::string &text = mStep.mFields[mAt].mText;
        for (const char mark : {'!', '^'}) {
            for (size_t from = text.find(mark); from != std::string::npos; from = text.find(mark, from + 1)) {
                const size_t end = text.find(mark, from + 1);
                const std::string name = end == std::string::npos ? "" : text.substr(from + 1, end - from - 1);
                // A mark at the beginning of a key is a name of PlatformData.
                const bool platformName = key && mark == '!' && text.find_first_not_of('\\') == from;
                if (platformName) {
                    from = std::min(end, text.size() - 1);
                } else if (mark == '!' ? IsMacro(name) : IsWord(name)) {
                    mContext.mFound.Add(ECheckUnexpandedMacro, mStep.PlaceInField(mAt, from, end + 1 - from),
                                        mStep.mWord + " takes this field as it stands: the macro is not expanded");
                    return;
                }
            }
        }
    }

private:
    bool IsWord(const std::string &name)
    {
        std::vector<PackageLanguage> &languages = mContext.mModel.Languages();
        return !name.empty() && std::any_of(languages.begin(), languages.end(), [&](PackageLanguage &language) {
            return mContext.mModel.Word(language, name).has_value();
        });
    }

    void Tell(const CPackMacros &macros)
    {
        for (const char mark : macros.mUnpaired) {
            const std::string &text = mStep.mFields[mAt].mText;
            const size_t at = text.rfind(mark);
            mContext.mFound.Add(ECheckUnpairedMark,
                                at == std::string::npos ? mStep.PlaceOfField(mAt) : mStep.PlaceInField(mAt, at, 1),
                                std::string("this ") + mark + " has no partner, and stays as it is; " + mark + mark +
                                    " stands for one");
        }
        for (const std::string &name : macros.mUnknownNames) {
            // What an unpaired mark leaves behind is no name.
            const bool platform = !mContext.mModel.Value("PlatformData", name).empty();
            mContext.mFound.Add(ECheckUnknownMacro, PlaceOfName(mStep, mAt, '!', name),
                                "no macro !" + name + "!" +
                                    (platform
                                         ? "; a name of PlatformData is written !!" + name + "!! in an expanded key"
                                         : NearestHint(name, MacroNames())));
        }
    }

    CheckContext &mContext;
    const ScriptStep &mStep;
    size_t mAt;
};

} // namespace

void CheckMacros(CheckContext &context)
{
    ForEachStep(context, [&](const CheckedStep &checked) {
        const ScriptStep &step = checked.mStep;
        if (step.mCommand == nullptr && !step.mCall.empty() && !step.mFields.empty()) {
            CFieldCheck(context, step, 0).CheckExpanded();
        }
        ForEachField(step, [&](const CommandField &field, size_t at, const std::string &) {
            CFieldCheck check(context, step, at);
            if (field.mReading == EReadExpanded) {
                check.CheckExpanded();
            } else if (field.mKind != EFieldTarget && field.mKind != EFieldGroup && field.mReading == EReadPlain) {
                check.CheckPlain(field.mKind == EFieldKey);
            }
        });
    });
}
