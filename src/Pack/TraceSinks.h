// The two forms of the report about a trace.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "Pack/CodePage.h"
#include "Pack/TraceRun.h"

std::unique_ptr<ITraceSink> MakeTextSink(std::ostream &out, bool colour, bool steps, const CCodePage &codePage);

// One page that needs nothing from elsewhere. Its end is written when the sink goes.
std::unique_ptr<ITraceSink> MakePageSink(std::ostream &out, const std::string &title, bool steps,
                                         const CCodePage &codePage);

// Text of a trace in UTF-8, fit for a terminal: what is no UTF-8 is taken for the code page, control characters show as
// \x1B, line ends as a blank.
std::string ShownText(const std::string &text, const CCodePage &codePage);

// "12 ms", "1.20 s", "2 min 05 s".
std::string ShownTime(uint32_t milliseconds);

// "09:05:07.045".
std::string ShownClock(uint32_t milliseconds);

// How a run ended, in sentences.
std::string EndOfRun(const TraceRun &run);

// "64 runs", "1 run".
std::string Counted(uint64_t number, const char *word);
