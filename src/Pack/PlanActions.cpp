// What the steps that act would do, and what is so behind them.
#include <algorithm>
#include <cstring>

#include "Commands/Commands.h"
#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Files/CustomPath.h"
#include "Pack/PlanRun.h"
#include "Script/Step.h"

const std::map<std::string, StepHandler> &PortableHandlers()
{
    static const auto &handlers = *new std::map<std::string, StepHandler>{
        {"Command", StepCommand},
        {"SetRebootFlag", StepSetRebootFlag},
        {"Log", StepLog},
        {"IsComment", StepIsComment},
        {"Language", StepLanguage},
        {"NULL", StepNULL},
        {"ShowDialog", StepShowDialog},
        {"SetDefaultDebugFilePath", StepSetDefaultDebugFilePath},
        {"SetFlag", StepSetFlag},
        {"DONE", StepDONE},
    };
    return handlers;
}

EAnswer CPlanRun::Act(const CommandInfo &info, const std::vector<std::string> &fields, std::string &note_O)
{
    switch (info.mEffect) {
    case ESetsFlag:
        if (GetFlag(fields[0]) != DecimalNumber(fields[1]) || mState.mMaybeFlags.count(fields[0]) != 0) {
            Changed();
        }
        mState.mMaybeFlags.erase(fields[0]);
        return EAnswer::EYes;
    case EAsksRestart:
        if (mState.mReboot != EAnswer::EYes) {
            Changed();
        }
        return EAnswer::EYes;
    case EWritesFile:
    case EWritesFolder:
    case EGivesInf:
    case EMakesFolder:
    case EDeletesFile:
    case EDeletesFolder:
    case EEmptiesFolder:
    case EMakesLink:
        return ActOnFiles(info, fields, note_O);
    case EWritesValue:
    case EAddsEntry:
    case ETakesEntry:
        return ActOnRegistry(info, fields, note_O);
    case EShowsBox:
        note_O = "waits for an answer, in a silent run, too";
        return EAnswer::EYes;
    default:
        return EAnswer::EYes;
    }
}

std::string CPlanRun::CustomSource(const std::string &path)
{
    const EAnswer there = mState.mFiles.Exists(mContext.mMachine.FilePath(path, EPlanView::E64));
    return there == EAnswer::EYes ? path : ResolveCustomPath(path, mProductName);
}

EAnswer CPlanRun::Copy(const std::string &from, const std::string &to, EPlanView view, std::string &note_O)
{
    const std::string source = mContext.mMachine.FilePath(from, view);
    const std::string target = mContext.mMachine.FilePath(to, view);
    const TreeFact fact = source.empty() ? TreeFact{EAnswer::ENo, false, false, {}, {}} : mState.mFiles.Find(source);
    if (fact.mThere == EAnswer::ENo) {
        note_O = "the source is not there";
        return EAnswer::ENo;
    }
    const TreeFact former = target.empty() ? TreeFact() : mState.mFiles.Find(target);
    if (fact.mFolder || target.empty()) {
        if (former.mThere == EAnswer::EYes && former.mFolder) {
            throw PlanCourseEnd{false,
                                "the copy of a folder to " + to + ", which is a folder, waits for a place for ever"};
        }
        // The program makes room before it finds out.
        const bool loses = former.mThere == EAnswer::EYes && !former.mFolder;
        note_O = target.empty() ? "no target"
                 : loses        ? "the source is a folder; the target is deleted"
                                : "the source is a folder";
        if (!target.empty() && former.mThere != EAnswer::EYes && !ParentPath(target).empty()) {
            TreeFact folder;
            folder.mFolder = true;
            mState.mFiles.Put(ParentPath(target), folder); // before the copy fails
        }
        if (!target.empty() && former.mThere == EAnswer::EOpen) {
            note_O = "the source is a folder; a file at the target is deleted";
            return EAnswer::EOpen; // and what is not known to be there stays so
        }
        if (loses) {
            mState.mFiles.Remove(target);
        }
        return AnswerOf(loses);
    }
    if (source == target) {
        note_O = "a file cannot be copied over itself";
        return EAnswer::ENo;
    }
    if (former.mThere == EAnswer::EYes && former.mFolder) {
        note_O = "a folder has this name: the copy stands beside it and waits for the next start of Windows";
        mRebootRequired = true;
        return EAnswer::ENo;
    }
    if (fact.mThere == EAnswer::EOpen) {
        note_O = "if the source is there";
        mState.mFiles.PutPerhaps(target);
        return EAnswer::EOpen;
    }
    TreeFact copy;
    copy.mFrom = fact.mFrom.empty() ? source : fact.mFrom;
    copy.mVersion = fact.mVersion;
    mState.mFiles.Put(target, copy);
    for (auto answer = mState.mAnswers.begin(); answer != mState.mAnswers.end();) {
        const bool about = answer->first.compare(0, target.size() + 7, "newer\n" + target + "\n") == 0;
        answer = about ? mState.mAnswers.erase(answer) : std::next(answer);
    }
    return EAnswer::EYes;
}

