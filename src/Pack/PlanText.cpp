// The plan for those who read it in a terminal, and its words.
#include "Pack/CodePage.h"
#include "Pack/PlanCommand.h"
#include "Pack/PlanWords.h"

namespace {

class CPlanText {
public:
    explicit CPlanText(CPackConsole &console) : mConsole(console) {}

    void Block(const PlanBlock &block, size_t depth)
    {
        for (const PlanNode &node : block) {
            if (node.mKind == EPlanNode::EGroup) {
                Line(depth, Strong(node.mGroup) + "  " + Faint(PlanPlace(node)));
                Block(node.mInner, depth + 1);
            } else {
                Step(node, depth);
            }
        }
    }

    void Line(size_t depth, const std::string &text) { mConsole.mOut << std::string(depth * 2, ' ') << text << '\n'; }

    std::string Strong(const std::string &text) const { return Coloured(text, "1"); }
    std::string Faint(const std::string &text) const { return Coloured(text, "2"); }
    std::string Coloured(const std::string &text, const char *colour) const
    {
        return mConsole.mColour && !text.empty() ? "\x1b[" + std::string(colour) + "m" + text + "\x1b[0m" : text;
    }

private:
    void Step(const PlanNode &step, size_t depth)
    {
        std::string line = std::to_string(step.mLine);
        line.insert(0, line.size() < 4 ? 4 - line.size() : 0, ' ');
        const char mark = PlanMark(step);
        std::string text = std::string(1, mark) + line + "  " + step.mCommand;
        const std::string fields = PlanFields(step);
        text += fields.empty() ? "" : "  " + fields;
        const char *const colour = mark == '+' ? "32" : mark == '?' ? "33" : mark == '-' ? "2" : "0";
        const std::string outcome = PlanOutcome(step);
        const std::string note = PlanNote(step);
        Line(depth, Coloured(text, colour) + (outcome.empty() ? "" : "  = " + Strong(outcome)) +
                        (note.empty() ? "" : "  " + Faint("(" + note + ")")));
        Block(step.mInner, depth + 2);
        if (step.mHasCourses) {
            Course(step, true, depth + 1);
            Course(step, false, depth + 1);
            Line(depth + 1, Coloured(PlanMeeting(step), "33"));
        }
    }

    void Course(const PlanNode &step, bool yes, size_t depth)
    {
        const PlanNode::Course &course = yes ? step.mYes : step.mNo;
        Line(depth, Coloured(PlanCourse(step, yes), "33"));
        Block(course.mSteps, depth + 1);
        if (course.mSteps.empty() && course.mEnd.empty()) {
            Line(depth + 1, Faint("nothing"));
        }
        if (!course.mEnd.empty()) {
            Line(depth + 1, Coloured(course.mEnd, "31"));
        }
    }

    CPackConsole &mConsole;
};

std::string Utf8(const std::string &text)
{
    return gCodePage.ToUtf8(text);
}

} // namespace

std::string PlanShown(const std::string &text)
{
    std::string shown;
    for (const char c : Utf8(text)) {
        shown += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
    }
    return shown;
}

std::string PlanPlace(const PlanNode &node)
{
    if (node.mFile.empty()) {
        return "there is no such group";
    }
    const std::string file = node.mFile.compare(0, 2, ".\\") == 0 ? node.mFile.substr(2) : node.mFile;
    return PlanShown(file) + ":" + std::to_string(node.mLine);
}

char PlanMark(const PlanNode &step)
{
    if (step.mActs) {
        return *step.mActs == EAnswer::EYes ? '+' : *step.mActs == EAnswer::ENo ? '-' : '?';
    }
    return step.mHasCourses ? '?' : ' ';
}

std::string PlanFields(const PlanNode &step)
{
    // The target stands behind the answer.
    const size_t count =
        step.mFields.size() - (step.mInfo != nullptr && step.mInfo->HasTarget() && !step.mFields.empty() ? 1 : 0);
    std::string text;
    for (size_t field = step.mInfo == nullptr ? 1 : 0; field < count; ++field) {
        const bool missing = step.mFields[field].empty();
        if (!missing) {
            text += (text.empty() ? "" : "; ") + PlanShown(step.mFields[field]);
        }
    }
    return text;
}

std::string PlanOutcome(const PlanNode &step)
{
    std::string target = PlanShown(step.mTarget);
    if (step.mInfo != nullptr && step.mInfo->mEffect == EJumps) {
        return target;
    }
    if (!step.mTests) {
        return std::string();
    }
    if (step.mAnswer == EAnswer::EYes) {
        return "yes" + (target.empty() ? target : ", " + target);
    }
    return step.mAnswer == EAnswer::ENo ? "no" : "not known";
}

std::string PlanNote(const PlanNode &step)
{
    return PlanShown(step.mNote);
}

std::string PlanCourse(const PlanNode &step, bool yes)
{
    const std::string target = PlanShown(step.mTarget);
    return yes ? "if yes" + (target.empty() ? "" : ", " + target) + ":" : "if no:";
}

std::string PlanMeeting(const PlanNode &step)
{
    if (!step.mYes.mEnd.empty() || !step.mNo.mEnd.empty()) {
        return step.mYes.mEnd.empty()  ? "the way of yes goes on:"
               : step.mNo.mEnd.empty() ? "the way of no goes on:"
                                       : "";
    }
    return step.mMeetLine == 0 ? "both go on at the end of the group"
                               : "both go on at line " + std::to_string(step.mMeetLine);
}

std::string PlanEnd(const Plan &plan)
{
    if (!plan.mEnd.empty()) {
        return "The run does not end: " + plan.mEnd + ".";
    }
    return "The run ends with exit code " + plan.mExitCodes + ".";
}

void WritePlanText(const Plan &plan, CPackConsole &console)
{
    CPlanText text(console);
    text.Line(0, text.Faint("On " + PlanShown(plan.mMachine)));
    if (!plan.mOpening.empty()) {
        text.Line(0, text.Coloured(plan.mOpening, "33"));
    }
    text.Block(plan.mSteps, 0);
    if (!plan.mQuestions.empty()) {
        text.Line(0, "");
        text.Line(0, text.Strong("Not described:"));
        for (const PlanQuestion &question : plan.mQuestions) {
            text.Line(1, PlanShown(question.mText) + "?" +
                             (question.mCount > 1 ? " (asked " + std::to_string(question.mCount) + " times)" : ""));
            if (!question.mOption.empty()) {
                text.Line(2, text.Faint(PlanShown(question.mOption + "  or  " + question.mOptionNo)));
            }
        }
    }
    text.Line(0, "");
    if (!plan.mCut.empty()) {
        text.Line(0, text.Coloured("Not all is shown: " + plan.mCut + ".", "31"));
    }
    text.Line(0, PlanEnd(plan));
}
