#include "TraceCapture.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "../system/TraceLog.h"
#include "Common/Trace.h"
#include "Common/TraceFile.h"

CTraceCapture::CTraceCapture()
    : mLevel(gDiagnosticLevel), mTraceToDebugOut(gTraceToDebugOut), mAssertsToDebugOut(gAssertsToDebugOut)
{
    EXPECT_TRUE(OpenTraceSink(mPath)) << mPath;
}

CTraceCapture::~CTraceCapture()
{
    CloseTraceSink();
    DeleteFileA(mPath.c_str());
    gDiagnosticLevel = mLevel;
    gTraceToDebugOut = mTraceToDebugOut;
    gAssertsToDebugOut = mAssertsToDebugOut;
}

std::vector<std::string> CTraceCapture::Take()
{
    const std::vector<TraceRecord> records = ParseTrace(ReadText(mPath));
    std::vector<std::string> messages;
    for (; mTaken < records.size(); ++mTaken) {
        messages.push_back(records[mTaken].mMessage);
    }
    return messages;
}
