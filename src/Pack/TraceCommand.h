// tavixpack trace: what a run's trace says, as a report for people.
#pragma once

#include <istream>
#include <string>

#include "Pack/Console.h"

namespace CLI {
class App;
}

struct TraceOptions {
    std::string mFile;
    std::string mPage;     // the page to write; empty for a report as text
    bool mSummary = false; // without the steps
    uint32_t mCodePage = 1252;
};

void AddTraceCommand(CLI::App &app, CPackCommands &commands_I);

// Answers kPackFound when a step failed or the run did not come to its end.
int RunTrace(const TraceOptions &options, CPackConsole &console);

// The same about a stream; the page is written to the console's output when `page` is set.
int ReportTrace(std::istream &trace, const TraceOptions &options, bool page, CPackConsole &console);
