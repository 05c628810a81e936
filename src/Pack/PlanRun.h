// The product's interpreter over the steps of a package, with handlers that write down in place of acting. A question
// that nobody answers parts the run: each course is run by an interpreter of its own, which is brought to the same
// step, up to where both meet again, and the first one goes on from there with what both agree on.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Pack/PlanMachine.h"
#include "Pack/PlanTree.h"
#include "Pack/ProfileReader.h"
#include "Script/CRunState.h"
#include "Script/StepList.h"

// All that steps change, as far as steps can ask for it.
struct PlanState {
    CTreeFacts mFiles;
    CRegistryFacts mRegistry;
    std::map<std::string, int32_t> mFlags;
    std::map<std::string, std::set<int32_t>> mMaybeFlags; // values that courses have left in a flag, where they differ
    EAnswer mReboot = EAnswer::ENo;
    std::string mDebugFilePath;
    std::map<std::string, bool> mAnswers; // assumed, of questions that are about no single file or key
    uint64_t mChanges = 0;

    // Counts the changes, so that a circle of steps that changes nothing is found.
    uint64_t Changes() const { return mChanges + mFiles.Changes() + mRegistry.Changes(); }
    bool SaysAs(const PlanState &other) const;
};

// The product's own handlers of the commands that need no Windows, by the commands' words.
const std::map<std::string, StepHandler> &PortableHandlers();

// The same for conditions that the run itself answers.
const std::map<std::string, StepHandler> &PortableConditions();

// The view that a command's row tells.
inline EPlanView PlanViewOf(const CommandInfo &info)
{
    return info.mView == EView64 ? EPlanView::E64 : EPlanView::EProcess;
}

PlanState Joined(const PlanState &left, const PlanState &right);

// What the interpreters of one plan share.
struct PlanContext {
    const PlanOptions &mOptions;
    const CPlanMachine &mMachine;
    const CPackageTree &mTree;
    IScriptSource &mSource;
    CProfileReader &mReader;
    Plan &mPlan;
    DevicesFound mDevices;
    bool mDevicesKnown = false;
    uint64_t mSteps = 0;  // noted so far
    uint32_t mNested = 0; // courses inside courses
    uint32_t mFrames = 0; // groups that are being run, those of all interpreters together
    std::map<std::pair<std::string, std::string>, std::vector<uint32_t>> mLines; // of steps, by script and group
    std::map<std::string, bool> mNoVersion;                                      // of files of the package
};

// A script reader that remembers which file the last section came from.
class CNotedReader : public IProfileReader {
public:
    explicit CNotedReader(CProfileReader &reader) : mReader(reader) {}
    bool CanOpen(const std::string &file) override { return mReader.CanOpen(file); }
    uint32_t ReadValue(const std::string &file, const std::string &section, const std::string &key,
                       const std::string &defaultValue, char *buffer_O, uint32_t size) override
    {
        return mReader.ReadValue(file, section, key, defaultValue, buffer_O, size);
    }
    uint32_t ReadSection(const std::string &file, const std::string &section, char *buffer_O, uint32_t size) override
    {
        const uint32_t length = mReader.ReadSection(file, section, buffer_O, size);
        mLastFile = length != 0 ? file : std::string();
        return length;
    }
    uint32_t ReadNumber(const std::string &file, const std::string &section, const std::string &key,
                        uint32_t defaultValue) override
    {
        return mReader.ReadNumber(file, section, key, defaultValue);
    }
    std::string MainScript() override { return mReader.MainScript(); }

    std::string mLastFile; // empty when no file had the section

private:
    CProfileReader &mReader;
};

// What the base of CPlanRun needs before it is made.
struct PlanRunParts {
    explicit PlanRunParts(CProfileReader &reader) : mNoted(reader), mFiles(mNoted) {}
    CNotedReader mNoted;
    CScriptFiles mFiles;
};

// Thrown through the interpreter to end a course; no handler catches it.
struct PlanCourseEnd {
    bool mMeets = false;
    std::string mWhy; // when it does not
};

class CPlanRun : private PlanRunParts, private IRunHost, private IStepWatcher, public CRunState {
public:
    CPlanRun(PlanContext &context, const PlanState &state);

    // What is noted goes to `block`. Throws PlanCourseEnd for a run without an end.
    void RunNoted(const std::string &group, PlanBlock &block);

    // Does what a step's handler would: called for each step of a command.
    void Do(CStep &step);