// What is known to lie in a folder of the package, as facts of their own.
void CPlanRun::TakeFolderOfPackage(const std::string &folder)
{
    for (const std::string &path : mContext.mTree.Paths()) {
        const std::string place = mContext.mMachine.FilePath(path, EPlanView::E64);
        const bool below = place.size() > folder.size() && place.compare(0, folder.size() + 1, folder + '\\') == 0;
        const TreeFact fact = below ? mState.mFiles.Find(place) : TreeFact();
        if (fact.mThere == EAnswer::EYes) {
            mState.mFiles.Put(place, fact);
        }
    }
}

bool CPlanRun::IsOfPackage(const std::string &place) const
{
    return mContext.mMachine.FileGround(place).mThere == EAnswer::EYes &&
           place.compare(0, std::strlen(kPlanFolder), ToLowerCopy(kPlanFolder)) == 0;
}

EAnswer CPlanRun::CopyFolder(const std::string &from, const std::string &to, std::string &note_O)
{
    const std::string source = mContext.mMachine.FilePath(from, EPlanView::EProcess);
    const std::string target = mContext.mMachine.FilePath(to, EPlanView::E64);
    const TreeFact fact = source.empty() ? TreeFact{EAnswer::ENo, false, false, {}, {}} : mState.mFiles.Find(source);
    if (fact.mThere == EAnswer::ENo || target.empty()) {
        note_O = "the source is not there";
        return EAnswer::ENo;
    }
    if (!fact.mFrom.empty() || (IsOfPackage(source) && !fact.mFolder)) {
        note_O = "the source is no folder";
        return EAnswer::ENo;
    }
    const bool whole = fact.mWhole || IsOfPackage(source);
    TakeFolderOfPackage(source);
    TreeFact folder;
    folder.mFolder = true;
    const bool sure = fact.mThere == EAnswer::EYes;
    note_O = sure ? "" : "if the source is there";
    if (sure) {
        mState.mFiles.Put(target, folder);
    } else {
        mState.mFiles.PutPerhaps(target);
    }
    size_t files = 0;
    for (const auto &[name, entry] : mState.mFiles.Below(source)) {
        const std::string place = target + '\\' + name;
        if (entry.mThere == EAnswer::ENo) {
            continue;
        }
        if (entry.mThere == EAnswer::EOpen || !sure) {
            mState.mFiles.PutPerhaps(place);
            continue;
        }
        TreeFact copy = entry;
        copy.mFrom = entry.mFolder ? "" : entry.mFrom.empty() ? source + '\\' + name : entry.mFrom;
        mState.mFiles.Put(place, copy);
        files += entry.mFolder ? 0 : 1;
    }
    if (!whole) {
        mState.mFiles.Open(target);
    } else if (sure) {
        note_O = std::to_string(files) + (files == 1 ? " file" : " files");
    }
    return sure ? EAnswer::EYes : EAnswer::EOpen;
}

