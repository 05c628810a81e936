#include "Common/TraceTimer.h"

#include <windows.h>

#include "Common/Trace.h"

namespace {

int64_t PerformanceCount()
{
    LARGE_INTEGER count;
    QueryPerformanceCounter(&count);
    return count.QuadPart;
}

} // namespace

TraceTimer::TraceTimer(const char *name, int32_t *counter_I_O) : mName(name)
{
    if (counter_I_O != nullptr) {
        mSequence = ++*counter_I_O;
    }
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    mFrequency = frequency.QuadPart;
    mStart = PerformanceCount();
}

TraceTimer::~TraceTimer()
{
    const int64_t counts = PerformanceCount() - mStart;
    if (TracesToDebugOut()) {
        traceAlways("%s, = %.3f ms, %li\n", mName.c_str(),
                    static_cast<double>(counts) / static_cast<double>(mFrequency) * 1000.0,
                    static_cast<long>(mSequence));
    }
}
