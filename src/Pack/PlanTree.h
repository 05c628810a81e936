// What a plan says: groups, their steps in the order in which they run, and both courses of a question that nobody
// answers.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "Commands/CommandFields.h"
#include "Pack/PlanFacts.h"

struct PlanNode;
using PlanBlock = std::list<PlanNode>; // nodes stay where they are

enum class EPlanNode : uint8_t { EGroup, EStep };

struct PlanNode {
    EPlanNode mKind = EPlanNode::EStep;
    std::string mFile;  // script that the group or step stands in, as the run names it
    uint32_t mLine = 0; // in that file; 0 when the group is not there
    std::string mGroup; // name of the group, or of the one that the step belongs to

    // Of a step alone.
    std::string mText; // as the interpreter runs it
    std::string mCommand;
    const CommandInfo *mInfo = nullptr; // null for a bare call and for a word that no command has
    std::vector<std::string> mFields;   // as the handler reads them
    bool mTests = false;
    EAnswer mAnswer = EAnswer::EOpen; // of a test
    std::string mTarget;              // that the step takes, or would take if the answer is yes
    std::optional<EAnswer> mActs;     // of a step that changes something: whether it finds something to do
    std::string mNote;                // why so, what to know

    PlanBlock mInner; // steps of a group, groups that a step calls

    // Both courses behind an open test, up to where they meet again.
    struct Course {
        PlanBlock mSteps;
        std::string mEnd; // why it never gets to where they meet; empty when it does
    };
    bool mHasCourses = false;
    Course mYes;
    Course mNo;
    uint32_t mMeetLine = 0; // of the step where they meet; 0 for the end of the group
};

struct PlanQuestion {
    std::string mText;   // what is asked, for people
    std::string mOption; // of the command line that answers it with yes
    std::string mOptionNo;
    std::string mFile; // where it was asked first
    uint32_t mLine = 0;
    uint32_t mCount = 0; // how often
};

// A call or a jump between groups, for the picture.
struct PlanArrow {
    std::string mFrom;
    std::string mTo;
    bool mMaybe = false; // lies on a course of an open question
};

struct Plan {
    std::string mMachine; // in words
    std::string mOpening; // what comes in front of the steps, in words: a refusal, an elevation
    std::string mGroup;
    bool mRuns = false; // steps are run at all
    PlanBlock mSteps;
    std::vector<PlanQuestion> mQuestions; // nobody answered them
    uint32_t mBranches = 0;
    std::string mCut;       // which limit was met; empty for none
    std::string mEnd;       // why the run does not end; empty when it does
    std::string mExitCodes; // "0", "2", "0 or 2"
};

// Whether a step changes something of the machine. Tests, calls, jumps and words for the trace do not.
bool IsAction(EEffect effect);
bool IsTest(EEffect effect);

// The words for a step: "writes file", "calls group".
std::string PlanVerb(const PlanNode &step);
