// What others do to a run while it runs: files held and let go, links and strangers' files in the temporary folder, a
// full disk, ten starts at once; and what stands in front of the records of a trace.
#include "Fixture.h"

namespace {

TEST(Entry, BreakWaitsForItsBoxInASilentRunToo)
{
    Package package;
    package.Steps("Break\nCopyFile;installer.dat;behind");
    RunningSetup run = package.Start("/s");
    HWND box = nullptr;
    for (int i = 0; i < 500 && box == nullptr; ++i) {
        Sleep(10);
        box = FindWindowA("#32770", "BREAK");
    }
    ASSERT_NE(box, nullptr);
    Sleep(200);
    EXPECT_FALSE(FileExists(package.Path("behind")));
    PostMessageA(box, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.Wait().mExitCode, 0u);
    EXPECT_TRUE(FileExists(package.Path("behind")));
}

TEST(Waiting, ACopyThatFindsNoPlaceTellsItOnceAndGoesOnWhenThereIsOne)
{
    Package package;
    package.File("new", "new").File("old", "old");
    auto source = std::make_unique<LockedFile>(package.Path("new"));
    const LockedFile target(package.Path("old"));
    ASSERT_TRUE(source->Held() && target.Held());
    const RegistrySnapshot pending(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Session Manager");
    RunningSetup run = package.Steps("CopyFile;new;old\nLog;behind").Start("/s");
    Sleep(2500); // several rounds of names, with a pause between two
    source.reset();
    const RunResult result = run.Wait();
    EXPECT_EQ(result.mExitCode, 2u);
    EXPECT_EQ(CountRecords(result, ", No place beside old, waiting for one 32"), 1u) << result.mTraceText;
    EXPECT_EQ(CountRecords(result, ", Reboot ol*, Move Yes *"), 1u);
    EXPECT_EQ(Logged(result), std::vector<std::string>{"behind"});
}

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

TEST(SharedFiles, CountAsMissingAfterThreeSecondsOnce)
{
    Package held;
    held.Steps("");
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

TEST(TempFolder, AStrangersResponseIsNotTaken)
{
    Package package;
    package.Steps("Log;ran").InputResponse("/debug evil.txt ");
    if (!OnHost("chown 12345 '" + HostPath(package.Temp("TavixInstallI.txt")) + "'")) {
        GTEST_SKIP() << "files cannot be given away here";
    }
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {"File *TavixInstallI.txt is a link or somebody else's, not read", "ran"}))
        << run.mTraceText;
    EXPECT_FALSE(FileExists(package.Path("evil.txt")));
    EXPECT_FALSE(FileExists(package.Temp("TavixInstallI.txt")));
}

TEST(TempFolder, NothingIsWrittenThroughALink)
{
    Package package;
    package.Steps("<wait>Delay;50\nNotExist;go;<wait>").File("other", "other").File("mine", "/command None");
    const std::string output = package.Temp("TavixInstallO.txt");
    const std::string other = package.Path("other");
    CreateHardLinkA(package.Temp("TavixInstallI.txt").c_str(), package.Path("mine").c_str(), nullptr);
    RunningSetup run = package.Start("/s");
    for (int i = 0; i < 600 && FileExists(output); ++i) {
        Sleep(50); // the outcome of an earlier run goes first of all
    }
    EXPECT_FALSE(FileExists(output));
    EXPECT_TRUE(CreateHardLinkA(output.c_str(), other.c_str(), nullptr));
    package.File("go", "");
    const RunResult result = run.Wait();
    EXPECT_EQ(result.mExitCode, 0u);
    EXPECT_EQ(result.mOutputFile, "0");
    EXPECT_EQ(ReadText(other), "other");
    EXPECT_EQ(CountRecords(result, "File *TavixInstallI.txt is a link or somebody else's, not read"), 1u);
    EXPECT_EQ(ReadText(package.Path("mine")), "/command None");
}

// The process is made and its number known before its first instruction.
TEST(TempFolder, TheDefaultTraceIsNotWrittenThroughALink)
{
    for (const bool writable : {false, true}) {
        Package package;
        package.Steps("Log;ran").File("other", "other");
        if (writable && !OnHost("chmod 777 '" + HostPath(package.Temp()) + "'")) {
            GTEST_SKIP() << "a folder cannot be opened to others here";
        }
        RunningSetup run = package.Start("/s", CREATE_SUSPENDED);
        const std::string trace = package.Temp("Install" + std::to_string(run.ProcessId()) + ".txt");
        const std::string other = package.Path("other");
        // A symbolic link of the host is one that no call of Windows shows here; only the open folder is told apart.
        EXPECT_TRUE(writable ? OnHost("ln -s '" + HostPath(other) + "' '" + HostPath(trace) + "'")
                             : CreateHardLinkA(trace.c_str(), other.c_str(), nullptr) != FALSE);
        ResumeThread(run.Thread());
        EXPECT_EQ(run.Wait().mExitCode, 0u);
        EXPECT_EQ(ReadText(other), "other") << writable;
        EXPECT_NE(ReadText(trace).find("ran"), std::string::npos) << writable;
    }
}

TEST(FullDisk, LeavesNoPieceAndTakesTheOldFileForItsRoomOnlyWhenItHasTo)
{
    Package package;
    MakeFolders(package.Path("disk"));
    const std::string disk = HostPath(package.Path("disk"));
    if (!OnHost("mount -t tmpfs -o size=1m none '" + disk + "'")) {
        GTEST_SKIP() << "no small disk can be mounted here";
    }
    package.File("large", std::string(700000, 'l')).File("huge", std::string(2000000, 'h'));
    package.File("disk\\old", std::string(700000, 'o')).File("disk\\small", "old");
    package.Steps("CopyFile;huge;disk\\\\new\nCopyFile;installer.dat;disk\\\\small\nCopyFile;large;disk\\\\old");
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {", New, Copied No *", ", Deleted, Copyed Yes 0", ", Deleted, Copyed Yes 0"}))
        << run.mTraceText;
    EXPECT_EQ(Tree(package.Path("disk")), (std::vector<std::string>{"old", "small"}));
    EXPECT_TRUE(ReadText(package.Path("disk\\old")) == std::string(700000, 'l'));
    EXPECT_EQ(ReadText(package.Path("disk\\small")), ReadText(package.Path("installer.dat")));
    // Not even the room of the old file is enough.
    EXPECT_TRUE(HasInOrder(package.Steps("CopyFile;huge;disk\\\\old").Run(), {", Deleted, Copyed No 0"}));
    EXPECT_EQ(Tree(package.Path("disk")), std::vector<std::string>{"small"});
    EXPECT_TRUE(OnHost("umount -l '" + disk + "'"));
}

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
    EXPECT_NE(last.substr(0, 8), run.mTrace.front().mTime.substr(0, 8)); // the seconds go on
    EXPECT_EQ(run.mTraceText.size(), length) << run.mTraceText; // nothing else, and every record has its line end
    EXPECT_TRUE(HasInOrder(run, {header, "before", "behind", "Resultcode=0"}));
}

} // namespace
