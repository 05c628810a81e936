// From the process start to its end: response files, the order of the run, the ways out with their codes.
#include "Fixture.h"

namespace {

const char kMutex[] = "Global\\TvxInstallerRunningMutex";

TEST(Entry, InputResponseStandsInFrontOfTheCommandLine)
{
    static const struct {
        const char *file;
        const char *command; // the value of /command that arrives
    } kCases[] = {
        {"/command abcdefg", "abcdefg"},                                 // 16 characters
        {"/command abcdefgWXYZ", "abcdefgWXYZmand"},                     // 20: 12 of the first 16 come once more
        {"/command abcdefghijklmnopqrstuvw", "abcdefghijklmnopqrstuvw"}, // 32
        {"/command", "tail"},                                            // one blank parts it from the tail
    };
    for (const auto &test : kCases) {
        Package package;
        package.Steps("Log;default group").InputResponse(test.file);
        const RunResult run = package.RunPlain("tail /s");
        EXPECT_TRUE(
            HasInOrder(run, {"Execute a command", std::string("command: ") + test.command, "Silent install requested",
                             std::string("Executing steps for group ") + test.command}));
        EXPECT_FALSE(FileExists(package.Temp("TavixInstallI.txt"))) << test.file;
    }
}

TEST(Entry, AnEmptyInputResponseIsDeletedAndChangesNothing)
{
    Package package;
    package.Steps("Log;default group").InputResponse("");
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {"Executing steps for group Install", "default group"}));
    EXPECT_FALSE(FileExists(package.Temp("TavixInstallI.txt")));
}

TEST(Entry, AnInputResponseInUseIsLeftAlone)
{
    Package package;
    package.Steps("Log;default group").InputResponse("/command Other");
    const LockedFile lock(package.Temp("TavixInstallI.txt"));
    ASSERT_TRUE(lock.Held());
    const RunResult run = package.Run();
    EXPECT_EQ(run.mOutputFile, "0");
    EXPECT_TRUE(Has(run, "Executing steps for group Install"));
    EXPECT_TRUE(FileExists(package.Temp("TavixInstallI.txt")));
}

