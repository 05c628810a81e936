// What conditions ask, and what is known about it.
#include <algorithm>

#include "Commands/Commands.h"
#include "Common/CSystemState.h"
#include "Common/FileVersion.h"
#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Common/TokenSplitter.h"
#include "Pack/PlanRun.h"
#include "Script/OSVersion.h"
#include "Script/Step.h"

namespace {

std::string Named(const std::string &text)
{
    return "\"" + text + "\"";
}

std::string NumberData(int32_t number)
{
    std::string data;
    for (int shift = 0; shift < 32; shift += 8) {
        data += static_cast<char>(static_cast<uint32_t>(number) >> shift & 0xFF);
    }
    return data;
}

} // namespace

CPlanRun::Question CPlanRun::Remembered(const std::string &key, const std::string &text)
{
    Question question;
    question.mText = text;
    const auto known = mState.mAnswers.find(key);
    question.mKnown = known == mState.mAnswers.end() ? EAnswer::EOpen : AnswerOf(known->second);
    question.mAssume = [this, key](bool answer) { mState.mAnswers[key] = answer; };
    return question;
}

CPlanRun::Question CPlanRun::FileQuestion(const std::string &path, EPlanView view)
{
    const std::string place = mContext.mMachine.FilePath(path, view);
    Question question;
    if (place.empty()) {
        question.mKnown = EAnswer::ENo;
        return question;
    }
    question.mKnown = mState.mFiles.Exists(place);
    question.mText = "is " + path + " there" + (place == ToLowerCopy(path) ? "" : " (" + place + ")");
    question.mOption = "--file " + Named(place);
    question.mOptionNo = "--no-file " + Named(place);
    question.mAssume = [this, place](bool there) {
        if (there) {
            mState.mFiles.Put(place, TreeFact());
        } else {
            mState.mFiles.Remove(place);
        }
    };
    return question;
}

RegLocation CPlanRun::Location(const std::string &key)
{
    return ParseRegPathWith(key, kRootLocalMachine, [this](const std::string &name) {
        if (name.empty()) {
            return std::string();
        }
        const CMainScriptScope script(Script());
        return Script().ReadString("PlatformData", name, std::string());
    });
}

// In the view of a 32-bit program, as all tests of the registry.
CPlanRun::Question CPlanRun::KeyQuestion(const std::string &key, const std::string &name)
{
    const RegLocation location = Location(key);
    Question question;
    question.mText = "is the key " + key + " there";
    if (location.mPath.compare(0, 1, "\\") == 0) {
        question.mKnown = EAnswer::ENo; // Windows refuses such a path
        return question;
    }
    const std::string place = mContext.mMachine.KeyPath(location, EPlanView::EProcess);
    question.mOption = "--key " + Named(place + (name.empty() ? "" : ";" + name));
    question.mOptionNo = "--no-key " + Named(place + (name.empty() ? "" : ";" + name));
    if (name.empty()) {
        question.mKnown = mState.mRegistry.KeyExists(place);
        question.mAssume = [this, place](bool there) {
            if (there) {
                mState.mRegistry.PutKey(place);
            } else {
                mState.mRegistry.RemoveKey(place);
            }
        };
        return question;
    }
    const std::string value = ToLowerCopy(name);
    question.mText = "is the value " + name + " of " + key + " there";
    question.mKnown = mState.mRegistry.Find(place, value).mThere;
    question.mAssume = [this, place, value](bool there) {
        if (there) {
            mState.mRegistry.PutValue(place, value, std::nullopt);
        } else {
            mState.mRegistry.RemoveValue(place, value);
        }
    };
    return question;
}

CPlanRun::Question CPlanRun::NumberQuestion(const std::string &key, const std::string &name, const std::string &number)
{
    const RegLocation location = Location(key);
    Question question;
    question.mKnown = EAnswer::ENo;
    if (location.mPath.empty()) {
        return question; // a root alone is refused
    }
    const std::string place = mContext.mMachine.KeyPath(location, EPlanView::EProcess);
    const std::string value = name == "@" ? std::string() : ToLowerCopy(name);
    const ValueFact fact = mState.mRegistry.Find(place, value);
    const std::string wanted = NumberData(DecimalNumber(number));
    if (fact.mThere == EAnswer::ENo) {
        return question;
    }
    if (fact.mThere == EAnswer::EYes && fact.mData) {
        std::string data = fact.mData->substr(0, wanted.size());
        data.resize(wanted.size());
        question.mKnown = AnswerOf(data == wanted);
        return question;
    }
    const std::string shown = place + ";" + name;
    question = Remembered("number\n" + place + "\n" + value + "\n" + number,
                          "is the value " + name + " of " + key + " the number " + number);
    question.mOption = "--key " + Named(shown + "=" + number);
    question.mOptionNo = "--no-key " + Named(shown);
    const auto remember = question.mAssume;
    question.mAssume = [this, place, value, wanted, remember](bool same) {
        remember(same);
        if (same) {
            mState.mRegistry.PutValue(place, value, wanted);
        }
    };
    return question;
}

