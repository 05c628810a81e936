// The program's log: one record a call, filtered by level, written to the debugger and to the trace
// file. The words of the records are a contract with those who read the file; every record is one
// line, so every format ends in "\n". Text that comes from outside is an argument, never a format.
#pragma once

#include <cstdint>
#include <string>

#include "Common/TraceSettings.h"

#if defined(__MINGW32__)
#define TVX_PRINTF(formatAt, firstAt) __attribute__((format(gnu_printf, formatAt, firstAt)))
#else
#define TVX_PRINTF(formatAt, firstAt) __attribute__((format(printf, formatAt, firstAt)))
#endif

// Writes one record when `level` is below the threshold; a call above it costs one comparison.
// Answers the length of the message in characters, 0 when it was filtered, -1 for a bad format.
int trace(int level, const char *format, ...) TVX_PRINTF(2, 3);

// Writes one record whatever the threshold. Answers as trace() does.
int traceAlways(const char *format, ...) TVX_PRINTF(1, 2);

// Reports a broken expectation of the program at level 0; `text` is the expectation as it reads in
// the source. Stays active in every build and does not depend on the assertion switch.
void traceExpectation(const char *text);

// Where an assertion ends up; use TVX_ASSERT.
void reportAssertion(const char *expression, const char *file, int line);

// Checks an expectation when assertions are switched on and reports it when it is broken; never stops.
#define TVX_ASSERT(expression)                                                                                         \
    do {                                                                                                               \
        if (AssertsToDebugOut() && !(expression)) {                                                                    \
            reportAssertion(#expression, __FILE__, __LINE__);                                                          \
        }                                                                                                              \
    } while (false)

// A pointer or handle for the format "%08X": what "%p" shows where the platform formats, eight digits with capitals.
// The compiler's own has small letters.
inline unsigned PointerDigits(const void *pointer)
{
    return static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer));
}

// "Yes" or "No", the two words of every result line.
inline const char *YesNo(bool value)
{
    return value ? "Yes" : "No";
}