TEST(Entry, AnOutputResponseThatCannotBeWrittenChangesNothing)
{
    Package package;
    package.Steps("SetRebootFlag");
    RunningSetup started = package.Start("/s"); // makes the older file that is locked here
    EXPECT_EQ(started.Wait().mOutputFile, "2");
    SetFileAttributesA(package.Temp("TavixInstallO.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(package.Run().mExitCode, 2u);
    SetFileAttributesA(package.Temp("TavixInstallO.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
}

// One run from end to end, in the order of its records.
TEST(Entry, TheOrderOfARun)
{
    Package package;
    package.File("installer.dat", "[MAIN]\r\nVersion=1.10.01\r\nPrefType=ISD_Touch\r\nLanguages=en\r\n"
                                  "[STATIC_FLAGS]\r\nA=1\r\n[Install]\r\nCheckFlag;A;1\r\n");
    const RunResult run = package.Run("/suppress-error");
    EXPECT_TRUE(
        HasInOrder(run, {"Sending trace to file " + package.Temp("Install") + "*.txt", "TAVIXSETUP.EXE */*/* *:*",
                         "OSPlatform *", "User Admin Type *", "Language is en",
                         "mDriverType == EDriverISDTouch || mDriverType == EDriverDEBUG", "Silent install requested",
                         "Suppressing return error codes", "Using mCommand Install; ink *, TE no, 64 *", "DoWork",
                         "Executing steps for group Install", "Instruction CheckFlag", ", A = 1, goto step",
                         ", True goto label ", "[Response Result]", "Resultcode=512"}))
        << run.mTraceText;
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_EQ(run.mOutputFile, "0");
}

struct WayOut {
    const char *name;
    const char *main; // lines of MAIN, group Install behind them where one is needed
    const char *tail;
    DWORD code;
    const char *record;
};

void PrintTo(const WayOut &test, std::ostream *out)
{
    *out << test.name;
}

class WaysOut : public ::testing::TestWithParam<WayOut> {};

TEST_P(WaysOut, CodeAndOutputFile)
{
    const WayOut &way = GetParam();
    Package package;
    package.Script(std::string("[MAIN]\nLanguages=en\n") + way.main);
    const RunResult run = package.Run(way.tail);
    EXPECT_EQ(run.mExitCode, way.code);
    EXPECT_EQ(run.mOutputFile, std::to_string(way.code));
    EXPECT_TRUE(Has(run, way.record));
}

#define FIT "Version=1.10.01\nPrefType=Pen_Tablet\n"
INSTANTIATE_TEST_SUITE_P(
    Entry, WaysOut,
    ::testing::Values(
        WayOut{"Done", FIT "[Install]\nLog;x\n", "", 0, "Resultcode=0"},
        WayOut{"NoSuchGroup", FIT, "", 0, "Executing steps for group Install"},
        WayOut{"RebootRequired", FIT "[Install]\nSetRebootFlag\n", "", 2, "Reboot requested from the script"},
        WayOut{"RebootOfAnInnerGroup", FIT "[Install]\n!In!\nDONE\n[In]\nSetRebootFlag\nDONE", "", 2, "Resultcode=2"},
        WayOut{"RebootSuppressed", FIT "[Install]\nSetRebootFlag\n", "/suppress-error", 0, "Resultcode=514"},
        WayOut{"Uninstall", FIT "[Uninstall]\nSetRebootFlag\n", "/u", 2, "Executing steps for group Uninstall"},
        WayOut{"UnknownCommand", FIT "[Install]\nNoSuchCommand;1\n", "", 0, "Instruction NoSuchCommand"},
        WayOut{"VersionMissing", "PrefType=Pen_Tablet\n", "", 1, "Version mismatch: exe-1.10.01, dat-"},
        WayOut{"VersionOther", "Version=1.20.01\nPrefType=Pen_Tablet\n", "", 1,
               "Version mismatch: exe-1.10.01, dat-1.20.01"},
        WayOut{"VersionNotSuppressed", "Version=2\n", "/suppress-error", 1, "Resultcode=1"},
        WayOut{"TypeMissing", "Version=1.10.01\n", "", 1, "Driver type not recognized: []"},
        WayOut{"TypeUnknown", "Version=1.10.01\nPrefType=Pen_Tablets\n", "", 1,
               "Driver type not recognized: [Pen_Tablets]"},
        WayOut{"Hex", FIT "[Install]\nSetRebootFlag\n", "/hex nosuchfile", 1, "Convert a file to hex"},
        WayOut{"NoIsdHardware", FIT "ISD=1\n[Install]\nSetRebootFlag\n", "", 65, "Resultcode=65"},
        WayOut{"NoIsdHardwareSuppressed", FIT "ISD=1\n", "/suppress-error", 0, "Resultcode=577"}),
    [](const auto &test) { return test.param.name; });
#undef FIT

TEST(Entry, RefusesASecondRun)
{
    Package package;
    package.Steps("Log;ran");
    {
        const HeldMutex held(kMutex);
        const RunResult run = package.Run();
        EXPECT_EQ(run.mExitCode, 1u);
        EXPECT_EQ(run.mOutputFile, "1");
        EXPECT_TRUE(Has(run, "!\"Already running\""));
        EXPECT_TRUE(Lacks(run, "Executing steps*"));
    }
    EXPECT_TRUE(Has(package.Run(), "ran"));
}

TEST(Entry, HoldsItsMutexWhileItRunsAndNoLonger)
{
    Package package;
    package.Steps("Delay;1500");
    RunningSetup first = package.Start("/s");
    HANDLE mutex = nullptr;
    for (int i = 0; i < 100 && mutex == nullptr; ++i) {
        Sleep(10);
        mutex = OpenMutexA(SYNCHRONIZE, FALSE, kMutex);
    }
    EXPECT_NE(mutex, nullptr);
    CloseHandle(mutex);
    EXPECT_EQ(first.Wait().mExitCode, 0u);
    EXPECT_EQ(OpenMutexA(SYNCHRONIZE, FALSE, kMutex), nullptr);
}

TEST(Entry, VersionComparesFourCharacters)
{
    static const struct {
        const char *version;
        bool passes;
    } kCases[] = {
        {"1.10", true},     {"1.10.01", true}, {"1.10.99", true}, {"1.10x", true}, {"1.100", true},
        {"1.1", false},     {"1.1 ", false},   {"1.11", false},   {" 1.10", true}, // the platform drops blanks
        {"\"1.10\"", true}, {"01.10", false},  {"1.", false}};
    for (const auto &test : kCases) {
        Package package;
        package.Script(std::string("[MAIN]\nPrefType=Pen_Tablet\nLanguages=en\nVersion=") + test.version);
        const RunResult run = package.Run();
        EXPECT_EQ(run.mExitCode, test.passes ? 0u : 1u) << test.version;
        EXPECT_EQ(CountRecords(run, "Version mismatch*"), test.passes ? 0u : 1u) << test.version;
    }
}

TEST(Entry, EachDriverTypeHasItsRecord)
{
    static const struct {
        const char *prefType;
        const char *name;
    } kCases[] = {{"Pen_Tablet", nullptr},         {"PEN_TABLET", nullptr},          {"Tavix_Tablet", "EDriverProPen"},
                  {"ISD_Tablet", "EDriverISDPen"}, {"Pen_Touch", "EDriverConTouch"}, {"tavix_touch", "EDriverProTouch"},
                  {"ISD_Touch", "EDriverISDTouch"}};
    for (const auto &test : kCases) {
        Package package;
        package.Script(std::string("[MAIN]\nVersion=1.10\nLanguages=en\nPrefType=") + test.prefType +
                       "\n[Install]\nLog;ran");
        const RunResult run = package.Run();
        EXPECT_TRUE(Has(run, "ran"));
        if (test.name == nullptr) {
            EXPECT_TRUE(Lacks(run, "mDriverType == *"));
        } else {
            EXPECT_TRUE(Has(run, std::string("mDriverType == ") + test.name + " || mDriverType == EDriverDEBUG"));
            EXPECT_EQ(CountRecords(run, "mDriverType == *"), 1u);
        }
    }
}

TEST(Entry, WorkingOverrideMovesTheRun)
{
    Package package;
    Package elsewhere;
    elsewhere.Steps("Exist;here.txt").File("here.txt", "x");
    package.Steps("Log;own script");
    Settings settings;
    // Read with escapes: a single back-slash would be consumed.
    settings.Text("WorkingOverride", Escaped(elsewhere.Folder()));
    const RunResult run = package.Run();
    EXPECT_TRUE(Has(run, "here.txt Exists"));
    EXPECT_TRUE(Lacks(run, "own script"));
}

TEST(Entry, WorksInTheFolderOfTheModuleWhereverItIsStarted)
{
    Package package;
    package.Steps("Exist;here.txt").File("here.txt", "x").StartedIn("C:\\");
    EXPECT_TRUE(Has(package.Run(), "here.txt Exists"));
}

TEST(Entry, ImportsTheRegistryFileOfAnOem)
{
    const RegistrySnapshot snapshot(HKEY_CURRENT_USER, "Software\\TavixOemTest");
    RemoveKey(HKEY_CURRENT_USER, "Software\\TavixOemTest");
    Package package;
    package.Steps("Log;x").File("oemextra.reg",
                                "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\TavixOemTest]\r\n\"a\"=\"b\"\r\n");
    EXPECT_EQ(package.Run().mExitCode, 0u);
    // Nobody waits for the import.
    for (int i = 0; i < 200 && ReadRegText(HKEY_CURRENT_USER, "Software\\TavixOemTest", "a") != "b"; ++i) {
        Sleep(25);
    }
    EXPECT_EQ(ReadRegText(HKEY_CURRENT_USER, "Software\\TavixOemTest", "a"), "b");
}

// Under the uninstaller's name the program installs all the same, unless an option says otherwise.
TEST(Entry, TheNameRemoveAloneIsNoRole)
{
    Package package;
    package.Steps("Log;installs", "[Uninstall]\nLog;removes").Program("Remove.exe");
    EXPECT_TRUE(HasInOrder(package.Run(), {"REMOVE.EXE *", "installs"}));
    EXPECT_TRUE(Has(package.Run("/u"), "removes"));
    EXPECT_TRUE(Lacks(package.Run(), "File run as remove"));
}

} // namespace