CPlanRun::Question CPlanRun::FlagQuestion(const std::string &name, int32_t number)
{
    Question question;
    const auto maybe = mState.mMaybeFlags.find(name);
    if (maybe == mState.mMaybeFlags.end()) {
        question.mKnown = AnswerOf(GetFlag(name) == number);
        Node().mNote = name + " is " + std::to_string(GetFlag(name));
        return question;
    }
    question.mKnown = maybe->second.count(number) == 0 ? EAnswer::ENo : EAnswer::EOpen;
    question.mText = "is the flag " + name + " " + std::to_string(number) + ", which earlier courses leave different";
    question.mAssume = [this, name, number](bool same) {
        std::set<int32_t> &values = mState.mMaybeFlags[name];
        if (same) {
            values = {number};
        } else {
            values.erase(number);
        }
        mFlags[name] = values.empty() ? 0 : *values.begin();
        if (values.size() < 2) {
            mState.mMaybeFlags.erase(name);
        }
    };
    return question;
}

// Whether a file of the package is none that can have a version: it is no program.
bool CPlanRun::HasNoVersion(const std::string &place)
{
    if (!IsOfPackage(place)) {
        return false;
    }
    const auto [known, added] = mContext.mNoVersion.emplace(place, false);
    if (added) {
        const std::optional<std::string> bytes = mContext.mSource.ReadFile(place);
        known->second = bytes && bytes->compare(0, 2, "MZ") != 0;
    }
    return known->second;
}

// Whether `source` is newer than `target`, by version or time. Versions are read as the 64-bit system sees the files.
EAnswer CPlanRun::NewerAnswer(const std::string &target, const std::string &source)
{
    const std::string from = mContext.mMachine.FilePath(source, EPlanView::E64);
    const std::string to = mContext.mMachine.FilePath(target, EPlanView::E64);
    TreeFact delivered = mState.mFiles.Find(from);
    const TreeFact installed = to.empty() ? TreeFact{EAnswer::ENo, false, false, {}, {}} : mState.mFiles.Find(to);
    if (from.empty() || delivered.mThere == EAnswer::ENo || from == to) {
        return EAnswer::ENo;
    }
    if (delivered.mThere == EAnswer::EOpen || installed.mThere == EAnswer::EOpen) {
        return EAnswer::EOpen;
    }
    if (!delivered.mVersion && HasNoVersion(delivered.mFrom.empty() ? from : delivered.mFrom)) {
        delivered.mVersion = "";
    }
    if (installed.mThere == EAnswer::EYes && installed.mFrom == (delivered.mFrom.empty() ? from : delivered.mFrom)) {
        return EAnswer::ENo; // a copy has the version and the time of its source
    }
    if (!delivered.mVersion || (installed.mThere == EAnswer::EYes && !installed.mVersion)) {
        return EAnswer::EOpen;
    }
    const FileVersion ours(*delivered.mVersion, false);
    const FileVersion theirs(installed.mVersion.value_or(std::string()), false);
    if (IsNewerThan(ours, theirs)) {
        return EAnswer::EYes;
    }
    // The times decide, and nobody knows them; a file that is not there has none.
    return installed.mThere == EAnswer::ENo ? EAnswer::ENo : EAnswer::EOpen;
}

