// The trace and its timer where only the process itself can see them.
#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <thread>
#include <vector>

#include "Common/ComApartment.h"
#include "Common/Handles.h"
#include "Common/Trace.h"
#include "Common/TraceTimer.h"
#include "TraceCapture.h"

namespace {

// Plays the monitor to whom OutputDebugString hands messages: section and events are the contract between the two.
class CDebugMonitor {
public:
    CDebugMonitor()
        : mReady(CreateEventA(nullptr, FALSE, TRUE, "DBWIN_BUFFER_READY")),
          mData(CreateEventA(nullptr, FALSE, FALSE, "DBWIN_DATA_READY")),
          mSection(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kSize, "DBWIN_BUFFER")),
          mView(static_cast<const char *>(MapViewOfFile(mSection.Get(), FILE_MAP_READ, 0, 0, kSize)))
    {
    }
    ~CDebugMonitor() { UnmapViewOfFile(mView); }

    // The next message of this process within two seconds, empty when none comes.
    std::string Next()
    {
        while (WaitForSingleObject(mData.Get(), 2000) == WAIT_OBJECT_0) {
            const DWORD process = *reinterpret_cast<const DWORD *>(mView);
            const std::string message = mView + sizeof(DWORD);
            SetEvent(mReady.Get());
            if (process == GetCurrentProcessId()) {
                return message;
            }
        }
        return std::string();
    }

private:
    static constexpr DWORD kSize = 4096;
    CHandle mReady;
    CHandle mData;
    CHandle mSection;
    const char *mView;
};

TEST(Trace, ReachesAMonitorThatIsStartedDuringTheRun)
{
    trace(0, "before anybody listens\n");
    CDebugMonitor monitor;
    Sleep(300); // a monitor is noticed within a quarter of a second
    std::thread tracer([] { trace(0, "somebody %s\n", "listens"); });
    EXPECT_EQ(monitor.Next(), "somebody listens\n");
    tracer.join();
}

TEST(Trace, LengthOfTheMessageIsAnsweredAndTheLastErrorKept)
{
    CTraceCapture capture;
    const std::string longText(70000, 'x');
    SetLastError(4711);
    EXPECT_EQ(trace(0, "%s\n", longText.c_str()), 70001);
    EXPECT_EQ(GetLastError(), 4711u);
    gDiagnosticLevel = 7;
    EXPECT_EQ(trace(7, "at the threshold\n"), 0);
    EXPECT_EQ(trace(6, "below it\n"), 9);
    EXPECT_EQ(traceAlways("always\n"), 7);
    EXPECT_EQ(capture.Take(), (std::vector<std::string>{longText, "below it", "always"}));
}

TEST(TraceTimer, TellsNameTimeAndNumberWhenItEnds)
{
    CTraceCapture capture;
    int32_t counter = 6;
    {
        const TraceTimer timer("TIMEFOR: TEST", &counter);
        Sleep(30);
    }
    EXPECT_EQ(counter, 7);
    const std::vector<std::string> records = capture.Take();
    ASSERT_EQ(records.size(), 1u);
    double milliseconds = 0;
    long number = 0;
    EXPECT_EQ(sscanf(records[0].c_str(), "TIMEFOR: TEST, = %lf ms, %ld", &milliseconds, &number), 2) << records[0];
    EXPECT_GE(milliseconds, 29.0);
    EXPECT_EQ(number, 7);
}

TEST(ComApartment, IsEnteredByTheFirstWhoAsksInAScopeAndNowhereElse)
{
    EXPECT_FALSE(EnterComApartment());
    {
        const CComApartmentScope scope;
        EXPECT_TRUE(EnterComApartment());
        EXPECT_TRUE(EnterComApartment());
    }
    EXPECT_FALSE(EnterComApartment());
}

} // namespace
