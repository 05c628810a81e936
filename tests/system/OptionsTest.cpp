// The options of the command line, in all their spellings.
#include "Fixture.h"

namespace {

// A group for each outcome, so that what ran tells what the options meant.
const char kGroups[] = "[Uninstall]\nLog;uninstall ran\n[Other]\nLog;other ran\n[Two Words]\nLog;words ran\n";
const char kInstall[] = "Log;install ran\nIsInk;<ink>\nDONE\n<ink>Log;with ink";

TEST(Options, EverySpellingOfEveryOption)
{
    static const struct {
        const char *tail;
        std::vector<std::string> records;
    } kCases[] = {
        {"/s", {"Silent install requested", "install ran"}},
        {"-s", {"Silent install requested", "install ran"}},
        {"/SILENT", {"Silent install requested", "install ran"}},
        {"-silent", {"Silent install requested", "install ran"}},
        {"/s/u", {"Silent install requested", "File run with uninstall parameter", "uninstall ran"}},
        {"/u/s", {"File run with uninstall parameter", "Silent install requested", "uninstall ran"}},
        {"/s -u", {"File run with uninstall parameter", "uninstall ran"}},
        {"/s /uninstall", {"File run with uninstall parameter", "uninstall ran"}},
        {"/s -UnInstall", {"File run with uninstall parameter", "uninstall ran"}},
        {"/s /ink", {"Ink install requested", "with ink"}},
        {"-INK /s", {"Ink install requested", "Silent install requested", "with ink"}},
        {"/s /suppress-error", {"Suppressing return error codes"}},
        {"-suppress-error -s", {"Suppressing return error codes"}},
        {"/s /from-ife", {"IFE return codes"}},
        {"-from-ife -s", {"IFE return codes"}},
        {"/s /agree", {"install ran"}},
        {"x/s", {"Silent install requested"}}, // a plain word is cut
        {"/s /command Other", {"Execute a command", "command: Other", "other ran"}},
        {"-command Other -s", {"Execute a command", "command: Other", "Silent install requested", "other ran"}},
        {"/s /u /command Other", {"File run with uninstall parameter", "command: Other", "other ran"}},
        {"/s /command \"Two Words\"", {"command: Two Words", "words ran"}},
        {"/s /command \"a\\\"b\"", {"command: a\"b", "Executing steps for group a\"b"}},
        {"/s /command -Other", {"command: /Other"}}, // the value is the next token, whatever it is
        {"/s /command", {"Execute a command", "command: ", "install ran"}}, // no value: as if it were not there
        {"/s /u /command", {"File run with uninstall parameter", "command: ", "uninstall ran"}},
        {"/s L2052", {"Requested Language zh_CN, from 2052"}},
        {"/s l1033", {"Requested Language en, from 1033"}},
        {"/s L1028", {"Requested Language neutral, from 1028", "Fell through to neutral, using en instead"}},
        {"/s L9x", {"Requested Language en, from 9x"}},
    };
    for (const auto &test : kCases) {
        Package package;
        package.Steps(kInstall, kGroups);
        const RunResult run = package.RunPlain(test.tail);
        EXPECT_EQ(run.mExitCode, 0u) << test.tail;
        EXPECT_TRUE(HasInOrder(run, test.records)) << test.tail;
    }
}

TEST(Options, UnknownTokensAreIgnoredWithoutATrace)
{
    Package package;
    package.Steps(kInstall, kGroups);
    const std::string none[] = {"Suppressing*", "IFE*", "Execute a command", "Ink install*", "Requested*", "*remove*"};
    for (const char *tail : {"/silentx /si /x y L0 Lx L /suppress /agreed", "u uninstall silent", "//", "-", "\"\""}) {
        const RunResult run = package.Run(tail);
        EXPECT_TRUE(Has(run, "install ran")) << tail;
        for (const std::string &record : none) {
            EXPECT_TRUE(Lacks(run, record)) << tail;
        }
    }
}

// While the window walks through its pages the five options of the silent family mean nothing; the others still do.
// The mutex is held, so that the run ends before its window.
TEST(Options, DialogTestingSwitchesTheSilentFamilyOff)
{
    Settings settings;
    settings.Number("DialogTesting", 1);
    Package package;
    package.Steps(kInstall, kGroups);
    const HeldMutex held("Global\\TvxInstallerRunningMutex");
    const RunResult run = package.RunPlain("/s /silent /suppress-error /from-ife /agree /u");
    EXPECT_EQ(run.mExitCode, 1u);
    EXPECT_TRUE(Has(run, "File run with uninstall parameter"));
    EXPECT_TRUE(Lacks(run, "Silent install requested*"));
    EXPECT_TRUE(Lacks(run, "Suppressing*"));
    EXPECT_TRUE(Lacks(run, "IFE*"));
}

TEST(Options, TheRegistryAsksForASilentRun)
{
    Settings settings;
    settings.Number("SILENT", 1);
    Package package;
    package.Steps(kInstall);
    const RunResult run = package.RunPlain("");
    EXPECT_TRUE(HasInOrder(run, {"Silent install requested from registry", "install ran"}));
}

TEST(Options, TheRegistryNamesTheGroups)
{
    Settings settings;
    settings.Text("InstallCommand", "Other").Text("UninstallCommand", "Two Words");
    Package package;
    package.Steps(kInstall, kGroups);
    EXPECT_TRUE(Has(package.Run(), "other ran"));
    EXPECT_TRUE(Has(package.Run("/u"), "words ran"));
    EXPECT_TRUE(Has(package.Run("/command Uninstall"), "other ran")); // beats the option, too
}

TEST(Options, HexWritesTheBytesOfAFileAndEndsTheOptions)
{
    std::string bytes;
    std::string text;
    for (int i = 0; i < 256 + 5; ++i) {
        char digits[8];
        snprintf(digits, sizeof digits, "%02X", i & 255);
        bytes += static_cast<char>(i);
        text += digits;
        text += i % 16 == 15 || i == 256 + 4 ? "\r\n" : " ";
    }
    Package package;
    package.Steps("Log;ran").File("some file.bin", bytes).File("empty.bin", "");
    RunResult run = package.RunPlain("/hex \"some file.bin\" /s");
    EXPECT_EQ(run.mExitCode, 1u);
    EXPECT_EQ(ReadText(package.Path("some file.bin.txt")), text);
    EXPECT_TRUE(Lacks(run, "Silent install requested"));
    EXPECT_TRUE(Lacks(run, "ran"));
    EXPECT_EQ(package.RunPlain("/hex empty.bin").mExitCode, 1u);
    EXPECT_EQ(ReadText(package.Path("empty.bin.txt")), "");
    run = package.RunPlain("/s /hex");
    EXPECT_EQ(run.mExitCode, 1u);
    EXPECT_TRUE(Has(run, "Convert a file to hex"));
    EXPECT_EQ(package.RunPlain("/hex nosuch.bin").mExitCode, 1u);
    EXPECT_FALSE(FileExists(package.Path("nosuch.bin.txt")));
}

TEST(Options, TheScriptHasTheLastWordOnTheLanguage)
{
    static const struct {
        const char *languages;
        const char *tail;
        const char *group; // the group that the step Language runs
        bool traced;       // that the wanted language is not supported
    } kCases[] = {
        {"en", "", "en", false},
        {"EN;zh_CN", "", "en", false},
        {"zh_CN", "", "zh_CN", false},
        {"zh_cn;en", "L2052", "zh_CN", false},
        {"en", "L2052", "en", false},
        {"zh_CN;en", "L1033", "en", false},
        {"xx;en", "", "en", false},
        {"xx", "", "en", true},
        {"", "", "en", true},
        {"xx", "L2052", "zh_CN", true},
        {"userUI", "L2052", "en", false},
    };
    for (const auto &test : kCases) {
        Package package;
        package.Script(std::string("[MAIN]\nVersion=1.10\nPrefType=Pen_Tablet\nLanguages=") + test.languages +
                       "\n[Install]\nLanguage\n[en]\nLog;in en\n[zh_CN]\nLog;in zh_CN\n");
        const RunResult run = package.Run(test.tail);
        EXPECT_TRUE(
            HasInOrder(run, {std::string("Executing steps for group ") + test.group, std::string("in ") + test.group}))
            << test.languages << " " << test.tail;
        EXPECT_EQ(CountRecords(run, std::string("Wanted Language not supported using ") + test.group),
                  test.traced ? 1u : 0u)
            << test.languages << " " << test.tail;
    }
}

} // namespace
