// Files that steps read from the package, and places that they write to and empty.
#include <algorithm>
#include <set>

#include "Common/StringUtilities.h"
#include "Pack/CheckContext.h"
#include "Pack/PackMacros.h"
#include "Script/Macros.h"

namespace {

bool IsEscaped(const std::string &path)
{
    return std::any_of(path.begin(), path.end(), [](char c) { return c >= 0 && c < ' ' && c != kFolderMark; });
}

bool IsOfPackage(const std::string &path)
{
    return !path.empty() && path.front() != kFolderMark && path.front() != '\\' &&
           path.find(':') == std::string::npos && !IsEscaped(path);
}

class CStepFiles {
public:
    CStepFiles(CheckContext &context, const CheckedStep &checked) : mContext(context), mChecked(checked) {}

    // The paths that a text stands for, on all machines that reach the step.
    std::set<std::string> PathsOf(const std::string &text) const
    {
        std::set<std::string> paths;
        std::vector<PackageLanguage> &languages = mContext.mModel.Languages();
        for (const bool wide : {false, true}) {
            for (const bool modern : {false, true}) {
                if (!languages.empty() && (mChecked.mRuns & (wide ? kRuns64 : kRuns32)) != 0) {
                    CPackMacros macros(mContext.mModel, languages.front(), {wide, modern});
                    paths.insert(ExpandMacros(text, macros));
                }
            }
        }
        return paths;
    }

    // Whether all macros of a text are known; the others are told by their own check.
    static bool IsExpandable(const std::string &text)
    {
        CPackMacros macros;
        ExpandMacros(text, macros);
        return macros.mUnknownNames.empty() && macros.mUnpaired.empty();
    }

    void CheckSource(const CommandField &field, size_t at, const std::string &text) const
    {
        if (!IsExpandable(text)) {
            return;
        }
        const std::set<std::string> paths = PathsOf(text);
        std::vector<std::string> missing;
        for (const std::string &path : paths) {
            if (!IsOfPackage(path)) {
                continue;
            }
            const PackageEntry *const entry = Find(path, field.mKind == EFieldCustomSource);
            if (entry == nullptr) {
                missing.push_back(path);
            } else if (path.find(kFolderMark) == std::string::npos &&
                       !mContext.mModel.Tree().IsWrittenSo(path, *entry)) {
                mContext.mFound.Add(ECheckOtherCase, mChecked.mStep.PlaceOfField(at),
                                    "the package has this file as " + entry->mPath);
            }
        }
        // Where the program is installed, a removal finds its files beside it, which CheckRemoval looks at.
        const bool removal = (mChecked.mRuns & (kInstallRuns | kCommandRuns)) == 0 && !mContext.mRemovalFolder.empty();
        if (!missing.empty() && !removal) {
            const bool program = field.mKind == EFieldProgram && text.find('\\') == std::string::npos;
            const std::string verb = missing.size() == 1 ? " is not in the package" : " are not in the package";
            mContext.mFound.Add(ECheckMissingSource, mChecked.mStep.PlaceOfField(at),
                                ShownPath(Listed(missing)) + verb +
                                    (program ? ", and PATH is not searched: write its folder" : Hint(missing.front())));
        }
    }

    void CheckTarget(size_t at, const std::string &text) const
    {
        const ScriptStep &step = mChecked.mStep;
        const std::string path = *PathsOf(text).begin();
        const std::string place = PlacePath(path);
        std::string rest;
        const std::string folder = FolderOf(place, &rest);
        const EEffect effect = step.mCommand->mEffect;
        const bool makes =
            effect == EMakesFolder || effect == EWritesFile || effect == EWritesFolder || effect == EMakesLink;
        const bool clears = effect == EDeletesFolder || effect == EEmptiesFolder;
        if (IsEscaped(path) || path.front() == ' ' || !IsExpandable(text) || (!makes && !clears)) {
            return;
        }
        const ScriptPlace where = step.PlaceOfField(at);
        if (makes && IsOfPackage(path) && path.front() != '.') {
            const std::string first = path.substr(0, path.find('\\'));
            mContext.mFound.Add(ECheckBareName, where,
                                effect == EMakesFolder || first != path
                                    ? "the folder " + first +
                                          " is not made, as the path has no beginning; write .\\\\" + first
                                    : "a bare name lies in the package's folder; write where the file belongs");
        } else if (makes && IsOfPackage(path)) {
            mContext.mFound.Add(ECheckForeignTarget, where,
                                "this is in the folder that the package is installed from, which may be read-only");
        } else if (path.find(':') != std::string::npos) {
            mContext.mFound.Add(ECheckForeignTarget, where,
                                "not every machine has this drive or this folder; name the "
                                "folder by a macro");
        } else if (clears && !folder.empty() && rest.empty()) {
            mContext.mFound.Add(ECheckForeignTarget, where, "!" + folder + "! is not the package's own");
        } else if (makes && IsSharedFolder(folder) && rest.find('\\') == std::string::npos && effect != EMakesFolder &&
                   effect != EWritesFolder) {
            mContext.mFound.Add(ECheckForeignTarget, where,
                                "!" + folder + "! belongs to all programs; write to a folder of the package's own");
        }
    }

