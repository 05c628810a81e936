#include "TraceRecorder.h"

#include <cstdarg>
#include <cstdio>

#include "Common/Trace.h"

int gDiagnosticLevel = kDefaultDiagnosticLevel;
bool gTraceToDebugOut = true;
bool gAssertsToDebugOut = true;

namespace {

constexpr size_t kMostRecords = 4096;
std::vector<std::string> gRecords;

TVX_PRINTF(1, 0) int Record(const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    const int length = vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) {
        return -1;
    }
    std::string message(static_cast<size_t>(length) + 1, '\0');
    vsnprintf(message.data(), message.size(), format, arguments);
    message.pop_back();
    if (!message.empty() && message.back() == '\n') {
        message.pop_back();
    }
    if (gRecords.size() < kMostRecords) {
        gRecords.push_back(message);
    }
    return length;
}

} // namespace

std::vector<std::string> TakeTraceRecords()
{
    std::vector<std::string> records;
    records.swap(gRecords);
    return records;
}

int trace(int level, const char *format, ...)
{
    if (level >= gDiagnosticLevel) {
        return 0;
    }
    va_list arguments;
    va_start(arguments, format);
    const int length = Record(format, arguments);
    va_end(arguments);
    return length;
}

int traceAlways(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = Record(format, arguments);
    va_end(arguments);
    return length;
}

void traceExpectation(const char *text)
{
    trace(0, "%s\n", text);
}

void reportAssertion(const char *expression, const char *file, int line)
{
    traceAlways("Assert:(%s) in %s at %i\n", expression, file, line);
}
