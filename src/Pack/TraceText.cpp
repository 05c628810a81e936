// The report about a trace as text.
#include <cstdio>

#include "Pack/ExitCodes.h"
#include "Pack/TraceSinks.h"

namespace {

constexpr char kRed[] = "\x1B[31m";
constexpr char kYellow[] = "\x1B[33m";
constexpr char kBold[] = "\x1B[1m";
constexpr char kDim[] = "\x1B[2m";
constexpr char kPlain[] = "\x1B[0m";

class CTextSink : public ITraceSink {
public:
    CTextSink(std::ostream &out, bool colour, bool steps, const CCodePage &codePage)
        : mOut(out), mColour(colour), mSteps(steps), mCodePage(codePage)
    {
    }

    void Group(const TraceRun &run, const std::string &name) override
    {
        if (mSteps) {
            Begin(run);
            mOut << Paint(kBold) << "  group " << Shown(name) << Paint(kPlain) << '\n';
        }
    }

    void Step(const TraceRun &run, const TraceStep &step) override
    {
        if (mSteps) {
            Begin(run);
            Line(step);
        }
    }

    void End(const TraceRun &run) override
    {
        Begin(run);
        Part("Failed", run.mFailedSteps, run.mFailed.size(), "step");
        for (const TraceStep &step : run.mFailed) {
            Findings(step, ETraceVerdict::EFailed);
        }
        Part("Waits for the restart", run.mWaitingSteps, run.mWaiting.size(), "step");
        for (const TraceStep &step : run.mWaiting) {
            Findings(step, ETraceVerdict::EWaits);
        }
        Part("Worth a look", run.mNotesInAll, run.mNotes.size(), "record");
        for (const TraceFinding &note : run.mNotes) {
            mOut << "  line " << note.mLine << ": " << Shown(note.mRecord) << Why(note) << '\n';
        }
        if (!run.mSlowest.empty() && run.mSlowest.front().mTook > 0) {
            mOut << '\n' << Paint(kBold) << "Slowest steps" << Paint(kPlain) << '\n';
            for (const TraceStep &step : run.mSlowest) {
                if (step.mTook > 0) {
                    Line(step);
                }
            }
        }
        mOut << '\n' << Paint(kBold) << "End" << Paint(kPlain) << '\n' << "  " << Shown(EndOfRun(run)) << "\n";
        mCurrent = nullptr;
    }

private:
    const char *Paint(const char *colour) const { return mColour ? colour : ""; }
    std::string Shown(const std::string &text) const { return ShownText(text, mCodePage); }
    std::string Why(const TraceFinding &finding) const
    {
        return finding.mWhy.empty() ? std::string() : " -- " + Shown(finding.mWhy);
    }

    // The head of a run, and the mark of one that goes on among the records of another.
    void Begin(const TraceRun &run)
    {
        if (mCurrent == &run) {
            return;
        }
        mCurrent = &run;
        mOut << (mAny ? "\n" : "") << Paint(kBold) << "Run" << Paint(kPlain);
        mAny = true;
        if (run.mTimed) {
            mOut << " of " << ShownClock(run.mBegan) << ", process " << run.mProcess;
        }
        mOut << ", line " << run.mLine << '\n';
        Fact("program", run.mProgram);
        Fact("Windows", run.mPlatform);
        Fact("group", run.mGroup.empty() ? run.mGroup : run.mGroup + (run.mSilent ? ", silent" : ""));
        Fact("language", run.mLanguage);
    }

    void Fact(const char *name, const std::string &text)
    {
        if (!text.empty()) {
            mOut << "  " << name << ": " << Shown(text) << '\n';
        }
    }

    void Part(const char *title, uint64_t number, size_t shown, const char *word)
    {
        if (number == 0) {
            return;
        }
        mOut << '\n' << Paint(kBold) << title << Paint(kPlain) << ": " << Counted(number, word);
        if (shown < number) {
            mOut << ", the first " << shown << " of them";
        }
        mOut << '\n';
    }

    void Findings(const TraceStep &step, ETraceVerdict verdict)
    {
        mOut << "  line " << step.mLine << ": " << Paint(kBold) << Shown(step.mCommand) << Paint(kPlain) << "  "
             << Shown(step.mDetail) << '\n';
        for (const TraceFinding &finding : step.mFindings) {
            if (finding.mVerdict == verdict) {
                mOut << "      " << Paint(verdict == ETraceVerdict::EFailed ? kRed : kYellow)
                     << (finding.mRecord == step.mDetail ? std::string("this") : Shown(finding.mRecord))
                     << Paint(kPlain) << Why(finding) << '\n';
            }
        }
    }

