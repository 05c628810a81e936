#include "Pack/TraceRun.h"

#include <algorithm>
#include <utility>

namespace {

constexpr uint32_t kDay = 24 * 60 * 60 * 1000;
constexpr size_t kMostOpen = 16;      // processes that write into one file at a time
constexpr size_t kLongestShown = 300; // bytes of a text that is kept for showing
constexpr size_t kMostFindings = 8;   // of one step

bool StartsWith(const std::string &text, const char *front)
{
    return text.rfind(front, 0) == 0;
}

std::string Shortened(const std::string &text)
{
    return text.size() <= kLongestShown ? text : text.substr(0, kLongestShown) + " ...";
}

void Append(std::string &text_I, const std::string &more)
{
    if (text_I.size() < kLongestShown) {
        text_I = Shortened(text_I + more);
    }
}

// "TAVIXSETUP.EXE 11/23/2026 8:5", the second record of a run.
bool NamesProgram(const std::string &message)
{
    size_t at = message.find(".EXE ");
    if (at == std::string::npos || at == 0) {
        return false;
    }
    int slashes = 0, colons = 0;
    for (at += 5; at < message.size(); ++at) {
        const char c = message[at];
        slashes += c == '/' ? 1 : 0;
        colons += c == ':' ? 1 : 0;
        if (c != '/' && c != ':' && c != ' ' && (c < '0' || c > '9')) {
            return false;
        }
    }
    return slashes == 2 && colons == 1;
}

// Records in front of the one that names what a step works on.
bool IsAside(const std::string &message)
{
    return StartsWith(message, "STDisableRedirect: ") || StartsWith(message, "keyBasePath: ");
}

// The time from one record to another, over midnight too; a clock that was set back counts as no time.
uint32_t Between(uint32_t from, uint32_t to)
{
    const uint32_t took = to >= from ? to - from : to + kDay - from;
    return took > kDay / 2 ? 0 : took;
}

void KeepSlow(std::vector<TraceStep> &slowest_I, const TraceStep &step)
{
    if (slowest_I.size() == CTraceRuns::kSlowest && slowest_I.back().mTook >= step.mTook) {
        return;
    }
    const auto place = std::upper_bound(slowest_I.begin(), slowest_I.end(), step.mTook,
                                        [](uint32_t took, const TraceStep &other) { return took > other.mTook; });
    slowest_I.insert(place, step);
    slowest_I.resize(std::min(slowest_I.size(), CTraceRuns::kSlowest));
}

} // namespace

// Records of a process that has begun anew, as the next one with its number does, begin a run.
CTraceRuns::OpenRun &CTraceRuns::RunOf(const TraceRecord &record)
{
    const std::string &message = record.mMessage;
    const bool begins = StartsWith(message, "Sending trace to file ") || NamesProgram(message);
    auto at = mOpen.find(record.mProcess);
    if (at != mOpen.end() && begins && !(at->second.mRun.mProgram.empty() && at->second.mRun.mSteps == 0)) {
        EndRun(at->second);
        mOpen.erase(at);
        at = mOpen.end();
    }
    if (at == mOpen.end()) {
        if (mOpen.size() == kMostOpen) {
            const auto oldest = std::min_element(mOpen.begin(), mOpen.end(), [](const auto &left, const auto &right) {
                return left.second.mTouched < right.second.mTouched;
            });
            EndRun(oldest->second);
            mOpen.erase(oldest);
        }
        at = mOpen.emplace(record.mProcess, OpenRun()).first;
        at->second.mRun.mLine = record.mLine;
        at->second.mRun.mTimed = record.mStamped;
        at->second.mRun.mProcess = record.mProcess;
        at->second.mRun.mBegan = at->second.mNow = record.mTime;
        ++mRuns;
    }
    at->second.mTouched = record.mLine;
    return at->second;
}

void CTraceRuns::Take(const TraceRecord &record)
{
    if (record.mMessage.empty() && !record.mStamped) {
        return;
    }
    // What stands in front of the first stamp is the end of something else.
    const auto unstamped = mOpen.find(0);
    if (record.mStamped && unstamped != mOpen.end() && !unstamped->second.mRun.mTimed &&
        unstamped->second.mRun.mSteps == 0) {
        mOpen.erase(unstamped);
        --mRuns;
    }
    OpenRun &open = RunOf(record);
    if (open.mEnded) {
        return;
    }
    if (record.mStamped) {
        open.mRun.mTook += Between(open.mNow, record.mTime);
        open.mNow = record.mTime;
    }
    open.mRun.mLastRecord = Shortened(record.mMessage);
    TakeOfRun(open, record);
}

