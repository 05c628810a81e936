// A user who is no administrator: an elevated process does the run, or the run is refused.
#include "Fixture.h"

#include "WithoutRights.h"

namespace {

const char kNotAdmin[] = "User is not admin";
const char kLaunch[] = "Launching elevated process and exiting";

void Stage(Package &package, const std::string &main = "")
{
    package.Script("[MAIN]\nVersion=1.10.01\nPrefType=Pen_Tablet\nLanguages=English\n" + main +
                   "[Install]\nLog;ran Install\n[Uninstall]\nLog;ran Uninstall\nSetRebootFlag\n[Elevate]\nLog;ran "
                   "Elevate\n");
}

// The one process that ran elevated, with its trace in the place of the run's own.
RunResult Child(const WithoutRightsResult &run)
{
    RunResult child;
    EXPECT_EQ(run.mOtherTraces.size(), 1u);
    if (!run.mOtherTraces.empty()) {
        child.mTrace = run.mOtherTraces.front();
    }
    return child;
}

TEST(Elevation, TheElevatedProcessGetsTheResponseTextTakesTheMutexAndDoesTheRun)
{
    Package package;
    Stage(package);
    package.InputResponse("/command Elevate");
    const WithoutRightsResult run = RunWithoutRights(package, "/silent");
    EXPECT_EQ(run.mParent.mExitCode, 0u);
    EXPECT_EQ(run.mParent.mOutputFile, "0");
    EXPECT_TRUE(HasInOrder(run.mParent, {"User Admin Type 0", "command: Elevate", "Silent install requested",
                                         "Using mCommand Elevate;*", kNotAdmin, kLaunch, "Resultcode=0"}));
    EXPECT_TRUE(Lacks(run.mParent, "Executing steps*"));
    const RunResult child = Child(run);
    EXPECT_TRUE(
        HasInOrder(child, {"User Admin Type 1", "command: Elevate", "Silent install requested", "ran Elevate"}));
    EXPECT_TRUE(Lacks(child, "*Already running*"));
}

TEST(Elevation, FromVistaOnTheExitCodeOfTheElevatedProcessIsPassedOn)
{
    SKIP_UNLESS_WINE();
    for (const char *name : {"vista", "win7", "win8", "win81"}) {
        SCOPED_TRACE(name);
        const WindowsVersion version(name);
        Package package;
        Stage(package);
        const WithoutRightsResult run = RunWithoutRights(package, "/s /u");
        EXPECT_EQ(run.mParent.mExitCode, 2u);
        EXPECT_EQ(run.mParent.mOutputFile, "2");
        EXPECT_TRUE(HasInOrder(run.mParent, {kNotAdmin, kLaunch}));
        EXPECT_TRUE(Has(Child(run), "ran Uninstall"));
    }
}

TEST(Elevation, AProcessThatCannotBeStartedIsExitCodeFiveWhichNothingSuppresses)
{
    for (const char *tail : {"/s", "/s /suppress-error"}) {
        SCOPED_TRACE(tail);
        Package package;
        Stage(package);
        // The shell refuses a program that is not there any more.
        const WithoutRightsResult run = RunWithoutRights(package, tail, [&package] {
            EXPECT_TRUE(MoveFileA(package.Path("TavixSetup.exe").c_str(), package.Path("gone.exe").c_str()));
        });
        EXPECT_EQ(run.mParent.mExitCode, 5u);
        EXPECT_EQ(run.mParent.mOutputFile, "5");
        EXPECT_TRUE(HasInOrder(run.mParent, {kNotAdmin, kLaunch, "Resultcode=5"}));
        EXPECT_TRUE(run.mOtherTraces.empty());
    }
}

TEST(Elevation, OnXPTheRunIsRefused)
{
    SKIP_UNLESS_WINE();
    const WindowsVersion version("winxp64");
    for (const char *tail : {"/s", "/s /u"}) {
        SCOPED_TRACE(tail);
        Package package;
        Stage(package);
        const WithoutRightsResult run = RunWithoutRights(package, tail);
        EXPECT_EQ(run.mParent.mExitCode, 1u);
        EXPECT_TRUE(Has(run.mParent, kNotAdmin));
        EXPECT_TRUE(Lacks(run.mParent, kLaunch));
        EXPECT_TRUE(Lacks(run.mParent, "Executing steps*"));
        EXPECT_TRUE(run.mOtherTraces.empty());
    }
}

TEST(Elevation, MissingHardwareIsToldWithoutAskingForRights)
{
    Package package;
    Stage(package, "ISD=1\n");
    const WithoutRightsResult run = RunWithoutRights(package, "/s");
    EXPECT_EQ(run.mParent.mExitCode, 65u);
    EXPECT_TRUE(Lacks(run.mParent, kNotAdmin));
    EXPECT_TRUE(run.mOtherTraces.empty());
}

TEST(ElevationWin32Prefix, AnUnknownWindowsComesBeforeTheRightsAndOnceAllowedIsNotElevated)
{
    SKIP_UNLESS_WINE();
    const WindowsVersion version("win2k");
    Package package;
    Stage(package);
    const WithoutRightsResult refused = RunWithoutRights(package, "/s");
    EXPECT_EQ(refused.mParent.mExitCode, 33u);
    EXPECT_TRUE(Lacks(refused.mParent, kNotAdmin));

    Package allowed;
    Stage(allowed, "OBSOS_OVERRIDE=1\n");
    const WithoutRightsResult run = RunWithoutRights(allowed, "/s");
    EXPECT_EQ(run.mParent.mExitCode, 1u);
    EXPECT_TRUE(Has(run.mParent, kNotAdmin));
    EXPECT_TRUE(Lacks(run.mParent, kLaunch));
    EXPECT_TRUE(run.mOtherTraces.empty());
}

} // namespace