    void Line(const TraceStep &step)
    {
        const bool failed = step.mVerdict == ETraceVerdict::EFailed, waits = step.mVerdict == ETraceVerdict::EWaits;
        char head[64];
        snprintf(head, sizeof head, "%s  %10s ", step.mTimed ? ShownClock(step.mTime).c_str() : "",
                 step.mTimed ? ShownTime(step.mTook).c_str() : "");
        mOut << "  " << Paint(kDim) << head << Paint(kPlain)
             << Paint(failed  ? kRed
                      : waits ? kYellow
                              : kPlain)
             << (failed  ? "! "
                 : waits ? "~ "
                         : "  ")
             << Shown(step.mCommand) << Paint(kPlain);
        if (!step.mDetail.empty()) {
            mOut << "  " << Shown(step.mDetail);
        }
        if (!step.mOutcome.empty()) {
            mOut << ": " << Shown(step.mOutcome);
        }
        mOut << '\n';
    }

    std::ostream &mOut;
    bool mColour;
    bool mSteps;
    CCodePage mCodePage;
    const TraceRun *mCurrent = nullptr;
    bool mAny = false;
};

} // namespace

std::unique_ptr<ITraceSink> MakeTextSink(std::ostream &out, bool colour, bool steps, const CCodePage &codePage)
{
    return std::make_unique<CTextSink>(out, colour, steps, codePage);
}

std::string ShownText(const std::string &text, const CCodePage &codePage)
{
    bool plain = true;
    for (const char c : text) {
        plain = plain && static_cast<unsigned char>(c) < 0x7F && static_cast<unsigned char>(c) >= ' ';
    }
    if (plain) {
        return text;
    }
    std::u16string wide = WideOfUtf8(text);
    if (wide.find(u'\xFFFD') != std::u16string::npos) {
        wide = codePage.ToWide(text);
    }
    std::u16string shown;
    for (const char16_t unit : wide) {
        const bool turns =
            (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069); // the text's direction
        if (unit == u'\n' || unit == u'\t') {
            shown += u' ';
        } else if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) {
            constexpr char16_t kDigits[] = u"0123456789ABCDEF";
            shown += {u'\\', u'x', kDigits[unit >> 4], kDigits[unit & 0xF]};
        } else if (!turns) {
            shown += unit;
        }
    }
    return Utf8OfWide(shown);
}

std::string ShownTime(uint32_t milliseconds)
{
    char text[32];
    if (milliseconds < 1000) {
        snprintf(text, sizeof text, "%u ms", static_cast<unsigned>(milliseconds));
    } else if (milliseconds < 60000) {
        snprintf(text, sizeof text, "%.2f s", milliseconds / 1000.0);
    } else {
        snprintf(text, sizeof text, "%u min %02u s", static_cast<unsigned>(milliseconds / 60000),
                 static_cast<unsigned>(milliseconds / 1000 % 60));
    }
    return text;
}

std::string ShownClock(uint32_t milliseconds)
{
    const auto seconds = static_cast<unsigned>(milliseconds / 1000);
    char text[48];
    snprintf(text, sizeof text, "%02u:%02u:%02u.%03u", seconds / 3600, seconds / 60 % 60, seconds % 60,
             static_cast<unsigned>(milliseconds % 1000));
    return text;
}

std::string Counted(uint64_t number, const char *word)
{
    return std::to_string(number) + " " + word + (number == 1 ? "" : "s");
}

std::string EndOfRun(const TraceRun &run)
{
    std::string text = Counted(run.mSteps, "step");
    if (run.mTimed) {
        text += " in " + ShownTime(run.mTook);
    }
    text += run.mFailedSteps == 0 ? ", none of them failed. " : ", " + std::to_string(run.mFailedSteps) + " failed. ";
    if (run.mExitCode) {
        text += "Exit code " + std::to_string(*run.mExitCode) + ":";
        bool any = false;
        for (const ExitMeaning &meaning : MeaningsOf(*run.mExitCode)) {
            if (run.mSilent ? meaning.mSilent : meaning.mWindowed) {
                text += (any ? " Or: " : " ") + meaning.mWords;
                any = true;
            }
        }
        text += any ? "" : " no run answers this.";
    } else if (run.mElevated) {
        text += "The work was handed to a process with the rights of an administrator, which has a trace of its own.";
    } else {
        text +=
            "The trace has no end: the run still goes on, was killed, or crashed. Its last record: " + run.mLastRecord;
    }
    return text;
}
