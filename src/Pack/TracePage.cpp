// The report about a trace as one page of HTML. The steps of a run are written while they go by, in front of what is
// only known at its end; the style of the page shows the end first.
#include "Pack/TraceSinks.h"

namespace {

constexpr uint64_t kMostSteps = 5000; // in the page, which a browser has to hold

constexpr char kHead[] = R"page(<meta name="viewport" content="width=device-width, initial-scale=1">
<style>
:root { color-scheme: light dark; --line: #8884; --bad: #c62828; --wait: #b26a00; --note: #1565c0; --soft: #8881; --bar: #4a90d9; }
@media (prefers-color-scheme: dark) { :root { --bad: #ff8a80; --wait: #ffca6b; --note: #90caf9; } }
body { font: 15px/1.45 system-ui, "Segoe UI", sans-serif; margin: 0 auto; max-width: 76rem; padding: 1.5rem; }
h1 { font-size: 1.5rem; margin: 0 0 1rem; overflow-wrap: anywhere; }
h2 { font-size: 1.15rem; margin: 0; } h3 { font-size: 1rem; margin: 1.2rem 0 .4rem; }
section { border: 1px solid var(--line); border-radius: .6rem; display: flex; flex-direction: column; margin-bottom: 1.5rem; padding: 1.2rem; }
.head { order: 1; } .sum { order: 2; } .steps { order: 3; }
dl { display: grid; gap: .1rem 1rem; grid-template-columns: max-content 1fr; margin: .6rem 0 0; } dt { opacity: .65; } dd { margin: 0; overflow-wrap: anywhere; }
.end { border-left: .3rem solid var(--bar); background: var(--soft); margin: .8rem 0 0; padding: .6rem .9rem; }
.end.bad { border-color: var(--bad); }
.chips span { border: 1px solid; border-radius: 1rem; display: inline-block; margin: .5rem .5rem 0 0; padding: .05rem .7rem; }
.bad { color: var(--bad); } .wait { color: var(--wait); } .note { color: var(--note); } .end.bad { color: inherit; }
ul { list-style: none; margin: 0; padding: 0; } li { border-top: 1px solid var(--line); overflow-wrap: anywhere; padding: .35rem 0; }
li p { margin: .1rem 0 0 1.2rem; } .at { opacity: .6; font-variant-numeric: tabular-nums; }
.slow { display: grid; gap: .25rem .8rem; grid-template-columns: 5.5rem 1fr; } .slow div:nth-child(odd) { font-variant-numeric: tabular-nums; text-align: right; }
.slow i { background: var(--bar); border-radius: .2rem; display: block; height: .35rem; margin-top: .15rem; } .slow div { overflow-wrap: anywhere; }
table { border-collapse: collapse; width: 100%; } td { border-top: 1px solid var(--line); padding: .15rem .6rem .15rem 0; vertical-align: top; overflow-wrap: anywhere; } td:nth-child(3) { min-width: 11rem; }
td:nth-child(-n+2) { font-variant-numeric: tabular-nums; text-align: right; white-space: nowrap; opacity: .75; } td:nth-child(3) { font-weight: 600; }
tr.bad td:nth-child(3), tr.wait td:nth-child(3) { color: inherit; } tr.bad td, tr.wait td { opacity: 1; } tr.g td { background: var(--soft); font-weight: 600; text-align: left; opacity: 1; }
summary { cursor: pointer; font-weight: 600; margin-top: 1.2rem; }
</style>
)page";

class CPageSink : public ITraceSink {
public:
    CPageSink(std::ostream &out, const std::string &title, bool steps, const CCodePage &codePage)
        : mOut(out), mSteps(steps), mCodePage(codePage)
    {
        mOut << "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<title>" << Text(title) << "</title>\n"
             << kHead << "<h1>" << Text(title) << "</h1>\n";
    }
    ~CPageSink() override
    {
        CloseSection();
        mOut << "</html>\n";
    }
    CPageSink(const CPageSink &) = delete;
    CPageSink &operator=(const CPageSink &) = delete;

    void Group(const TraceRun &run, const std::string &name) override
    {
        if (mSteps && mWritten < kMostSteps) {
            OpenTable(run);
            mOut << "<tr class=g><td colspan=4>group " << Text(name) << "</td></tr>\n";
        }
    }

    void Step(const TraceRun &run, const TraceStep &step) override
    {
        if (!mSteps || ++mWritten > kMostSteps) {
            return;
        }
        OpenTable(run);
        mOut << "<tr" << ClassOf(step.mVerdict) << "><td>" << (step.mTimed ? ShownClock(step.mTime) : "") << "</td><td>"
             << (step.mTimed ? ShownTime(step.mTook) : "") << "</td><td>" << Text(step.mCommand) << "</td><td>"
             << Text(step.mDetail) << (step.mDetail.empty() || step.mOutcome.empty() ? "" : "<br>")
             << Text(step.mOutcome) << "</td></tr>\n";
    }

    void End(const TraceRun &run) override
    {
        OpenSection(run);
        CloseTable();
        mOut << "<div class=head><h2>Run" << (run.mTimed ? " of " + ShownClock(run.mBegan) : "") << "</h2><dl>";
        Fact("program", run.mProgram);
        Fact("Windows", run.mPlatform);
        Fact("group", run.mGroup.empty() ? run.mGroup : run.mGroup + (run.mSilent ? ", silent" : ""));
        Fact("language", run.mLanguage);
        Fact("process", run.mTimed ? std::to_string(run.mProcess) : std::string());
        mOut << "</dl></div>\n<div class=sum><p class=\"end"
             << (run.mExitCode && *run.mExitCode <= 2 && *run.mExitCode != 1 ? "" : " bad") << "\">"
             << Text(EndOfRun(run)) << "</p><div class=chips>";
        Chip(run.mFailedSteps, "failed", "bad");
        Chip(run.mWaitingSteps, run.mWaitingSteps == 1 ? "waits for the restart" : "wait for the restart", "wait");
        Chip(run.mNotesInAll, "worth a look", "note");
        mOut << "</div>\n";
        Findings("Failed", run.mFailed, run.mFailedSteps, ETraceVerdict::EFailed);
        Findings("Waits for the restart", run.mWaiting, run.mWaitingSteps, ETraceVerdict::EWaits);
        Notes(run);
        Slowest(run);
        mOut << "</div>\n";
        CloseSection();
        mWritten = 0;
    }

private:
    std::string Text(const std::string &text) const
    {
        std::string safe;
        for (const char c : ShownText(text, mCodePage)) {
            safe += c == '<'   ? "&lt;"
                    : c == '>' ? "&gt;"
                    : c == '&' ? "&amp;"
                    : c == '"' ? "&quot;"
                               : std::string(1, c);
        }
        return safe;
    }

    static const char *ClassOf(ETraceVerdict verdict)
    {
        return verdict == ETraceVerdict::EFailed ? " class=bad" : verdict == ETraceVerdict::EWaits ? " class=wait" : "";
    }

    void Fact(const char *name, const std::string &text)
    {
        if (!text.empty()) {
            mOut << "<dt>" << name << "</dt><dd>" << Text(text) << "</dd>";
        }
    }

    void Chip(uint64_t number, const char *words, const char *kind)
    {
        if (number != 0) {
            mOut << "<span class=" << kind << ">" << number << " " << words << "</span>";
        }
    }

    void Title(const char *title, uint64_t number, size_t shown)
    {
        mOut << "<h3>" << title;
        if (shown < number) {
            mOut << " (the first " << shown << " of " << number << ")";
        }
        mOut << "</h3>";
    }

    void Findings(const char *title, const std::vector<TraceStep> &steps, uint64_t number, ETraceVerdict verdict)
    {
        if (steps.empty()) {
            return;
        }
        Title(title, number, steps.size());
        mOut << "<ul>";
        for (const TraceStep &step : steps) {
            mOut << "<li><span class=at>line " << step.mLine << "</span> <b>" << Text(step.mCommand) << "</b> "
                 << Text(step.mDetail);
            for (const TraceFinding &finding : step.mFindings) {
                if (finding.mVerdict == verdict) {
                    mOut << "<p><span" << ClassOf(verdict) << ">"
                         << (finding.mRecord == step.mDetail ? std::string() : Text(finding.mRecord) + " ") << "</span>"
                         << Text(finding.mWhy) << "</p>";
                }
            }
            mOut << "</li>";
        }
        mOut << "</ul>\n";
    }

    void Notes(const TraceRun &run)
    {
        if (run.mNotes.empty()) {
            return;
        }
        Title("Worth a look", run.mNotesInAll, run.mNotes.size());
        mOut << "<ul>";
        for (const TraceFinding &note : run.mNotes) {
            mOut << "<li><span class=at>line " << note.mLine << "</span> " << Text(note.mRecord) << "<p class=note>"
                 << Text(note.mWhy) << "</p></li>";
        }
        mOut << "</ul>\n";
    }

    void Slowest(const TraceRun &run)
    {
        if (run.mSlowest.empty() || run.mSlowest.front().mTook == 0) {
            return;
        }
        mOut << "<h3>Slowest steps</h3><div class=slow>";
        for (const TraceStep &step : run.mSlowest) {
            if (step.mTook > 0) {
                mOut << "<div>" << ShownTime(step.mTook) << "</div><div><b>" << Text(step.mCommand) << "</b> "
                     << Text(step.mDetail) << " <span class=at>line " << step.mLine
                     << "</span><i style=\"width:" << 100ULL * step.mTook / run.mSlowest.front().mTook
                     << "%\"></i></div>";
            }
        }
        mOut << "</div>\n";
    }

    void OpenSection(const TraceRun &run)
    {
        if (mOpenRun != &run) {
            CloseSection();
            mOut << "<section>\n";
            mOpenRun = &run;
        }
    }
    void OpenTable(const TraceRun &run)
    {
        OpenSection(run);
        if (!mInTable) {
            mOut << "<details class=steps open><summary>Steps</summary><table>\n";
            mInTable = true;
        }
    }
    void CloseTable()
    {
        if (mInTable) {
            mOut << "</table>"
                 << (mWritten > kMostSteps
                         ? "<p>The steps behind these are left out here; the report as text has them all.</p>"
                         : "")
                 << "</details>\n";
            mInTable = false;
        }
    }
    void CloseSection()
    {
        CloseTable();
        mOut << (mOpenRun != nullptr ? "</section>\n" : "");
        mOpenRun = nullptr;
    }

    std::ostream &mOut;
    bool mSteps;
    CCodePage mCodePage;
    uint64_t mWritten = 0;
    const TraceRun *mOpenRun = nullptr;
    bool mInTable = false;
};

} // namespace

std::unique_ptr<ITraceSink> MakePageSink(std::ostream &out, const std::string &title, bool steps,
                                         const CCodePage &codePage)
{
    return std::make_unique<CPageSink>(out, title, steps, codePage);
}
