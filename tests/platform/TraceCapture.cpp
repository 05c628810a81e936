#include "TraceCapture.h"

#include <windows.h>

#include <fstream>

#include <gtest/gtest.h>

#include "Common/Trace.h"
#include "Common/TraceFile.h"

CTraceCapture::CTraceCapture()
    : mLevel(gDiagnosticLevel), mTraceToDebugOut(gTraceToDebugOut), mAssertsToDebugOut(gAssertsToDebugOut)
{
    char folder[MAX_PATH + 1];
    GetTempPathA(sizeof folder, folder);
    mPath = std::string(folder) + "TraceCapture" + std::to_string(GetCurrentProcessId()) + ".txt";
    DeleteFileA(mPath.c_str());
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
    std::vector<std::string> messages;
    std::ifstream file(mPath);
    std::string line;
    for (size_t at = 0; std::getline(file, line); ++at) {
        if (at < mTaken) {
            continue;
        }
        ++mTaken;
        // "HH:MM:SS.mmm -- pid/tid -- message"
        const size_t message = line.find(" -- ", line.find(" -- ") + 1);
        messages.push_back(message != std::string::npos ? line.substr(message + 4) : "no record: " + line);
    }
    return messages;
}
