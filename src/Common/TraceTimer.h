// Measures a stretch of code and traces its length when it ends.
#pragma once

#include <cstdint>
#include <string>

class TraceTimer {
public:
    // `name` opens the trace line. A counter, when one is given, is raised by one and numbers the line.
    explicit TraceTimer(const char *name, int32_t *counter_I_O = nullptr);

    // Traces "<name>, = <milliseconds> ms, <number>" while trace output is switched on.
    ~TraceTimer();
    TraceTimer(const TraceTimer &) = delete;
    TraceTimer &operator=(const TraceTimer &) = delete;

private:
    int64_t mFrequency = 0; // counts a second (QueryPerformanceFrequency)
    int64_t mStart = 0;
    std::string mName;
    int32_t mSequence = 0;
};