EAnswer CPlanRun::ActOnFiles(const CommandInfo &info, const std::vector<std::string> &fields, std::string &note_O)
{
    const std::string command = info.mName;
    CTreeFacts &files = mState.mFiles;
    const EPlanView view = PlanViewOf(info);
    if (info.mEffect == EMakesLink || info.mEffect == EGivesInf) {
        const bool link = command == "CreateLink" || command == "CreateLinkRedir";
        const std::string path = mContext.mMachine.FilePath(fields[link ? 1 : 0], view);
        if (!link) {
            const EAnswer there = path.empty() ? EAnswer::ENo : files.Exists(path);
            note_O = there == EAnswer::ENo ? "the source is not there" : "";
            return there;
        }
        files.PutPerhaps(path);
        return EAnswer::EYes;
    }
    if (info.mEffect == EWritesFile) {
        const bool custom = info.mFields[0].mKind == EFieldCustomSource;
        const std::string source = custom ? CustomSource(fields[0]) : fields[0];
        if (command.compare(0, 15, "CopyFileIfNewer") == 0) {
            const EAnswer newer = NewerAnswer(fields[1], source);
            if (newer == EAnswer::ENo) {
                note_O = "not newer";
                return EAnswer::ENo;
            }
            if (newer == EAnswer::EOpen) {
                note_O = "if it is newer";
                const std::string target = mContext.mMachine.FilePath(fields[1], view);
                files.PutPerhaps(target);
                return EAnswer::EOpen;
            }
        }
        const EAnswer acts = Copy(source, fields[1], view, note_O);
        if (acts == EAnswer::EYes && info.mNumber >= 8) {
            // A merged document is not a copy.
            TreeFact merged;
            files.Put(mContext.mMachine.FilePath(fields[1], view), merged);
        }
        return acts;
    }
    if (info.mEffect == EWritesFolder) {
        return CopyFolder(fields[0], fields[1], note_O);
    }
    const bool custom = command == "DeleteFileCustom";
    const std::string path = mContext.mMachine.FilePath(custom ? CustomSource(fields[0]) : fields[0], view);
    const TreeFact fact = path.empty() ? TreeFact{EAnswer::ENo, false, false, {}, {}} : files.Find(path);
    if (info.mEffect == EMakesFolder) {
        if (fact.mThere == EAnswer::EYes || path.empty()) {
            note_O = path.empty() ? "no name" : "is there already";
            return EAnswer::ENo;
        }
        TreeFact folder;
        folder.mFolder = true;
        files.Put(path, folder);
        return EAnswer::EYes;
    }
    if (fact.mThere == EAnswer::ENo) {
        note_O = "is not there";
        return EAnswer::ENo;
    }
    if (IsOfPackage(path)) {
        TakeFolderOfPackage(path);
    }
    if (info.mEffect == EDeletesFolder) {
        const bool whole = IsOfPackage(path);
        const EAnswer filled = fact.mFolder || fact.mFrom.empty() ? files.HasSomething(path) : EAnswer::EYes;
        if (filled == EAnswer::EYes || (IsOfPackage(path) && !fact.mFolder)) {
            note_O = fact.mFolder || fact.mFrom.empty() ? "is not empty" : "is no folder";
            return EAnswer::ENo;
        }
        if (filled == EAnswer::EOpen && !whole) {
            note_O = "if it is there and empty";
            files.Forget(path);
            return EAnswer::EOpen;
        }
        files.Remove(path);
        return fact.mThere;
    }
    if (info.mEffect == EEmptiesFolder) {
        if (!fact.mFrom.empty()) {
            note_O = "is no folder";
            return EAnswer::ENo;
        }
        const bool uninstall = mUninstall;
        const auto stays = [uninstall](const std::string &name) {
            const bool data = name.size() >= 4 && name.compare(name.size() - 4, 4, ".dat") == 0;
            return name == "remove.exe" || (uninstall && data);
        };
        const bool known = fact.mWhole || IsOfPackage(path);
        const EAnswer filled = known ? files.HasSomething(path) : EAnswer::EOpen;
        files.Empty(path, stays);
        if (!known) {
            files.Open(path); // what stays, may be there
        }
        if (fact.mThere == EAnswer::EOpen) {
            files.Forget(path);
        }
        note_O = filled == EAnswer::ENo ? "is empty" : "";
        return fact.mThere == EAnswer::EOpen || filled == EAnswer::EOpen ? EAnswer::EOpen : filled;
    }
    if (command == "DeleteFileReboot") {
        note_O = "at the next start of Windows";
        return fact.mThere;
    }
    if (fact.mFolder && fact.mThere == EAnswer::EYes) {
        note_O = "is a folder: the deletion waits for the next start of Windows";
        mRebootRequired = true;
        return EAnswer::ENo;
    }
    files.Remove(path);
    note_O = fact.mThere == EAnswer::EOpen ? "if it is there" : "";
    return fact.mThere;
}
