// The runs of a trace and their steps, put together from the records while they go by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Pack/TraceReader.h"

// What a record tells about the step that it belongs to.
enum class ETraceVerdict { ENothing, ENote, EWaits, EFailed };

// A record that somebody should see, and what it means.
struct TraceFinding {
    ETraceVerdict mVerdict = ETraceVerdict::ENothing;
    uint64_t mLine = 0;
    std::string mRecord;
    std::string mWhy; // empty when the record says all
};

struct TraceStep {
    uint64_t mNumber = 0; // from 1, in the run
    uint64_t mLine = 0;
    bool mTimed = false;
    uint32_t mTime = 0; // milliseconds since midnight
    uint32_t mTook = 0; // milliseconds, to the next step or to the end of the work
    std::string mCommand;
    std::string mDetail;  // its first record
    std::string mOutcome; // the records that begin with a comma
    ETraceVerdict mVerdict = ETraceVerdict::ENothing;
    std::vector<TraceFinding> mFindings;
};

struct TraceRun {
    uint64_t mLine = 0;
    bool mTimed = false;
    uint32_t mProcess = 0;
    uint32_t mBegan = 0;
    uint32_t mTook = 0;
    std::string mProgram; // with the date
    std::string mPlatform;
    std::string mLanguage;
    std::string mGroup;
    bool mSilent = false;
    bool mElevated = false; // it handed the work to a process with more rights
    std::optional<uint32_t> mExitCode;
    std::string mLastRecord;
    uint64_t mSteps = 0;
    uint64_t mFailedSteps = 0;
    uint64_t mWaitingSteps = 0;
    uint64_t mNotesInAll = 0;
    // The first ones of each kind; a trace can have any number.
    std::vector<TraceStep> mFailed;
    std::vector<TraceStep> mWaiting;
    std::vector<TraceFinding> mNotes;
    std::vector<TraceStep> mSlowest; // the slowest first
};

class ITraceSink {
public:
    virtual ~ITraceSink() = default;
    virtual void Group(const TraceRun &run, const std::string &name) = 0;
    virtual void Step(const TraceRun &run, const TraceStep &step) = 0;
    virtual void End(const TraceRun &run) = 0;
};

class CTraceRuns {
public:
    static constexpr size_t kMostShown = 100; // of the findings of one kind
    static constexpr size_t kSlowest = 10;

    explicit CTraceRuns(ITraceSink &sink) : mSink(sink) {}

    void Take(const TraceRecord &record);

    // Ends the runs that have not come to their end.
    void Finish();

    uint64_t Runs() const { return mRuns; }

private:
    struct OpenRun {
        TraceRun mRun;
        std::optional<TraceStep> mStep;
        uint32_t mStepThread = 0;
        uint32_t mNow = 0;
        std::string mReason; // an error that a record of the step told about
        bool mEnded = false;
        uint64_t mTouched = 0; // the line of its last record
    };

    OpenRun &RunOf(const TraceRecord &record);
    void EndStep(OpenRun &open_I);
    void EndRun(OpenRun &open_I);
    void TakeOfRun(OpenRun &open_I, const TraceRecord &record);
    void Note(OpenRun &open_I, TraceFinding finding);

    ITraceSink &mSink;
    std::map<uint32_t, OpenRun> mOpen; // by process
    uint64_t mRuns = 0;
};

// What a record of a step of this command tells. `reason_I` is what earlier records of the step told about an error; a
// record that does so replaces it.
TraceFinding JudgeRecord(const std::string &command, const TraceRecord &record, std::string &reason_I);
