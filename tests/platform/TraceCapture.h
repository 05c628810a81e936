// The trace as a test sees it: the real trace, written to a file of the test's own.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../system/Files.h"
#include "../system/TraceLog.h"
#include "Common/Trace.h"
#include "Common/TraceFile.h"

// From its making to its end the trace goes to a file in the temporary folder; the switches of the trace
// are put back at the end.
class CTraceCapture {
public:
    CTraceCapture() { EXPECT_TRUE(OpenTraceSink(mPath)) << mPath; }
    ~CTraceCapture()
    {
        CloseTraceSink();
        DeleteFileA(mPath.c_str());
        SetDiagnosticLevel(mLevel);
        SetTracesToDebugOut(mTraceToDebugOut);
        SetAssertsToDebugOut(mAssertsToDebugOut);
    }
    CTraceCapture(const CTraceCapture &) = delete;
    CTraceCapture &operator=(const CTraceCapture &) = delete;

    // The messages of the records since the last call, without time stamp and line end.
    std::vector<std::string> Take()
    {
        const std::vector<TraceRecord> records = ParseTrace(ReadText(mPath));
        std::vector<std::string> messages;
        for (; mTaken < records.size(); ++mTaken) {
            messages.push_back(records[mTaken].mMessage);
        }
        return messages;
    }

private:
    const std::string mPath = FreeTempName("TraceCapture");
    size_t mTaken = 0;
    const int mLevel = DiagnosticLevel();
    const bool mTraceToDebugOut = TracesToDebugOut(), mAssertsToDebugOut = AssertsToDebugOut();
};
