// The steps that test something and jump, with the words of both outcomes.
#include <algorithm>

#include "Fixture.h"

namespace {

// Runs one condition and answers the words that it traced; a jump to <yes> that was taken adds "jumped".
std::vector<std::string> Outcome(Package &package, const std::string &condition, const std::string &more = "")
{
    package.Steps("Log;here\n" + condition + ";<yes>\nDONE\n<yes>Log;jumped", more);
    const RunResult run = package.Run();
    std::vector<std::string> words = MessagesBetween(run, "here", "Instruction DONE");
    std::vector<std::string> answer;
    for (const std::string &word : words) {
        if (word == "jumped" ||
            (!Fits("Instruction *", word) && !Fits(", True goto*", word) && !Fits("STDisableRedirect*", word) &&
             word != "[Response Result]" && !Fits("Resultcode=*", word))) {
            answer.push_back(word);
        }
    }
    return answer;
}

using Words = std::vector<std::string>;

TEST(Conditions, EveryPlatformHasItsAnswers)
{
    SKIP_UNLESS_WINE();
    struct Row {
        const char *condition;
        const char *yes;
        const char *no;
        std::vector<std::string> on;
    };
    const Row rows[] = {
        {"IsXP", ", IsXP goto step", ", Not XP", {"winxp64"}},
        {"IsXPPro", ", IsXPPro goto step", ", Not XPPro", {"winxp64"}},
        {"IsXPTE", ", IsXPTE goto step", ", Not XPTE", {}},
        {"IsVista", ", IsVista goto", ", Not Vista", {"vista"}},
        {"IsWin7", ", IsWin7 goto", ", Not Win7", {"win7"}},
        {"IsWin8", ", IsWin8 goto", ", Not Win8", {"win8", "win81"}},
        {"IsInk", ", Is Ink goto step", ", Not Ink", {"vista", "win7", "win8", "win81"}},
        {"NotInk", ", Is Not Ink goto step", ", Is Ink", {"winxp64"}},
        {"OSVersion;6.x", "Is OS=6.x, True", "Is OS=6.x, False", {"vista", "win7", "win8", "win81"}},
        {"OSVersion;5.2", "Is OS=5.2, True", "Is OS=5.2, False", {"winxp64"}},
        {"OSVersion;6.3", "Is OS=6.3, True", "Is OS=6.3, False", {"win81"}},
        {"OSVersion;6.1.7601", "Is OS=6.1.7601, True", "Is OS=6.1.7601, False", {"win7"}},
    };
    for (const char *platform : {"winxp64", "vista", "win7", "win8", "win81"}) {
        const WindowsVersion version(platform);
        std::string steps;
        Words expected;
        for (const Row &row : rows) {
            const bool yes = std::find(row.on.begin(), row.on.end(), platform) != row.on.end();
            steps += std::string(row.condition) + "\n";
            expected.push_back("Instruction " +
                               std::string(row.condition).substr(0, std::string(row.condition).find(';')));
            expected.emplace_back(yes ? row.yes : row.no);
            if (yes) {
                expected.emplace_back(", True goto label ");
            }
        }
        Package package;
        package.Steps(steps);
        EXPECT_EQ(MessagesBetween(package.Run(), "Executing steps*", "[Response Result]"), expected) << platform;
    }
}

TEST(Conditions, FieldOfOSVersion)
{
    SKIP_UNLESS_WINE();
    const WindowsVersion version("win7"); // 6.1
    for (const auto &[field, jumps] :
         {std::make_pair("6.1", true), std::make_pair("6.X", true), std::make_pair("6.xyz", true),
          std::make_pair("06.01", true), std::make_pair("6.1x", true), std::make_pair("6", false),
          std::make_pair("6.", false), std::make_pair("6.0", false), std::make_pair("7.x", false),
          std::make_pair("x.x", false), std::make_pair(".1", false), std::make_pair("", false)}) {
        Package package;
        Words expected = {std::string("Is OS=") + field + ", " + (jumps ? "True" : "False")};
        if (jumps) {
            expected.emplace_back("jumped");
        }
        EXPECT_EQ(Outcome(package, std::string("OSVersion;") + field), expected) << field;
    }
}

// The words of IsInk and NotInk serve Is64 and Not64, too.
TEST(Conditions, The64BitConditionsSpeakOfInk)
{
    const bool is64 = On64BitWindows();
    Package package;
    EXPECT_EQ(Outcome(package, "Is64"), is64 ? (Words{", Is Ink goto step", "jumped"}) : Words{", Not Ink"});
    EXPECT_EQ(Outcome(package, "Not64"), is64 ? Words{", Is Ink"} : (Words{", Is Not Ink goto step", "jumped"}));
}

// Which services the flags ask for on a machine without tablets. A flag counts with the value 1 alone.
TEST(Conditions, FlagsDecideTheServices)
{
    SKIP_UNLESS_WINE();
    static const struct {
        const char *flags;
        bool pen;
        bool touch;
        bool penPresent;
    } kCases[] = {
        {"", false, false, false},
        {"FORCE_PEN_SERVICE=1", true, false, true},
        {"FORCE_PEN_SERVICE=2", false, false, false},
        {"force_pen_service=1", false, false, false},
        {"FORCE_PEN_SERVICE=1\nSKIP_PEN_SERVICE=1", false, false, true},
        {"FORCE_PEN_SERVICE=1\nSKIP_PEN_SERVICE=2", true, false, true},
        {"FORCE_TOUCH_SERVICE=1", false, true, false},
        {"FORCE_TOUCH_SERVICE=1\nSKIP_TOUCH_SERVICE=1", false, false, false},
        {"FORCE_MTAPI=1", true, true, false},
        {"FORCE_MTAPI=1\nSKIP_MTAPI=1", false, false, false},
        {"FORCE_MTAPI=1\nSKIP_PEN_SERVICE=1", false, true, false},
        {"FORCE_MTAPI=1\nSKIP_TOUCH_SERVICE=1", true, false, false},
    };
    for (const auto &test : kCases) {
        Package package;
        package.Steps("InstallPenCheck\nInstallTouchCheck\nInstallBothCheck\nNoDriverRequired\nIsTouchPresent\n"
                      "IsPenPresent",
                      std::string("[STATIC_FLAGS]\n") + test.flags);
        Words expected;
        for (const std::string &word :
             {std::string(test.pen ? ", Install pen service" : ", Do not install pen service"),
              std::string(test.touch ? ", Install touch service" : ", Do not install touch"),
              std::string(test.pen && test.touch ? ", Install both services" : ", Do not install both services"),
              std::string(!test.pen && !test.touch ? ", No driver necessary" : ", Some driver components necessary"),
              std::string(", Touch is not present"),
              std::string(test.penPresent ? ", Pen is present" : ", Pen is not present")}) {
            expected.push_back(word);
        }
        const RunResult run = package.Run();
        EXPECT_TRUE(HasInOrder(run, expected)) << test.flags;
    }
}

TEST(Conditions, ExistenceOfFilesInBothViewsOfTheSystemFolder)
{
    if (!On64BitWindows()) {
        GTEST_SKIP() << "needs the redirection of a 64-bit Windows";
    }
    char windows[MAX_PATH] = {};
    GetWindowsDirectoryA(windows, sizeof windows);
    const std::string path = std::string(windows) + "\\System32\\tavix-only-64.txt";
    const RedirectionOff off;
    const Scratch scratch(path);
    ASSERT_TRUE(WriteText(path, "x"));
    const std::string field = ";!WINDOWS!\\\\System32\\\\tavix-only-64.txt";
    // The format and its argument both bring the "64".
    const std::string found = path + " Exists";
    const std::string missing = path + " does not Exist";
    Package package;
    EXPECT_EQ(Outcome(package, "Exist" + field), (Words{"File " + path + ", 64 , 64 Yes", found, "jumped"}));
    EXPECT_EQ(Outcome(package, "ExistRedir" + field), (Words{"File " + path + ", 64 ", missing}));
    EXPECT_EQ(Outcome(package, "NotExist" + field), (Words{"File " + path + ", 64 , 64 Yes", found}));
    EXPECT_EQ(Outcome(package, "NotExistRedir" + field), (Words{"File " + path + ", 64 ", missing, "jumped"}));
    // A folder exists, too.
    EXPECT_EQ(Outcome(package, "ExistRedir;!.!").back(), "jumped");
}

} // namespace
