// What others leave in the temporary folder under the names of this program, and a disk without room.
#include "Fixture.h"

namespace {

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

} // namespace