    void CheckItself(size_t from, size_t to) const
    {
        const ScriptStep &step = mChecked.mStep;
        const std::string source = PlacePath(*PathsOf(step.Field(from)).begin());
        if (!source.empty() && source == PlacePath(*PathsOf(step.Field(to)).begin())) {
            mContext.mFound.Add(ECheckCopyOntoItself, step.PlaceOfField(step.FieldAt(to)),
                                "the target is deleted before it is copied, and both are the same file");
        }
    }

private:
    static bool IsSharedFolder(const std::string &folder)
    {
        return folder == "PROGFILES" || folder == "PROGRAM FILES" || folder == "WINDOWS" || folder == "PROFILES" ||
               folder == "APP DATA";
    }

    // Any file that fits where the path holds the name of a product, which no package knows.
    const PackageEntry *Find(const std::string &path, bool custom) const
    {
        const size_t mark = path.find(kFolderMark);
        if (mark == std::string::npos) {
            return mContext.mModel.Tree().Find(path);
        }
        const size_t end = path.find(kFolderMark, mark + 1);
        const std::string front = UpperAscii(PlainPackagePath(path.substr(0, mark)).value_or(std::string()));
        const std::string behind = PlacePath(end == std::string::npos ? std::string() : path.substr(end + 1));
        if (custom) {
            const PackageEntry *const plain = mContext.mModel.Tree().Find(
                path.substr(0, mark) + (end == std::string::npos ? "" : path.substr(end + 1)));
            if (plain != nullptr) {
                return plain;
            }
        }
        return mContext.mModel.Tree().FindLike(front, behind);
    }

    std::string Hint(const std::string &path) const
    {
        const std::string plain = PlainPackagePath(path).value_or(path);
        const std::string name = UpperAscii(plain.substr(plain.rfind('\\') + 1));
        for (const std::string &known : mContext.mModel.Tree().Paths()) {
            if (UpperAscii(known.substr(known.rfind('\\') + 1)) == name) {
                return "; it has " + known;
            }
        }
        return NearestHint(plain, mContext.mModel.Tree().Paths());
    }

    CheckContext &mContext;
    const CheckedStep &mChecked;
};

void CheckStep(CheckContext &context, const CheckedStep &checked)
{
    const ScriptStep &step = checked.mStep;
    const CStepFiles files(context, checked);
    size_t source = SIZE_MAX, target = SIZE_MAX;
    size_t number = 0;
    ForEachField(step, [&](const CommandField &field, size_t at, const std::string &text) {
        const size_t row = number++;
        if (text.empty() || field.mReading == EReadNumber) {
            return;
        }
        switch (field.mKind) {
        case EFieldSource:
        case EFieldCustomSource:
            source = row;
            files.CheckSource(field, at, text);
            if (step.mCommand->mEffect == EGivesInf && text.front() != '!' && text.find(':') == std::string::npos) {
                context.mFound.Add(ECheckRelativeInf, step.PlaceOfField(at),
                                   "Windows wants the whole path of an INF file; write !.!\\\\ in front");
            }
            break;
        case EFieldProgram:
        case EFieldCompanion:
            files.CheckSource(field, at, text);
            break;
        case EFieldFile:
        case EFieldFolder:
            target = row;
            files.CheckTarget(at, text);
            break;
        default:
            break;
        }
    });
    if (source != SIZE_MAX && target != SIZE_MAX && step.mCommand->mEffect == EWritesFile) {
        files.CheckItself(source, target);
    }
}

} // namespace

void CheckFiles(CheckContext &context)
{
    ForEachStep(context, [&](const CheckedStep &checked) {
        if (checked.mStep.mCommand != nullptr) {
            CheckStep(context, checked);
        }
    });
}
