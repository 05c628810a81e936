// Files in use: what a script's copies and deletions leave to the next start of Windows.
#include "Fixture.h"
#include "PendingRenames.h"

namespace {

// Has Wine do what Windows does with the list at its start.
bool RestartWindows()
{
    char command[] = "wineboot.exe -r";
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process)) {
        return false;
    }
    const bool ended = WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return ended;
}

} // namespace

TEST(FilesReboot, CopyOntoFilesInUseTakesPlaceAtTheNextStart)
{
    const PendingRenames pending;
    Package package;
    package.File("new", "new").File("foo.dll", "old").File("foo.dlm", "old too");
    const std::string folder = package.Folder() + "\\";
    {
        const LockedFile first(package.Path("foo.dll"));
        const LockedFile second(package.Path("foo.dlm"));
        const RunResult run = package
                                  .Steps("CopyFile;new;.\\\\foo.dll\nCopyFileRedir;new;.\\\\foo.dlm\n"
                                         "IfRebootRequired;<marked>\nDONE\n<marked>Log;marked")
                                  .Run();
        EXPECT_EQ(run.mExitCode, 2u);
        EXPECT_EQ(run.mOutputFile, "2");
        EXPECT_TRUE(
            HasInOrder(run, {"Source new, Destination .\\foo.dll, 64 *", ", Reboot .\\foo.dln, Move Yes *",
                             "Source new, Destination .\\foo.dlm", ", Reboot .\\foo.dlo, Move Yes *", "marked"}));
    }
    EXPECT_EQ(ReadText(package.Path("foo.dll")), "old");
    EXPECT_EQ(PendingRenames::List(),
              (std::vector<std::string>{folder + "foo.dll", "", folder + "foo.dln", folder + "foo.dll",
                                        folder + "foo.dlm", "", folder + "foo.dlo", folder + "foo.dlm"}));
    if (OnWine()) {
        ASSERT_TRUE(RestartWindows());
        EXPECT_EQ(ReadText(package.Path("foo.dll")), "new");
        EXPECT_EQ(ReadText(package.Path("foo.dlm")), "new");
        EXPECT_FALSE(FileExists(package.Path("foo.dln")));
        EXPECT_FALSE(FileExists(package.Path("foo.dlo")));
        EXPECT_TRUE(PendingRenames::List().empty());
    }
}

TEST(FilesReboot, DeletionsDifferInWhetherTheyAskForTheStart)
{
    const struct {
        const char *mCommand;
        DWORD mExitCode;
        std::vector<std::string> mMessages;
    } rows[] = {
        {"DeleteFile", 2, {"File .\\used, 64 *", ", Reboot Yes 32"}},
        {"DeleteFileRedir", 2, {"File .\\used", ", Reboot Yes 32"}},
        {"DeleteFileReboot", 0, {"File .\\used", ", Reboot Yes *"}},
        {"DeleteDirContents", 0, {"Directory .\\used, Emptied No *"}}, // a file, and nothing is put off
        {"DeleteDir", 0, {"Directory .\\used, Removed No *"}},
    };
    for (const auto &row : rows) {
        const PendingRenames pending;
        Package package;
        package.File("used", "");
        const LockedFile lock(package.Path("used"));
        const RunResult run = package.Steps(std::string(row.mCommand) + ";.\\\\used").Run();
        EXPECT_EQ(run.mExitCode, row.mExitCode) << row.mCommand;
        EXPECT_TRUE(HasInOrder(run, row.mMessages)) << row.mCommand;
        EXPECT_EQ(PendingRenames::List().empty(), !Has(run, ", Reboot Yes *")) << row.mCommand;
        EXPECT_TRUE(FileExists(package.Path("used"))) << row.mCommand;
    }
}
