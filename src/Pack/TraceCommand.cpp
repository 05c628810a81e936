#include "Pack/TraceCommand.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "Pack/TraceSinks.h"

namespace {

// Knows whether all went well, besides what it passes on.
class CWatchingSink : public ITraceSink {
public:
    explicit CWatchingSink(ITraceSink &sink) : mSink(sink) {}
    void Group(const TraceRun &run, const std::string &name) override { mSink.Group(run, name); }
    void Step(const TraceRun &run, const TraceStep &step) override { mSink.Step(run, step); }
    void End(const TraceRun &run) override
    {
        mFaults = mFaults || run.mFailedSteps != 0 || (!run.mExitCode && !run.mElevated);
        mSink.End(run);
    }
    bool mFaults = false;

private:
    ITraceSink &mSink;
};

} // namespace

int ReportTrace(std::istream &trace, const TraceOptions &options, bool page, CPackConsole &console)
{
    const CCodePage codePage(options.mCodePage);
    const std::string title = "Trace " + std::filesystem::path(options.mFile).filename().string();
    const auto form = page ? MakePageSink(console.mOut, title, !options.mSummary, codePage)
                           : MakeTextSink(console.mOut, console.mColour, !options.mSummary, codePage);
    CWatchingSink sink(*form);
    CTraceRuns runs(sink);
    CTraceReader reader(trace);
    TraceRecord record;
    while (reader.Next(record)) {
        runs.Take(record);
    }
    runs.Finish();
    if (runs.Runs() == 0) {
        console.mError << "tavixpack: " << options.mFile << " holds no records\n";
        return kPackUnreadable;
    }
    return sink.mFaults ? kPackFound : kPackDone;
}

int RunTrace(const TraceOptions &options, CPackConsole &console)
{
    std::error_code ignored;
    std::ifstream file(options.mFile, std::ios::binary);
    if (options.mFile != "-" && (!file || std::filesystem::is_directory(options.mFile, ignored))) {
        console.mError << "tavixpack: cannot read " << options.mFile << '\n';
        return kPackUnreadable;
    }
    std::istream &trace = options.mFile == "-" ? std::cin : file;
    if (options.mPage.empty()) {
        return ReportTrace(trace, options, false, console);
    }
    std::ofstream page(options.mPage, std::ios::binary);
    CPackConsole toPage{page, console.mError};
    const int result = ReportTrace(trace, options, true, toPage);
    page.close();
    if (!page) {
        console.mError << "tavixpack: cannot write " << options.mPage << '\n';
        return kPackUnreadable;
    }
    return result;
}

void AddTraceCommand(CLI::App &app, CPackCommands &commands_I)
{
    CLI::App *const command = app.add_subcommand("trace", "What a run's trace says, as a report.");
    const auto options = std::make_shared<TraceOptions>();
    command->add_option("FILE", options->mFile, "the trace; - for the input")->required();
    command->add_option("--html", options->mPage, "write the report as one page to this file");
    command->add_flag("--summary", options->mSummary, "leave the list of all steps out");
    command->add_option("--code-page", options->mCodePage, "code page of the machine that the run was on")
        ->check(CLI::IsMember(CCodePage::Known()))
        ->capture_default_str();
    command->callback([options, &commands_I] {
        commands_I.mRun = [options](CPackConsole &console) { return RunTrace(*options, console); };
    });
}
