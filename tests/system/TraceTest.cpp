// The trace file: its name, what gets into it, its records, and where it ends up.
#include "Fixture.h"

#include <regex>

namespace {

// What the installer says about its trace file, and nothing else decides a name: the tail of the command line, the
// setting TraceFileName and the file that has to appear ("*" for the process id, folders below the package's).
TEST(Trace, FileName)
{
    static const struct {
        const char *tail;
        const char *setting;
        const char *file; // null for the default one in the folder of temporary files
    } kCases[] = {
        {"/s", "", nullptr},
        {"/s /debug", "", nullptr},
        {"/s -d", "", nullptr},
        {"/debug run /s", "", "run*.txt"},
        {"/d run.log /s", "", "run.log"},
        {"-D \"my run\" /s", "", "my run*.txt"},
        {"/debug sub.dir\\run /s", "", "sub.dir\\run"}, // a point in a folder's name counts, too
        {"/d .\\run /s", "", ".\\run"},
        {"/d a.log /d b.log /s", "", "a.log"}, // the first one decides
        {"/s", "setting", "setting*.txt"},
        {"/s", "setting.log", "setting.log"},
        {"/s", "new\\trace.log", "new\\trace.log"}, // read raw: no escapes
        {"/d run.log /s", "setting.log", "run.log"},
    };
    for (const auto &test : kCases) {
        Settings settings;
        if (test.setting[0] != '\0') {
            settings.Text("TraceFileName", test.setting);
        }
        Package package;
        package.Steps("Log;here").File("sub.dir\\x", "").File("new\\x", "");
        if (test.file != nullptr) {
            package.TraceAt(package.Path(test.file));
        }
        const RunResult run = package.RunPlain(test.tail);
        EXPECT_TRUE(HasInOrder(run, {"Sending trace to file *", "here", "Resultcode=0"})) << test.tail;
        EXPECT_EQ(FileExists(package.Temp("Install" + std::to_string(run.mProcessId) + ".txt")), test.file == nullptr)
            << test.tail;
    }
}

TEST(Trace, TheSettingExpandsTheEnvironmentWhenItsTypeSaysSo)
{
    Settings settings;
    settings.Text("TraceFileName", "%TMP%\\expanded.log", REG_EXPAND_SZ);
    Package package;
    package.Steps("Log;here").TraceAt(package.Temp("expanded.log"));
    EXPECT_TRUE(HasInOrder(package.Run(), {"Sending trace to file " + package.Temp("expanded.log"), "here"}));
}

TEST(Trace, AFileThatCannotBeOpenedDoesNotStopTheRun)
{
    Package package;
    package.Steps("CreateDir;.\\\\made").TraceAt(package.Path("nosuch\\trace.txt"));
    const RunResult run = package.Run("/d nosuch\\trace.txt");
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_EQ(run.mOutputFile, "0");
    EXPECT_TRUE(run.mTrace.empty());
    EXPECT_TRUE(FolderExists(package.Path("made")));
}

TEST(Trace, Threshold)
{
    static const struct {
        DWORD level;
        const char *tail;
        std::vector<std::string> present;
        std::vector<std::string> absent;
    } kCases[] = {
        {0, "", {"OSPlatform *", "Executing steps*", "Instruction Log", "word"}, {"Diagnostic level*"}},
        {1,
         "",
         {"Sending trace*", "Diagnostic level set to 1", "OSPlatform *"},
         {"Language is*", "Executing steps*", "Instruction*", "word", "Resultcode*"}},
        {7,
         "",
         {"Diagnostic level set to 7", "Language is*", "DoWork", "Executing steps*"},
         {"Instruction*", "word", "Resultcode*", "Silent install*"}},
        {8, "", {"Instruction Log", "word", "Resultcode=0"}, {}},
        // The option adds 100, and the setting replaces that.
        {0, "/debug", {"Instruction Log", "word"}, {"Diagnostic level*"}},
        {7, "/debug", {"Diagnostic level set to 7", "DoWork"}, {"Instruction*", "word"}},
        {5, "", {"Diagnostic level set to 5"}, {"Language is*", "DoWork"}},
    };
    for (const auto &test : kCases) {
        Settings settings;
        settings.Number("DiagnosticLevel", test.level);
        Package package;
        package.Steps("Log;word");
        const RunResult run = package.Run(test.tail);
        for (const std::string &record : test.present) {
            EXPECT_TRUE(Has(run, record)) << test.level << " " << test.tail;
        }
        for (const std::string &record : test.absent) {
            EXPECT_TRUE(Lacks(run, record)) << test.level << " " << test.tail;
        }
    }
}

TEST(Trace, TheOutputSwitchTakesTheDirectRecordsOnly)
{
    Settings settings;
    settings.Number("TraceToDebugOut", 0);
    Package package;
    package.Steps("Log;word");
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {"OSPlatform *", "word", "Resultcode=0"}));
    EXPECT_TRUE(Lacks(run, "Sending trace*"));
    EXPECT_TRUE(Lacks(run, "TAVIXSETUP.EXE *"));
}