// Such a condition holds when the delivered file is not newer.
CPlanRun::Question CPlanRun::NewerQuestion(const std::string &target, const std::string &source, bool inf)
{
    EAnswer newer = NewerAnswer(target, source);
    const std::string from = mContext.mMachine.FilePath(source, EPlanView::E64);
    const std::string to = mContext.mMachine.FilePath(target, EPlanView::E64);
    if (inf && newer != EAnswer::EOpen && mState.mFiles.Exists(from) == EAnswer::EYes &&
        mState.mFiles.Find(to).mFrom != from) {
        newer = EAnswer::EOpen; // the dates inside the two decide
    }
    Question question = Remembered("newer\n" + to + "\n" + from, "is " + target + " as new as " + source);
    question.mOption = inf ? "" : "--file " + Named(to + "=VERSION");
    question.mOptionNo = "--no-file " + Named(to);
    if (newer != EAnswer::EOpen) {
        question.mKnown = Opposite(newer);
    }
    return question;
}

CPlanRun::Question CPlanRun::QuestionOf(const CommandInfo &info, const std::vector<std::string> &fields)
{
    const std::string command = info.mName;
    const auto negated = [](Question question) {
        question.mKnown = Opposite(question.mKnown);
        if (question.mAssume) {
            const auto assume = question.mAssume;
            question.mAssume = [assume](bool answer) { assume(!answer); };
        }
        std::swap(question.mOption, question.mOptionNo);
        return question;
    };
    const auto known = [](bool answer) {
        Question question;
        question.mKnown = AnswerOf(answer);
        return question;
    };
    if (PortableConditions().count(command) != 0) {
        return ProductQuestion(info, fields);
    }
    if (command == "Exist" || command == "ExistRedir") {
        return FileQuestion(fields[0], PlanViewOf(info));
    }
    if (command == "NotExist" || command == "NotExistRedir") {
        return negated(FileQuestion(fields[0], PlanViewOf(info)));
    }
    if (command == "RegExist") {
        return KeyQuestion(fields[0], fields[1]);
    }
    if (command == "RegNotExist") {
        return negated(KeyQuestion(fields[0], fields[1]));
    }
    if (command == "CheckRegDWORD") {
        return NumberQuestion(fields[0], fields[1], fields[2]);
    }
    if (command == "CheckFlag") {
        return FlagQuestion(fields[0], DecimalNumber(fields[1]));
    }
    if (command == "IfRebootRequired") {
        Question question;
        question.mKnown = mState.mReboot;
        question.mText = "is a restart needed, which earlier courses leave different";
        question.mAssume = [this](bool needed) {
            mState.mReboot = AnswerOf(needed);
            mRebootRequired = needed;
        };
        return question;
    }
    const int32_t type = mContext.mMachine.Windows().mOSType;
    if (command == "IsXPPro") {
        return known(IsOSTypeXP(type) && type != kOSTypeXPTabletPC);
    }
    if (command == "IsXPTE") {
        return known(type == kOSTypeXPTabletPC);
    }
    if (command == "OSVersion") {
        const WindowsRow &windows = mContext.mMachine.Windows();
        return known(ParseOSVersion(fields[0]).Matches(windows.mMajor, windows.mMinor));
    }
    if (command == "IfNotOlder" || command == "IfINFIsNotOlder") {
        return NewerQuestion(fields[0], fields[1], command == "IfINFIsNotOlder");
    }
    if (command == "IfKernelIsNotOlder") {
        const RegLocation location = Location(fields[0]);
        const ValueFact value =
            mState.mRegistry.Find(mContext.mMachine.KeyPath(location, EPlanView::EProcess), ToLowerCopy(fields[1]));
        if (location.mPath.empty() || value.mThere == EAnswer::ENo) {
            return NewerQuestion("", fields[2], false);
        }
        if (value.mThere == EAnswer::EYes && value.mData) {
            return NewerQuestion(value.mData->substr(0, value.mData->find('\0')), fields[2], false);
        }
        return Remembered("kernel\n" + fields[0] + "\n" + fields[1] + "\n" + fields[2],
                          "is the file that " + fields[1] + " of " + fields[0] + " names as new as " + fields[2]);
    }
    return RouterQuestion(command);
}

void CPlanRun::Test(CStep &step, const CommandInfo &info, const std::vector<std::string> &fields)
{
    Node().mTarget = fields.back();
    if (info.mEffect == EJumps) {
        StepGoTo(step);
        return;
    }
    const Question question = QuestionOf(info, fields);
    if (!Decide(question)) {
        return;
    }
    // The step's own reader comes to the target behind the other fields.
    for (size_t field = 0; field + 1 < fields.size(); ++field) {
        step.Plain();
    }
    step.TakeTarget();
}