void CTraceRuns::TakeOfRun(OpenRun &open_I, const TraceRecord &record)
{
    TraceRun &run = open_I.mRun;
    const std::string &message = record.mMessage;
    if (StartsWith(message, "Instruction ")) {
        EndStep(open_I);
        TraceStep &step = open_I.mStep.emplace();
        step.mNumber = ++run.mSteps;
        step.mLine = record.mLine;
        step.mTimed = record.mStamped;
        step.mTime = record.mTime;
        step.mCommand = Shortened(message.substr(12));
        open_I.mStepThread = record.mThread;
        open_I.mReason.clear();
        return;
    }
    if (StartsWith(message, "Executing steps for group ")) {
        EndStep(open_I);
        mSink.Group(run, Shortened(message.substr(26)));
        return;
    }
    if (StartsWith(message, "[Response Result]")) {
        EndStep(open_I);
        return;
    }
    if (StartsWith(message, "Resultcode=")) {
        EndStep(open_I);
        run.mExitCode = static_cast<uint32_t>(std::strtol(message.c_str() + 11, nullptr, 10));
        EndRun(open_I);
        return;
    }
    // Threads of the window write between the records of a step.
    if (open_I.mStep && record.mThread == open_I.mStepThread) {
        TraceStep &step = *open_I.mStep;
        TraceFinding finding = JudgeRecord(step.mCommand, record, open_I.mReason);
        if (StartsWith(message, ",")) {
            Append(step.mOutcome, step.mOutcome.empty() && StartsWith(message, ", ") ? message.substr(2) : message);
        } else if (step.mDetail.empty() && finding.mVerdict != ETraceVerdict::ENote && !IsAside(message)) {
            step.mDetail = Shortened(message);
        }
        step.mVerdict = std::max(step.mVerdict, finding.mVerdict);
        if (finding.mVerdict == ETraceVerdict::ENote) {
            Note(open_I, finding);
        }
        if (finding.mVerdict != ETraceVerdict::ENothing && step.mFindings.size() < kMostFindings) {
            step.mFindings.push_back(std::move(finding));
        }
        return;
    }
    if (NamesProgram(message)) {
        run.mProgram = Shortened(message);
    } else if (StartsWith(message, "OSPlatform ")) {
        run.mPlatform = Shortened(message.substr(11));
    } else if (StartsWith(message, "Language is ")) {
        run.mLanguage = Shortened(message.substr(12));
    } else if (StartsWith(message, "Silent install requested")) {
        run.mSilent = true;
    } else if (StartsWith(message, "Using mCommand ")) {
        run.mGroup = Shortened(
            message.substr(15, message.find(';') == std::string::npos ? std::string::npos : message.find(';') - 15));
    } else if (StartsWith(message, "Launching elevated process")) {
        run.mElevated = true;
    } else {
        std::string reason;
        TraceFinding finding = JudgeRecord(std::string(), record, reason);
        if (finding.mVerdict != ETraceVerdict::ENothing) {
            Note(open_I, std::move(finding));
        }
    }
}

void CTraceRuns::Note(OpenRun &open_I, TraceFinding finding)
{
    ++open_I.mRun.mNotesInAll;
    if (open_I.mRun.mNotes.size() < kMostShown) {
        open_I.mRun.mNotes.push_back(std::move(finding));
    }
}

void CTraceRuns::EndStep(OpenRun &open_I)
{
    if (!open_I.mStep) {
        return;
    }
    TraceRun &run = open_I.mRun;
    TraceStep step = std::move(*open_I.mStep);
    open_I.mStep.reset();
    step.mTook = step.mTimed ? Between(step.mTime, open_I.mNow) : 0;
    if (step.mVerdict == ETraceVerdict::EFailed && ++run.mFailedSteps <= kMostShown) {
        run.mFailed.push_back(step);
    }
    const bool waits = std::any_of(step.mFindings.begin(), step.mFindings.end(), [](const TraceFinding &finding) {
        return finding.mVerdict == ETraceVerdict::EWaits;
    });
    if (waits && ++run.mWaitingSteps <= kMostShown) {
        run.mWaiting.push_back(step);
    }
    if (step.mTimed) {
        KeepSlow(run.mSlowest, step);
    }
    mSink.Step(run, step);
}

void CTraceRuns::EndRun(OpenRun &open_I)
{
    if (!open_I.mEnded) {
        EndStep(open_I);
        open_I.mEnded = true;
        mSink.End(open_I.mRun);
    }
}

void CTraceRuns::Finish()
{
    for (auto &[process, open] : mOpen) {
        EndRun(open);
    }
    mOpen.clear();
}