TEST(Trace, RecordFormat)
{
    Package package;
    package.Steps("Log;word");
    const RunResult run = package.Run();
    ASSERT_FALSE(run.mTraceText.empty());
    char process[16];
    snprintf(process, sizeof process, "%05lu", static_cast<unsigned long>(run.mProcessId));
    const std::regex record("([01][0-9]|2[0-3]):[0-5][0-9]:[0-5][0-9]\\.[0-9]{3} -- " + std::string(process) +
                            "/[0-9]{5,} -- [^\r]*\r");
    size_t lines = 0;
    for (size_t from = 0; from < run.mTraceText.size(); ++lines) {
        const size_t end = run.mTraceText.find('\n', from);
        ASSERT_NE(end, std::string::npos) << "the last record has no line end";
        EXPECT_TRUE(std::regex_match(run.mTraceText.substr(from, end - from), record))
            << run.mTraceText.substr(from, end - from);
        from = end + 1;
    }
    EXPECT_EQ(lines, run.mTrace.size());
    SYSTEMTIME now;
    GetLocalTime(&now);
    char header[64];
    snprintf(header, sizeof header, "TAVIXSETUP.EXE %i/%i/%i *:*", now.wMonth, now.wDay, now.wYear);
    EXPECT_TRUE(Has(run, header));
}

TEST(Trace, AppendsToAFileThatIsThere)
{
    Package package;
    package.Steps("Log;word").File("run.log", "before\r\n").TraceAt(package.Path("run.log"));
    package.Run("/d run.log");
    const RunResult run = package.Run("/d run.log");
    EXPECT_TRUE(HasInOrder(run, {"before", "word", "Resultcode=0", "Sending trace to file run.log", "word"}));
    EXPECT_EQ(CountRecords(run, "word"), 2u);
}

// Text of a script is never a format and never cut.
TEST(Trace, TextOfAScriptArrivesAsItIs)
{
    const std::string text = "%s %n %d %08x %% 100%";
    const std::string longText(9000, 'x');
    Package package;
    package.Steps("Log;" + text + "\nIsComment;" + text + "\n%s%n;x\nLog;" + longText + "\nLog;\x80\xFE\xFF");
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {text, "# " + text, "Instruction %s%n", longText, "\x80\xFE\xFF"}));
    EXPECT_EQ(run.mExitCode, 0u);
}

TEST(Trace, DefaultDebugFilePathTakesTheFile)
{
    for (const bool named : {false, true}) {
        for (const bool replaces : {false, true}) {
            Package package;
            package.Steps("SetDefaultDebugFilePath;!TEMP!final.txt\nLog;word");
            if (replaces) {
                WriteText(package.Temp("final.txt"), std::string(100000, 'o'));
            }
            const RunResult run = package.Run(named ? "/d run.log" : "");
            EXPECT_EQ(run.mExitCode, 0u);
            const std::string moved = ReadText(package.Temp("final.txt"));
            EXPECT_NE(moved.find("-- word\r\n"), std::string::npos) << named << replaces;
            EXPECT_NE(moved.find("Resultcode=0"), std::string::npos) << named << replaces;
            EXPECT_EQ(moved.find("ooo"), std::string::npos) << named << replaces;
            // A file named by the user stays where it was named, the default one goes.
            const std::string former =
                named ? package.Path("run.log") : package.Temp("Install" + std::to_string(run.mProcessId) + ".txt");
            EXPECT_EQ(ReadText(former), named ? moved : "") << named << replaces;
            EXPECT_EQ(FileExists(former), named) << named << replaces;
        }
    }
}

TEST(Trace, DefaultDebugFilePathThatCannotBeLeavesTheFile)
{
    Package package;
    package.Steps("SetDefaultDebugFilePath;nosuch\\final.txt\nLog;word");
    const RunResult run = package.Run();
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_TRUE(Has(run, "word"));
}

} // namespace
