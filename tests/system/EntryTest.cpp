// What a run does while it runs; all else about it is told in the pages of cases.
#include "Fixture.h"

namespace {

TEST(Entry, HoldsItsMutexWhileItRunsAndNoLonger)
{
    const char *const name = "Global\\TvxInstallerRunningMutex";
    Package package;
    package.Steps("Delay;1500");
    const DWORD start = GetTickCount();
    RunningSetup first = package.Start("/s");
    HANDLE mutex = nullptr;
    for (int i = 0; i < 100 && mutex == nullptr; ++i) {
        Sleep(10);
        mutex = OpenMutexA(SYNCHRONIZE, FALSE, name);
    }
    EXPECT_NE(mutex, nullptr);
    CloseHandle(mutex);
    EXPECT_EQ(first.Wait().mExitCode, 0u);
    EXPECT_GE(GetTickCount() - start, 1500u);
    EXPECT_EQ(OpenMutexA(SYNCHRONIZE, FALSE, name), nullptr);
}

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

} // namespace
