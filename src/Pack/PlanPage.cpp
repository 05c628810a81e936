// The plan as one page of HTML that needs nothing else.
#include "Pack/PlanCommand.h"
#include "Pack/PlanPicture.h"
#include "Pack/PlanWords.h"

#include <set>

namespace {

constexpr char kStyle[] = R"page(<meta name="viewport" content="width=device-width, initial-scale=1">
<style>
:root { color-scheme: light dark; --back: #fbfbfa; --card: #fff; --ink: #1c2126; --soft: #69727d; --line: #dfe2e6; --act: #1a7f4b; --maybe: #b06000; --bad: #c62828; --link: #2563c9; --hover: #f1f4f8; --maybe-back: #fff6e6; }
@media (prefers-color-scheme: dark) { :root { --back: #14171b; --card: #1c2026; --ink: #e4e7eb; --soft: #98a2ae; --line: #333a43; --act: #5fd296; --maybe: #ffb955; --bad: #ff8a80; --link: #8ab4f8; --hover: #242a32; --maybe-back: #2a2418; } }
* { box-sizing: border-box; }
body { background: var(--back); color: var(--ink); font: 15px/1.5 system-ui, "Segoe UI", sans-serif; margin: 0 auto; max-width: 88rem; padding: 1.6rem; }
h1 { font-size: 1.5rem; margin: 0; } h2 { font-size: 1.1rem; margin: 2rem 0 .6rem; } p { margin: .3rem 0; }
a { color: var(--link); }
.machine, .note, .place, .sub { color: var(--soft); }
.chips { display: flex; flex-wrap: wrap; gap: .5rem; margin: .9rem 0 0; }
.chips span { background: var(--card); border: 1px solid var(--line); border-radius: 2rem; padding: .1rem .8rem; } .chips b { font-variant-numeric: tabular-nums; }
.card { background: var(--card); border: 1px solid var(--line); border-radius: .6rem; padding: .8rem 1rem; }
.warn { border-left: .3rem solid var(--maybe); margin-top: 1rem; } .stop { border-left: .3rem solid var(--bad); margin-top: 1rem; }
.scroll { overflow: auto; max-height: 80vh; padding: .4rem; }
.picture .box rect { fill: var(--card); stroke: var(--soft); } .picture .box:hover rect { fill: var(--hover); stroke: var(--link); }
.picture .missing rect { stroke: var(--bad); stroke-dasharray: 4 3; } .picture .name { fill: var(--ink); font: 600 13px system-ui, sans-serif; } .picture .sub { fill: var(--soft); font: 11.5px system-ui, sans-serif; }
.picture .arrow { fill: none; stroke-width: 1.6; } .picture .arrow:hover { stroke-width: 3.5; } .arrow.always { stroke: var(--soft); } .arrow.condition { stroke: var(--link); } .arrow.maybe { stroke: var(--maybe); stroke-dasharray: 5 4; }
marker .always { fill: var(--soft); } marker .condition { fill: var(--link); } marker .maybe { fill: var(--maybe); }
.legend { color: var(--soft); display: flex; flex-wrap: wrap; gap: .2rem 1.4rem; font-size: .87rem; margin: .4rem 0 0; } .legend i { border-top: 2px solid; display: inline-block; margin-right: .45rem; vertical-align: middle; width: 1.6rem; }
.legend .always { color: var(--soft); } .legend .condition { color: var(--link); } .legend .maybe { border-top-style: dashed; color: var(--maybe); }
.asked { margin: 0; padding-left: 1.2rem; } .asked li { margin: .35rem 0; overflow-wrap: anywhere; } code { background: var(--hover); border-radius: .25rem; font: .86em ui-monospace, Consolas, monospace; padding: .05rem .3rem; }
.bar { display: flex; align-items: baseline; flex-wrap: wrap; gap: .3rem 1.5rem; margin: 2rem 0 .6rem; } .bar h2 { margin: 0; }
details { border-left: 2px solid var(--line); margin: .3rem 0 .5rem; padding-left: .8rem; } summary { border-radius: .3rem; cursor: pointer; font-weight: 600; padding: .1rem .3rem; } summary:hover { background: var(--hover); }
summary .place { font-weight: 400; margin-left: .5rem; } details:target > summary { outline: 2px solid var(--link); }
.step { border-radius: .3rem; column-gap: .7rem; display: grid; grid-template-columns: 3.2rem 1.1rem minmax(9rem, 15rem) 1fr; padding: .08rem .3rem; } .step:hover { background: var(--hover); }
.step > :first-child { color: var(--soft); font-variant-numeric: tabular-nums; text-align: right; } .step > :nth-child(n+3) { min-width: 0; overflow-wrap: anywhere; }
.mark { font-weight: 700; text-align: center; } .acts .mark, .acts .word { color: var(--act); } .maybe .mark, .maybe .word { color: var(--maybe); } .idle { opacity: .62; } .word { font-weight: 500; } .acts .word { font-weight: 650; }
.fields i { color: var(--soft); font-style: normal; padding: 0 .35rem; } .answer { border: 1px solid var(--line); border-radius: .8rem; font-size: .86em; padding: 0 .5rem; white-space: nowrap; } .maybe .answer { border-color: var(--maybe); color: var(--maybe); }
.inner { margin-left: 3.9rem; } .courses { display: grid; gap: .6rem; grid-template-columns: repeat(auto-fit, minmax(min(100%, 26rem), 1fr)); margin: .2rem 0 .3rem 3.9rem; }
.courses > div { background: var(--maybe-back); border: 1px solid var(--line); border-left: .2rem solid var(--maybe); border-radius: .4rem; min-width: 0; padding: .3rem .6rem .4rem; } .courses h4 { color: var(--maybe); font-size: .9rem; margin: 0 0 .1rem; } .courses .step { grid-template-columns: 2.6rem 1.1rem minmax(6rem, 11rem) 1fr; } .courses .inner, .courses .courses { margin-left: 1rem; }
.meet { color: var(--soft); font-size: .9rem; margin: 0 0 .3rem 3.9rem; } .dead { color: var(--bad); }
body:has(#acting:checked) .quiet { display: none; }
@media (max-width: 700px) { body { padding: .8rem; } .step { grid-template-columns: 2.4rem 1rem 1fr; } .step > :nth-child(4) { grid-column: 3; } .inner, .courses, .meet { margin-left: .8rem; } }
@media print { .scroll { max-height: none; } .bar label { display: none; } }
</style>
)page";

struct Counts {
    size_t mActs = 0, mMaybe = 0, mIdle = 0, mGroups = 0;
};

void Count(const PlanBlock &block, bool maybe, Counts &counts_O)
{
    for (const PlanNode &node : block) {
        if (node.mKind == EPlanNode::EGroup) {
            ++counts_O.mGroups;
        } else if (node.mActs) {
            const char mark = PlanMark(node);
            ++(mark == '-' ? counts_O.mIdle : mark == '+' && !maybe ? counts_O.mActs : counts_O.mMaybe);
        }
        Count(node.mInner, maybe, counts_O);
        Count(node.mYes.mSteps, true, counts_O);
        Count(node.mNo.mSteps, true, counts_O);
    }
}

class CPlanPage {
public:
    explicit CPlanPage(std::ostream &out) : mOut(out) {}

    void Whole(const Plan &plan, const std::string &package)
    {
        Counts counts;
        Count(plan.mSteps, false, counts);
        const std::string title = "Plan of " + PlanMarkup(package);
        mOut << "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<title>" << title << "</title>\n"
             << kStyle << "<h1>" << title << "</h1>\n<p class=machine>" << Markup(plan.mMachine) << "</p>\n<p>"
             << PlanMarkup(PlanEnd(plan)) << "</p>\n<div class=chips>";
        Chip(counts.mActs, "actions");
        Chip(counts.mMaybe, "that depend on what is not described");
        Chip(counts.mIdle, "that find nothing to do");
        Chip(counts.mGroups, "groups run");
        mOut << "</div>\n";
        if (!plan.mOpening.empty()) {
            mOut << "<p class=\"card warn\">" << PlanMarkup(plan.mOpening) << "</p>\n";
        }
        if (!plan.mCut.empty()) {
            mOut << "<p class=\"card stop\">Not all is shown: " << PlanMarkup(plan.mCut) << ".</p>\n";
        }
        Picture(plan);
        Questions(plan);
        mOut << "<div class=bar><h2>Steps</h2><label><input type=checkbox id=acting> only what acts or is not "
                "known</label></div>\n";
        Block(plan.mSteps);
        mOut << "</html>\n";
    }

private:
    static std::string Markup(const std::string &text) { return PlanMarkup(PlanShown(text)); }

    void Chip(size_t number, const char *words)
    {
        if (number != 0) {
            mOut << "<span><b>" << number << "</b> " << words << "</span>";
        }
    }

    void Picture(const Plan &plan)
    {
        const std::string picture = PlanPicture(plan);
        if (!picture.empty()) {
            mOut << "<h2>Groups</h2>\n<div class=\"card scroll\">" << picture
                 << "</div>\n<p class=legend><span><i class=always></i>is called</span><span><i class=condition></i>is "
                    "called "
                    "because a condition holds</span><span><i class=maybe></i>depends on what is not "
                    "described</span></p>\n";
        }
    }

    void Questions(const Plan &plan)
    {
        if (plan.mQuestions.empty()) {
            return;
        }
        mOut << "<h2>Not described</h2>\n<div class=card><ul class=asked>\n";
        for (const PlanQuestion &question : plan.mQuestions) {
            mOut << "<li>" << Markup(question.mText) << "? <span class=note>"
                 << Markup(question.mFile.substr(question.mFile.compare(0, 2, ".\\") == 0 ? 2 : 0)) << ":"
                 << question.mLine
                 << (question.mCount > 1 ? ", asked " + std::to_string(question.mCount) + " times" : "") << "</span>";
            if (!question.mOption.empty()) {
                mOut << "<br><code>" << Markup(question.mOption) << "</code> or <code>" << Markup(question.mOptionNo)
                     << "</code>";
            }
            mOut << "</li>\n";
        }
        mOut << "</ul></div>\n";
    }

    // Whether a reader who asks for what acts misses nothing without it.
    static bool IsQuiet(const PlanNode &node)
    {
        Counts counts;
        Count(node.mInner, false, counts);
        const char mark = node.mKind == EPlanNode::EStep ? PlanMark(node) : ' ';
        return mark != '+' && mark != '?' && counts.mActs + counts.mMaybe == 0;
    }

    void Block(const PlanBlock &block)
    {
        for (const PlanNode &node : block) {
            if (node.mKind == EPlanNode::EGroup) {
                Group(node);
            } else {
                Step(node);
            }
        }
    }

    void Group(const PlanNode &group)
    {
        const std::string anchor = PlanAnchor(group.mFile, group.mGroup);
        mOut << "<details" << (group.mInner.empty() ? "" : " open")
             << (mAnchors.insert(anchor).second ? " id=\"" + anchor + "\"" : "")
             << (IsQuiet(group) ? " class=quiet" : "") << "><summary>" << Markup(group.mGroup) << "<span class=place>"
             << PlanMarkup(PlanPlace(group)) << "</span></summary>\n";
        Block(group.mInner);
        mOut << "</details>\n";
    }

    void Step(const PlanNode &step)
    {
        const char mark = PlanMark(step);
        mOut << "<div class=\"step"
             << (mark == '+'   ? " acts"
                 : mark == '?' ? " maybe"
                 : mark == '-' ? " idle"
                               : "")
             << (IsQuiet(step) ? " quiet" : "") << "\" title=\"" << Markup(step.mText) << "\"><span>" << step.mLine
             << "</span><span class=mark>" << (mark == '-' ? "&minus;" : std::string(1, mark))
             << "</span><span class=word>" << Markup(step.mCommand) << "</span><span class=fields>" << Fields(step);
        const std::string outcome = PlanOutcome(step);
        if (!outcome.empty()) {
            mOut << " <span class=answer>" << PlanMarkup(outcome) << "</span>";
        }
        if (!step.mNote.empty()) {
            mOut << " <span class=note>" << PlanMarkup(PlanNote(step)) << "</span>";
        }
        mOut << "</span></div>\n";
        if (!step.mInner.empty()) {
            mOut << "<div class=inner>\n";
            Block(step.mInner);
            mOut << "</div>\n";
        }
        if (step.mHasCourses) {
            mOut << "<div class=courses>\n";
            Course(step, true);
            Course(step, false);
            mOut << "</div>\n<p class=meet>" << PlanMarkup(PlanMeeting(step)) << "</p>\n";
        }
    }

    static std::string Fields(const PlanNode &step)
    {
        std::string text = PlanMarkup(PlanFields(step));
        for (size_t at = text.find("; "); at != std::string::npos; at = text.find("; ", at)) {
            // An entity such as &lt; ends in the same letter and is part of a word.
            const size_t begin = text.find_last_of("& ", at == 0 ? 0 : at - 1);
            if (begin != std::string::npos && text[begin] == '&' && at - begin < 7) {
                ++at;
                continue;
            }
            text.replace(at, 2, "<i>&middot;</i>");
        }
        return text;
    }

    void Course(const PlanNode &step, bool yes)
    {
        const PlanNode::Course &course = yes ? step.mYes : step.mNo;
        mOut << "<div><h4>" << PlanMarkup(PlanCourse(step, yes)) << "</h4>\n";
        Block(course.mSteps);
        if (!course.mEnd.empty()) {
            mOut << "<p class=dead>" << PlanMarkup(course.mEnd) << "</p>";
        } else if (course.mSteps.empty()) {
            mOut << "<p class=note>nothing</p>";
        }
        mOut << "</div>\n";
    }

    std::ostream &mOut;
    std::set<std::string> mAnchors;
};

} // namespace

void WritePlanPage(const Plan &plan, const std::string &package, std::ostream &out)
{
    CPlanPage(out).Whole(plan, package);
}
