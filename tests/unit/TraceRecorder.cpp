#include "TraceRecorder.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

#include "Common/Trace.h"

namespace {

constexpr size_t kMostRecords = 4096;
std::vector<std::string> gRecords;

TVX_PRINTF(1, 0) int Record(const char *format, va_list arguments)
{
    static char message[0x4000]; // longer ones are cut; on the stack the sanitizers would mark all of it at each record
    const int length = vsnprintf(message, sizeof message, format, arguments);
    const std::string text = message;
    if (length >= 0 && gRecords.size() < kMostRecords) {
        gRecords.push_back(text.substr(0, text.size() - (!text.empty() && text.back() == '\n')));
    }
    return length;
}

} // namespace

std::vector<std::string> TakeTraceRecords()
{
    return std::exchange(gRecords, {});
}

std::string TakeAssertions()
{
    std::string assertions;
    for (const std::string &record : TakeTraceRecords()) {
        const bool assertion = record.compare(0, 8, "Assert:(") == 0;
        assertions +=
            (assertions.empty() ? "" : " & ") + (assertion ? record.substr(8, record.find(") in ") - 8) : record);
    }
    return assertions;
}

std::string WithAssertions(const std::string &outcome)
{
    const std::string assertions = TakeAssertions();
    return outcome + (assertions.empty() ? "" : " ") + assertions;
}

int trace(int level, const char *format, ...)
{
    if (level >= DiagnosticLevel()) {
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