    // The facts as they are.
    PlanState TakeState() const;
    PlanState &State() { return mState; }

    // Reads the files that MAIN of the script names, as a run does.
    void ReadScriptHead();

private:
    struct Frame {
        std::string mGroup;
        std::string mFile;
        StepList *mSteps = nullptr;
        uint32_t mIndex = 0;
        PlanBlock *mBlock = nullptr; // where its steps go
        PlanNode *mStep = nullptr;   // the one that runs
        std::map<uint32_t, uint64_t> mSeen;
        std::map<uint32_t, uint32_t> mRounds;
    };
    struct Question {
        EAnswer mKnown = EAnswer::EOpen;
        std::function<void(bool)> mAssume; // takes an answer as given from there on
        std::string mText;
        std::string mOption;
        std::string mOptionNo;
    };

    // IRunHost
    bool PathExists(const std::string &path) override;
    std::optional<std::string> MacroValue(const CRunState &state, const std::string &upperName) override;
    bool IsStackLow() override;

    // IStepWatcher
    void GroupBegins(const std::string &group, StepList &steps_I_O) override;
    void GroupEnds() override;
    void StepIsNext(StepList &steps_I_O) override;

    void NoteStep(Frame &frame);
    void CheckCircle(Frame &frame);
    uint32_t LineOf(const Frame &frame, uint32_t index);
    const std::vector<uint32_t> &LinesOf(const std::string &file, const std::string &group);
    PlanNode &Node();
    void Changed() { ++mState.mChanges; }

    // Questions: PlanQuestions.cpp
    bool Decide(const Question &question);
    void RunCourse(const PlanState &state, bool answer, uint32_t meeting, PlanNode::Course &course,
                   std::optional<PlanState> &end_O);
    void NoteQuestion(const Question &question);

    // Conditions: PlanConditions.cpp. Each answers the question that a step asks; the step's fields stand in `fields`.
    void Test(CStep &step, const CommandInfo &info, const std::vector<std::string> &fields);
    Question QuestionOf(const CommandInfo &info, const std::vector<std::string> &fields);
    Question FileQuestion(const std::string &path, EPlanView view);
    Question KeyQuestion(const std::string &key, const std::string &name);
    Question NumberQuestion(const std::string &key, const std::string &name, const std::string &number);
    Question FlagQuestion(const std::string &name, int32_t number);
    Question NewerQuestion(const std::string &target, const std::string &source, bool inf);
    Question ProductQuestion(const CommandInfo &info, const std::vector<std::string> &fields);
    Question RouterQuestion(const std::string &command);
    EAnswer AskProduct(const std::string &text);
    bool HasNoVersion(const std::string &place);
    EAnswer NewerAnswer(const std::string &target, const std::string &source);
    Question Remembered(const std::string &key, const std::string &text);

    // Actions: PlanActions.cpp. Answers whether there is something to do.
    EAnswer Act(const CommandInfo &info, const std::vector<std::string> &fields, std::string &note_O);
    EAnswer ActOnFiles(const CommandInfo &info, const std::vector<std::string> &fields, std::string &note_O);
    EAnswer ActOnRegistry(const CommandInfo &info, const std::vector<std::string> &fields, std::string &note_O);
    EAnswer Copy(const std::string &from, const std::string &to, EPlanView view, std::string &note_O);
    EAnswer CopyFolder(const std::string &from, const std::string &to, std::string &note_O);
    EAnswer WriteValue(const RegLocation &location, EPlanView view, const std::string &name,
                       const std::optional<std::string> &data, bool number, std::string &note_O);
    void TakeFolderOfPackage(const std::string &folder);
    bool IsOfPackage(const std::string &place) const;
    std::string CustomSource(const std::string &path);
    RegLocation Location(const std::string &key);

    PlanContext &mContext;
    PlanState mState;
    std::vector<Frame> mFrames;
    PlanBlock *mTop = nullptr;       // where the outermost group goes
    std::optional<uint32_t> mMoveTo; // where the innermost group goes on behind both courses
    std::vector<uint32_t> mWay;      // the steps that lead to the question that this interpreter begins at
    PlanBlock *mCourseBlock = nullptr;
    bool mOnTheWay = false;
    std::optional<bool> mForced; // the answer of the first question
    size_t mStopDepth = 0;       // the course ends in this group...
    uint32_t mStopIndex = 0;     // ...at this step
};
