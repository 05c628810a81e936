// The trace as a test sees it: the real trace, written to a file of the test's own.
#pragma once

#include <string>
#include <vector>

#include "../system/Files.h"

// From its making to its end the trace goes to a file in the temporary folder; the switches of the trace
// are put back at the end.
class CTraceCapture {
public:
    CTraceCapture();
    ~CTraceCapture();
    CTraceCapture(const CTraceCapture &) = delete;
    CTraceCapture &operator=(const CTraceCapture &) = delete;

    // The messages of the records since the last call, without time stamp and line end.
    std::vector<std::string> Take();

private:
    const std::string mPath = FreeTempName("TraceCapture");
    size_t mTaken = 0;
    int mLevel;
    bool mTraceToDebugOut;
    bool mAssertsToDebugOut;
};
