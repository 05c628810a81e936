#include "Actions/VersionCompare.h"

#include <gtest/gtest.h>

#include <windows.h>

#include "Actions/Redirection.h"
#include "Common/DriverDate.h"
#include "Common/Handles.h"
#include "Common/Trace.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

using Records = std::vector<std::string>;

// Whether the redirection can be switched off here, in the words of the trace; leaves it on.
std::string RealFoldersShow()
{
    const bool off = EnableWow64Redirection(false) != FALSE;
    if (off) {
        EnableWow64Redirection(true);
    }
    return YesNo(off);
}

class VersionCompare : public testing::Test {
protected:
    // Writes a file and gives it a time of writing, in days from some day.
    std::string File(const std::string &name, const std::string &content, unsigned day) const
    {
        const std::string path = mScratch.Write(name, content);
        SetDay(path, day);
        return path;
    }

    std::string Versioned(const std::string &name, const std::string &version, unsigned day) const
    {
        return File(name, ReadBytes(BuiltDouble("versions\\" + version)), day);
    }

    static void SetDay(const std::string &path, unsigned day)
    {
        const CHandle file(CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ULARGE_INTEGER ticks;
        ticks.QuadPart = UINT64_C(129700000000000000) + day * UINT64_C(864000000000);
        const FILETIME time = {ticks.LowPart, ticks.HighPart};
        EXPECT_TRUE(SetFileTime(file.Get(), nullptr, nullptr, &time)) << path;
    }

    std::string Missing() const { return mScratch.Path("missing.dll"); }

    const CScratchFolder mScratch;
};

TEST_F(VersionCompare, AHigherVersionOrALaterTimeMakesTheSourceNewer)
{
    const std::string high1 = Versioned("high1.dll", "Beta32.dll", 1);
    const std::string high2 = Versioned("high2.dll", "Beta32.dll", 2);
    const std::string low1 = Versioned("low1.dll", "Version32.dll", 1);
    const std::string low2 = Versioned("low2.dll", "Version32.dll", 2);
    const std::string plain1 = File("plain1.txt", "text", 1);
    const std::string plain2 = File("plain2.txt", "text", 2);
    const struct {
        std::string target;
        std::string source;
        bool newer;
    } kCases[] = {
        {low1, high1, true},        {low2, high1, true},
        {high1, low1, false},       {high2, low1, false},
        {low1, low1, false},        {low1, low2, true},
        {low2, low1, false},        {high1, low2, true}, // the later time is enough for a lower version
        {plain1, plain2, true},     {plain2, plain1, false},
        {plain1, plain1, false},    {plain2, low1, true},
        {low1, plain2, true},       {low2, plain1, false},
        {Missing(), low1, true},    {"", low1, true},
        {Missing(), plain1, false}, // no version to be newer by, no time to be later than
        {low1, Missing(), false},   {Missing(), Missing(), false},
    };
    for (const auto &test : kCases) {
        EXPECT_EQ(IsFileNewer(test.target, test.source), test.newer) << test.target << " < " << test.source;
    }
}

TEST_F(VersionCompare, TracesBothFilesAndTheOutcome)
{
    const std::string low = Versioned("50%s.dll", "Version32.dll", 1);
    const std::string high = Versioned("high.dll", "Beta32.dll", 1);
    const std::string shown = ", 64 " + RealFoldersShow() + ":";
    CTraceCapture capture;
    IsFileNewer(low, high);
    EXPECT_EQ(capture.Take(), (Records{"FileVersionCompare: " + low + " (5.3.5-5) vs " + high + " (6.1.0b12)" + shown,
                                       "5.3.5-5 < 6.1.0b12"}));
    IsFileNewer(high, low);
    EXPECT_EQ(capture.Take(), (Records{"FileVersionCompare: " + high + " (6.1.0b12) vs " + low + " (5.3.5-5)" + shown,
                                       "6.1.0b12 > 5.3.5-5"}));
    IsFileNewer(low, low);
    EXPECT_EQ(capture.Take().at(1), "5.3.5-5 > 5.3.5-5");
    gDiagnosticLevel = 7;
    IsFileNewer(low, high);
    EXPECT_EQ(capture.Take(), Records());
}

TEST_F(VersionCompare, SeesTheRealFoldersAndLeavesTheRedirectionOn)
{
    if (RealFoldersShow() == "No") {
        GTEST_SKIP() << "a 32-bit Windows has no redirection";
    }
    char system[MAX_PATH];
    ASSERT_NE(GetSystemDirectoryA(system, sizeof system), 0u);
    const std::string target = std::string(system) + "\\TvxVersionCompareTest.dll";
    const std::string source = Versioned("source.dll", "Version32.dll", 5);
    const auto place = [&](const char *version, unsigned day) {
        EXPECT_TRUE(CopyFileA(BuiltDouble(std::string("versions\\") + version).c_str(), target.c_str(), FALSE));
        SetDay(target, day);
    };
    place("Version32.dll", 1); // older than the source, where only redirected programs look
    EnableWow64Redirection(false);
    place("Beta32.dll", 9);
    EnableWow64Redirection(true);
    EXPECT_FALSE(IsFileNewer(target, source));
    EXPECT_TRUE(ReadBytes(target) == ReadBytes(source)); // redirection is on: this is the other file
    EXPECT_TRUE(DeleteFileA(target.c_str()));
    EnableWow64Redirection(false);
    EXPECT_TRUE(DeleteFileA(target.c_str()));
    EnableWow64Redirection(true);
}

TEST_F(VersionCompare, WriteTimesOfShortAndLongPaths)
{
    const std::string longName(100, 'n');
    const std::string early = File("early.txt", "", 1);
    const std::string late = File("late.txt", "", 2);
    const std::string longEarly = File(longName + "1", "", 1);
    const std::string longLate = File(longName + "2", "", 2);
    ASSERT_GE(longEarly.size(), static_cast<size_t>(OFS_MAXPATHNAME));
    EXPECT_TRUE(IsWriteTimeEarlier(early, late));
    EXPECT_FALSE(IsWriteTimeEarlier(late, early));
    EXPECT_FALSE(IsWriteTimeEarlier(early, early));
    EXPECT_TRUE(IsWriteTimeEarlier(longEarly, longLate));
    EXPECT_FALSE(IsWriteTimeEarlier(longLate, longEarly));
    EXPECT_TRUE(IsWriteTimeEarlier(early, longLate));
    EXPECT_FALSE(IsWriteTimeEarlier(Missing(), late));
    EXPECT_FALSE(IsWriteTimeEarlier(early, Missing()));
    EXPECT_FALSE(IsWriteTimeEarlier(early, mScratch.Path(longName)));
    EXPECT_TRUE(DeleteFileA(longEarly.c_str())); // no handle is left open
    EXPECT_TRUE(DeleteFileA(early.c_str()));
}

TEST_F(VersionCompare, InfFilesByVersionThenByDateAndNeverByFileTime)
{
    const auto inf = [&](const char *name, const char *entry, unsigned day) {
        return File(name, std::string("[Version]\r\nDriverVer=") + entry + "\r\n", day);
    };
    const std::string first = inf("first.inf", "01/13/2012,6.1.2.3", 9);
    const std::string later = inf("later.inf", "02/13/2012,6.1.2.3", 1);
    const std::string higher = inf("higher.inf", "01/01/2001,6.1.2.4", 1);
    const std::string nothing = File("nothing.inf", "[Version]\r\n", 9);
    const std::string shown = ", 64 " + RealFoldersShow() + ":";
    CTraceCapture capture;
    EXPECT_TRUE(IsInfNewer(first, later));
    EXPECT_EQ(capture.Take(), (Records{"InfVersionCompare: " + first + " (13/01/2012,6.1.2.3) vs " + later +
                                           " (13/02/2012,6.1.2.3)" + shown,
                                       "13/01/2012,6.1.2.3 < 13/02/2012,6.1.2.3"}));
    EXPECT_FALSE(IsInfNewer(later, first));
    EXPECT_EQ(capture.Take().at(1), "13/02/2012,6.1.2.3 > 13/01/2012,6.1.2.3");
    EXPECT_TRUE(IsInfNewer(later, higher));
    EXPECT_FALSE(IsInfNewer(higher, later));
    EXPECT_FALSE(IsInfNewer(first, first));
    EXPECT_TRUE(IsInfNewer(nothing, first));
    EXPECT_TRUE(IsInfNewer(mScratch.Path("missing.inf"), first));
    EXPECT_FALSE(IsInfNewer(first, nothing));
    EXPECT_FALSE(IsInfNewer(nothing, nothing));
}

TEST_F(VersionCompare, ARefusedInfDatePassesAndTheRedirectionIsOnAgain)
{
    const std::string bad = File("bad.inf", "[Version]\r\nDriverVer=13/01/2012,6.1.2.3\r\n", 1);
    const bool redirected = RealFoldersShow() == "Yes";
    EXPECT_THROW(IsInfNewer(bad, bad), CDriverDateException);
    if (redirected) {
        // With redirection on, a 32-bit program finds its own kernel32 under the name of the system folder.
        char system[MAX_PATH];
        char behind[MAX_PATH];
        const std::string seen(system, GetSystemDirectoryA(system, sizeof system));
        const std::string real(behind, GetSystemWow64DirectoryA(behind, sizeof behind));
        EXPECT_TRUE(ReadBytes(seen + "\\kernel32.dll") == ReadBytes(real + "\\kernel32.dll"));
    }
}

} // namespace
