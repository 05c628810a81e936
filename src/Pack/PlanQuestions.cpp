// Questions and their courses.
#include <algorithm>

#include "Pack/PlanFlow.h"
#include "Pack/PlanRun.h"

namespace {

constexpr uint32_t kMostNested = 24; // courses inside courses

} // namespace

void CPlanRun::NoteQuestion(const Question &question)
{
    std::vector<PlanQuestion> &questions = mContext.mPlan.mQuestions;
    auto known = std::find_if(questions.begin(), questions.end(),
                              [&](const PlanQuestion &other) { return other.mText == question.mText; });
    if (known == questions.end()) {
        const Frame &frame = mFrames.back();
        questions.push_back(
            {question.mText, question.mOption, question.mOptionNo, frame.mFile, LineOf(frame, frame.mIndex), 0});
        known = questions.end() - 1;
    }
    ++known->mCount;
}

// Answers a question of the innermost group's step. An open one is answered with no behind both of its courses, and the
// group goes on where they meet.
bool CPlanRun::Decide(const Question &question)
{
    if (mForced) {
        const bool answer = *mForced;
        mForced.reset();
        if (question.mAssume) {
            question.mAssume(answer);
        }
        Changed();
        return answer;
    }
    PlanNode &node = Node();
    node.mTests = true;
    node.mAnswer = question.mKnown;
    if (question.mKnown != EAnswer::EOpen) {
        return question.mKnown == EAnswer::EYes;
    }
    NoteQuestion(question);
    if (mContext.mPlan.mBranches >= mContext.mOptions.mMostBranches || mContext.mNested >= kMostNested) {
        mContext.mPlan.mCut = "both courses of " + std::to_string(mContext.mPlan.mBranches) +
                              " open questions are, and of further ones the course of no";
        if (question.mAssume) {
            question.mAssume(false);
        }
        return false;
    }
    ++mContext.mPlan.mBranches;

    const Frame &frame = mFrames.back();
    const uint32_t meeting = MeetingSteps(*frame.mSteps)[frame.mIndex];
    node.mHasCourses = true;
    node.mMeetLine = LineOf(frame, meeting);
    const PlanState before = TakeState();
    std::optional<PlanState> yes, no;
    ++mContext.mNested;
    RunCourse(before, true, meeting, node.mYes, yes);
    RunCourse(before, false, meeting, node.mNo, no);
    --mContext.mNested;
    if (!yes && !no) {
        throw PlanCourseEnd{false, node.mNo.mEnd == node.mYes.mEnd ? node.mYes.mEnd : "neither course comes to an end"};
    }
    mState = yes && no ? Joined(*yes, *no) : yes ? *yes : *no;
    if (mState.SaysAs(before)) {
        mState = before;
    }
    mFlags = mState.mFlags;
    mDebugFilePath = mState.mDebugFilePath;
    mRebootRequired = mState.mReboot == EAnswer::EYes;
    mMoveTo = meeting;
    return false;
}

// Brings another interpreter to this one's step and has it go on with the answer.
void CPlanRun::RunCourse(const PlanState &state, bool answer, uint32_t meeting, PlanNode::Course &course,
                         std::optional<PlanState> &end_O)
{
    CPlanRun run(mContext, state);
    static_cast<RunOptions &>(run) = *this;
    static_cast<RunSwitches &>(run) = *this;
    run.mCommand = mCommand;
    run.mLanguage = mLanguage;
    run.ReadScriptHead();
    for (const Frame &frame : mFrames) {
        run.mWay.push_back(frame.mIndex);
    }
    run.mOnTheWay = true;
    run.mForced = answer;
    run.mCourseBlock = &course.mSteps;
    run.mStopDepth = mFrames.size();
    run.mStopIndex = meeting;
    const uint32_t frames = mContext.mFrames;
    try {
        run.RunSteps(mFrames.front().mGroup);
        course.mEnd = "ends";
    } catch (const PlanCourseEnd &end) {
        if (end.mMeets) {
            end_O = run.TakeState();
        }
        course.mEnd = end.mWhy;
    }
    mContext.mFrames = frames;
}
