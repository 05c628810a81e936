// The records of the trace; the pages of cases tell where they go.
#include "Fixture.h"

namespace {

std::string Clock()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    char text[16];
    snprintf(text, sizeof text, "%02i:%02i:%02i.%03i", now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
    return text;
}

// The records of one second share their time but for the milliseconds; a run that lasts into the next ones shows
// whether each second is told anew.
TEST(Trace, RecordsTellTimeAndProcess)
{
    Package package;
    package.Steps("Log;before\nDelay;1500\nLog;behind");
    std::string last = Clock();
    const RunResult run = package.Run();
    const std::string end = Clock();
    if (end < last) {
        GTEST_SKIP() << "midnight fell into the run";
    }
    SYSTEMTIME now;
    GetLocalTime(&now);
    char process[16];
    snprintf(process, sizeof process, "%05lu", static_cast<unsigned long>(run.mProcessId));
    char header[64];
    snprintf(header, sizeof header, "TAVIXSETUP.EXE %i/%i/%i *:*", now.wMonth, now.wDay, now.wYear);
    size_t length = 0;
    for (const TraceRecord &record : run.mTrace) {
        EXPECT_LE(last, record.mTime);
        EXPECT_EQ(record.mProcess, process);
        last = record.mTime;
        length += std::string(record.mTime + " -- " + record.mProcess + "/" + record.mThread + " -- \r\n").size() +
                  record.mMessage.size();
    }
    EXPECT_LE(last, end);
    EXPECT_EQ(run.mTraceText.size(), length) << run.mTraceText; // nothing else, and every record has its line end
    EXPECT_TRUE(HasInOrder(run, {header, "before", "behind", "Resultcode=0"}));
}

} // namespace
