// Others look at the files of a package while it is run.
#include <memory>

#include "Fixture.h"

namespace {

// A group that goes on when the test says so.
const char kUntilTold[] = "<wait>Delay;50\nNotExist;go;<wait>\nLog;behind";

TEST(SharedFiles, AreWaitedForAndThenTaken)
{
    Package package;
    package.Steps("Exist;^WORD^;<none>\nLog;ran");
    package.File("words.dat", "[en]\r\nWORD=no file\r\n");
    package.Script(ReadText(package.Path("installer.dat")).insert(6, "\r\nInclude=.\\\\words.dat"));
    for (const std::string &held :
         {package.Path("installer.dat"), package.Path("words.dat"), package.Temp("TavixInstallI.txt")}) {
        package.InputResponse("/command Install");
        auto lock = std::make_unique<LockedFile>(held);
        ASSERT_TRUE(lock->Held());
        RunningSetup run = package.Start("/s");
        Sleep(1000);
        lock.reset();
        const RunResult result = run.Wait();
        EXPECT_EQ(result.mExitCode, 0u) << held << result.mTraceText;
        EXPECT_EQ(Logged(result), std::vector<std::string>{"ran"}) << held;
        EXPECT_TRUE(HasInOrder(result, {"command: Install", "File no file, *"})) << held;
        EXPECT_EQ(CountRecords(result, "*in use*"), 0u) << held;
    }
}

TEST(SharedFiles, CountAsMissingAfterThreeSecondsOnceAndMissingOnesAtOnce)
{
    Package held;
    Package missing;
    held.Steps("");
    missing.Steps("Command;!x!;none.dat\nRegValueFromFile;none.dat;v;HKEY_CURRENT_USER\\\\x");
    missing.Script(ReadText(missing.Path("installer.dat")).insert(6, "\r\nInclude=.\\\\none.dat"));
    const LockedFile lock(held.Path("installer.dat"));
    const DWORD begin = GetTickCount();
    const RunResult lost = held.Run();
    const DWORD spent = GetTickCount() - begin;
    EXPECT_EQ(lost.mExitCode, 1u);
    EXPECT_TRUE(HasInOrder(lost, {"File .\\installer.dat is in use, taken for missing after 3* ms, 32",
                                  "CheckConfigFile*", "Version mismatch: *"}))
        << lost.mTraceText;
    EXPECT_EQ(CountRecords(lost, "*in use*"), 1u);
    EXPECT_GE(spent, 3000u);
    EXPECT_LT(spent, 6000u); // not at each of the reads
    EXPECT_EQ(CountRecords(missing.Run(), "*in use*"), 0u);
}

TEST(SharedFiles, OfTenStartsAtOnceNineFindTheFirstOneRunning)
{
    Package package;
    package.Steps(kUntilTold).TraceAt(package.Path("trace*.txt"));
    std::vector<RunningSetup> runs;
    for (int i = 0; i < 10; ++i) {
        runs.push_back(package.Start("/s /d trace"));
    }
    // The one that runs waits until the others have ended, however long that takes here.
    const auto refusals = [&] {
        size_t count = 0;
        for (const std::string &name : Tree(package.Folder())) {
            const bool trace = Fits("trace*.txt", name);
            count += trace && ReadText(package.Path(name)).find("Already running") != std::string::npos ? 1 : 0;
        }
        return count;
    };
    for (int i = 0; i < 200 && refusals() < 9; ++i) {
        Sleep(200);
    }
    package.File("go", "");
    size_t ran = 0;
    size_t refused = 0;
    for (RunningSetup &run : runs) {
        const RunResult result = run.Wait(60000);
        ran += Logged(result) == std::vector<std::string>{"behind"} ? 1 : 0;
        refused += CountRecords(result, "*Already running*");
        EXPECT_EQ(CountRecords(result, "Version mismatch*") + CountRecords(result, "Driver type not*"), 0u);
    }
    EXPECT_EQ(ran, 1u);
    EXPECT_EQ(refused, 9u);
}

} // namespace
