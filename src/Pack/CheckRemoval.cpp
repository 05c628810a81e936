// A package that installs its own program is removed from the folder of that: what the removal reads has to be there.
#include <unordered_set>

#include "Common/StringUtilities.h"
#include "Pack/CheckContext.h"
#include "Pack/PackMacros.h"
#include "Script/Macros.h"

namespace {

std::string LastName(const std::string &place)
{
    return place.substr(place.rfind('\\') + 1);
}

// The place of a field.
std::string PlaceOf(CheckContext &context, const ScriptStep &step, size_t number)
{
    CPackMacros macros(context.mModel, context.mModel.Languages().front());
    return PlacePath(ExpandMacros(step.Field(number), macros));
}

bool IsRelative(const std::string &place)
{
    return !place.empty() && place.front() != kFolderMark && place.front() != '\\' &&
           place.find(':') == std::string::npos;
}

class CRemovalCheck {
public:
    explicit CRemovalCheck(CheckContext &context) : mContext(context)
    {
        ForEachStep(context, [&](const CheckedStep &checked) { TakeCopy(checked); });
    }

    // Where the program is copied to; null when it is not.
    const ScriptStep *Program() const { return mProgram; }
    const std::string &Folder() const { return mFolder; }

    void Check()
    {
        std::vector<std::string> scripts = mContext.mModel.Includes();
        scripts.insert(scripts.begin(), kMainScript);
        ForEachStep(mContext, [&](const CheckedStep &checked) { CheckStep(checked); });
        for (const std::string &script : scripts) {
            const std::string place = PlacePath(script);
            if (IsRelative(place) && !IsBrought(place)) {
                mContext.mFound.Add(ECheckMissingForRemoval, mProgram->PlaceOfField(1),
                                    "the program is installed here without " +
                                        PlainPackagePath(script).value_or(script) + ", which it reads in a removal");
            }
        }
    }

private:
    void TakeCopy(const CheckedStep &checked)
    {
        const ScriptStep &step = checked.mStep;
        if (step.mCommand == nullptr || !checked.mReached || (checked.mRuns & ~kUninstallRuns) == 0) {
            return;
        }
        const std::string target = PlaceOf(mContext, step, 1);
        if (step.mCommand->mEffect == EWritesFolder) {
            mFolders.push_back(target);
        } else if (step.mCommand->mEffect == EWritesFile) {
            mFiles.insert(target);
            const std::string source = LastName(PlaceOf(mContext, step, 0));
            if (mProgram == nullptr && (source == "TAVIXSETUP.EXE" || source == "REMOVE.EXE") && !IsRelative(target) &&
                FolderOf(target) != "TEMP") {
                mProgram = &step;
                mFolder = target.substr(0, target.size() - LastName(target).size());
            }
        }
    }

    bool IsBrought(const std::string &place) const
    {
        const std::string whole = mFolder + place;
        bool brought = mFiles.count(whole) != 0;
        for (const std::string &folder : mFolders) {
            brought = brought || IsWithin(whole, folder);
        }
        return brought;
    }

    void CheckStep(const CheckedStep &checked)
    {
        const ScriptStep &step = checked.mStep;
        if (!checked.mReached || (checked.mRuns & kUninstallRuns) == 0) {
            return;
        }
        const auto check = [&](size_t at, const std::string &text, bool mayMiss) {
            CPackMacros macros(mContext.mModel, mContext.mModel.Languages().front());
            const std::string place = PlacePath(ExpandMacros(text, macros));
            const bool there = !mayMiss || mContext.mModel.Tree().Find(place) != nullptr;
            if (IsRelative(place) && place.find(kFolderMark) == std::string::npos && there && !IsBrought(place)) {
                mContext.mFound.Add(ECheckMissingForRemoval, step.PlaceOfField(at),
                                    "a removal runs in " + ShownPath(mFolder.substr(0, mFolder.size() - 1)) +
                                        ", where Install puts no " + PlainPackagePath(ShownPath(text)).value_or(place));
            }
        };
        if (step.mCommand == nullptr && !step.mFields.empty()) {
            check(0, step.mFields[0].mText, true);
        }
        ForEachField(step, [&](const CommandField &field, size_t at, const std::string &text) {
            switch (field.mKind) {
            case EFieldSource:
            case EFieldProgram:
            case EFieldCompanion:
                check(at, text, false);
                break;
            case EFieldData:
            case EFieldScript:
                check(at, text, true);
                break;
            default:
                break;
            }
        });
    }

    CheckContext &mContext;
    const ScriptStep *mProgram = nullptr;
    std::string mFolder; // with a back-slash behind
    std::unordered_set<std::string> mFiles;
    std::vector<std::string> mFolders;
};

} // namespace

void CheckRemoval(CheckContext &context)
{
    CRemovalCheck check(context);
    if (check.Program() != nullptr) {
        context.mRemovalFolder = check.Folder();
        check.Check();
    }
}
