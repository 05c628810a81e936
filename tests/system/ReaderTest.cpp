// Where values come from: the script, its includes, the registry; what happens to their text on the way.
#include "Fixture.h"

namespace {

// A step that shows a text after expansion, "[text] does not Exist".
std::string Show(const std::string &text)
{
    return "ExistRedir;[" + text + "]\n";
}

const char kMain[] = "[MAIN]\nVersion=1.10.01\nPrefType=Pen_Tablet\nLanguages=en\n";

TEST(Reader, SearchListIsWalkedFromItsLastEntry)
{
    static const struct {
        const char *include;
        std::vector<std::string> shown;
    } kCases[] = {
        // The script itself comes first, then the includes from the last to the first.
        {R"(.\\a.dat;.\\b.dat)", {"[main] does*", "[b] does*", "[a only] does*", "[Missing] does*"}},
        {R"(.\\b.dat;.\\a.dat)", {"[main] does*", "[a] does*", "[a only] does*", "[Missing] does*"}},
        {R"(.\\a.dat)", {"[main] does*", "[a] does*", "[a only] does*", "[Missing] does*"}},
        {R"(.\\a.dat;;!.!\\b.dat;)", {"[main] does*", "[b] does*", "[a only] does*", "[Missing] does*"}},
        {R"(.\\a.dat;.\\missing.dat)", {"[main] does*", "[a] does*", "[a only] does*", "[Missing] does*"}},
        // A file that cannot be opened takes the defaults away when it is the last of the walk: the first include.
        {R"(.\\missing.dat;.\\a.dat)", {"[main] does*", "[a] does*", "[a only] does*", "[] does*"}},
        {R"(.\\missing.dat)", {"[main] does*", "[] does*", "[] does*", "[] does*"}},
    };
    for (const auto &test : kCases) {
        Package package;
        package.File("a.dat", "[en]\r\nEverywhere=a\r\nIncluded=a\r\nOnlyA=a only\r\n");
        package.File("b.dat", "[en]\r\nEverywhere=b\r\nIncluded=b\r\n");
        package.Script(std::string(kMain) + "Include=" + test.include + "\n[en]\nEverywhere=main\n[Install]\n" +
                       Show("^Everywhere^") + Show("^Included^") + Show("^OnlyA^") + Show("^Missing^"));
        EXPECT_TRUE(HasInOrder(package.Run(), test.shown)) << test.include;
    }
}

TEST(Reader, AnIncludeThatIsInUseCountsAsMissing)
{
    Package package;
    package.File("a.dat", "[en]\r\nKey=a\r\n");
    package.Script(std::string(kMain) + "Include=.\\\\a.dat\n[Install]\n" + Show("^Key^"));
    const LockedFile lock(package.Path("a.dat"));
    ASSERT_TRUE(lock.Held());
    EXPECT_TRUE(Has(package.Run(), "[] does*"));
}

TEST(Reader, SectionsComeFromTheFirstFileThatHasLines)
{
    Package package;
    package.File("a.dat", "[Install]\r\nLog;wrong\r\n[Extra]\r\nLog;from a\r\n[Empty]\r\nLog;filled\r\n");
    package.Script(std::string(kMain) + "Include=.\\\\a.dat\n[Empty]\n[Install]\nLog;own\n!Extra!\n!Empty!\n");
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {"own", "from a", "filled"}));
    EXPECT_TRUE(Lacks(run, "wrong")); // sections are not put together
}

// A value that equals its default counts as not found, and the walk goes on.
TEST(Reader, AValueEqualToItsDefaultIsSearchedFurther)
{
    Package package;
    package.File("a.dat", "[MAIN]\r\nISD=1\r\n[en]\r\nSame=from a\r\n");
    package.Script(std::string(kMain) + "Include=.\\\\a.dat\nISD=0\n[en]\nSame=Thisis_anEmptySTRING\n[Install]\n");
    EXPECT_EQ(package.Run().mExitCode, 65u); // the number of the include made it an integrated device
    package.Script(std::string(kMain) +
                   "Include=.\\\\a.dat\nISD=2\n[STATIC_FLAGS]\nNOHARDWARE_OVERRIDE=1\n[en]\n"
                   "Same=Thisis_anEmptySTRING\n[Install]\n" +
                   Show("^Same^"));
    EXPECT_TRUE(Has(package.Run(), "[from a] does*"));
}

TEST(Reader, DialogDataIsSearchedBeforeTheIncludesForWordsOnly)
{
    Package package;
    package.File("a.dat", "[en]\r\nWord=a\r\n");
    package.File("d.dat", "[en]\r\nWord=dialog\r\n[Extra]\r\nLog;dialog steps\r\n");
    package.Script(std::string(kMain) + "Include=.\\\\a.dat\nDialogData=.\\\\d.dat\n[Install]\n" + Show("^Word^") +
                   "!Extra!\nLog;end");
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {"[dialog] does*", "end"}));
    EXPECT_TRUE(Lacks(run, "dialog steps"));
}

TEST(Reader, EscapesOfAStep)
{
    static const struct {
        const char *written;
        const char *read;
    } kCases[] = {
        {R"(\"a\")", "\"a\""},     {R"(\'a\')", "'a'"},
        {R"(a\\b)", R"(a\b)"},     {R"(a\\\\b)", R"(a\\b)"},
        {R"(\q\U\.)", "qU."},      {R"(\1)", "1"},
        {R"(a\tb)", "a\tb"},       {R"(a\ab\bc\fd\ve)", "a\ab\bc\fd\ve"},
        {R"(a\nb)", "a\nb"},       {R"(C:\Program Files)", "C:Program Files"},
        {R"(C:\temp)", "C:\temp"}, {R"(a\;b)", "a"}, // the escape runs first, and the ";" it leaves parts fields
        {R"(end\)", "end"},        {R"(end\\)", R"(end\)"},
    };
    std::string steps;
    for (const auto &test : kCases) {
        steps += std::string("Log;") + test.written + "\n";
    }
    Package package;
    package.Steps(steps + "Log;\\0Log;behind a NUL");
    const RunResult run = package.Run();
    std::vector<std::string> expected;
    for (const auto &test : kCases) {
        expected.emplace_back("Instruction Log");
        expected.emplace_back(test.read);
    }
    for (const char *last : {"Instruction Log", "", "Instruction Log", "behind a NUL"}) {
        expected.emplace_back(last);
    }
    EXPECT_EQ(MessagesBetween(run, "Executing steps*", "[Response Result]"), expected);
}

TEST(Reader, EscapesOfAValue)
{
    Package package;
    package.Script(std::string(kMain) + "[en]\nNul=a\\0b\nLast=a\\\nPath=C:\\\\x\nQuoted=\"a \\\"b\"\n[Install]\n" +
                   Show("^Nul^") + Show("^Last^") + Show("^Path^") + Show("^Quoted^"));
    EXPECT_TRUE(HasInOrder(package.Run(), {"[a] does*", "[a] does*", "[C:\\x] does*", "[a \"b] does*"}));
}

TEST(Reader, ASectionThatIsTooLargeIsCut)
{
    // Lines of 102 characters with their NUL: 100 of them fit into the 10238 that the platform gives, with 38 left for
    // the beginning of the next.
    std::string steps;
    for (int i = 100; i < 240; ++i) {
        steps += "Log;" + std::to_string(i) + std::string(94, 'x') + "\n";
    }
    Package package;
    package.Steps("GoTo;!Large!\nLog;end", "[Large]\n" + steps + "Log;never\n[Fits]\n");
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {"Section Large is too large (10238)", "100x*", "199x*", "200x*", "end"}));
    EXPECT_EQ(CountRecords(run, "*xxxxx"), 101u);
    EXPECT_TRUE(Lacks(run, "never"));
    EXPECT_TRUE(Lacks(run, "200" + std::string(94, 'x'))); // the last line runs in its cut form
    EXPECT_EQ(CountRecords(run, "Section * is too large*"), 1u);
}

TEST(Reader, TheRegistryNamesTheScript)
{
    Settings settings;
    settings.Text("ConfigFileName", ".\\\\other.dat");
    Package package;
    package.Steps("Log;installer.dat").File("other.dat", std::string(kMain) + "[Install]\nLog;other.dat\n");
    const RunResult run = package.Run();
    EXPECT_TRUE(Has(run, "other.dat"));
    EXPECT_TRUE(Lacks(run, "installer.dat"));
}

// A setting of another type than the one wanted is reported and used all the same.
TEST(Reader, SettingsOfOtherTypes)
{
    Settings settings;
    settings.Data("InstallCommand", {REG_BINARY, std::string("Binary\0\0", 8)});
    settings.Data("UninstallCommand", {REG_MULTI_SZ, std::string("Multi\0Second\0\0", 14)});
    settings.Data("SILENT", {REG_BINARY, std::string("\1\0\0\0zz", 6)});
    Package package;
    package.Steps("", "[Binary]\nLog;binary\n[Multi]\nLog;multi\n");
    const RunResult run = package.RunPlain("");
    EXPECT_TRUE(
        HasInOrder(run, {"dwType == REG_DWORD", "Silent install requested from registry",
                         "(dwType == REG_SZ) || (dwType == REG_EXPAND_SZ) || (dwType == REG_MULTI_SZ)", "binary"}));
    EXPECT_TRUE(Has(package.RunPlain("/u"), "multi"));
}

TEST(Reader, SettingsReadWithEscapesAreNotExpanded)
{
    Settings settings;
    settings.Text("InstallCommand", "%TMP%\\tx", REG_EXPAND_SZ);
    Package package;
    package.Steps("Log;x");
    EXPECT_TRUE(Has(package.Run(), "Executing steps for group %TMP%\tx"));
    settings.Text("InstallCommand", "");
    EXPECT_TRUE(Has(package.Run(), "Executing steps for group "));
}

TEST(Reader, SettingsBeyondTheBufferAreTheirDefault)
{
    Settings settings;
    settings.Text("InstallCommand", std::string(10239, 'g'));
    Package package;
    package.Steps("Log;default");
    EXPECT_TRUE(Has(package.Run(), "Executing steps for group " + std::string(10239, 'g')));
    settings.Text("InstallCommand", std::string(10240, 'g'));
    EXPECT_TRUE(Has(package.Run(), "default"));
}

TEST(Reader, StaticFlags)
{
    Package package;
    package.Script(std::string(kMain) + "[STATIC_FLAGS]\nA=1=2\nB\n=5\nC=x\nD=-7\nE= 3\nF=4\nF=6\n[Install]\n"
                                        "CheckFlag;A;1\nCheckFlag;B;0\nCheckFlag;C;0\nCheckFlag;D;-7\nCheckFlag;E;3\n"
                                        "CheckFlag;F;6\nCheckFlag;a;1\nSetFlag;;5\nCheckFlag;;5\nCheckFlag;A;2\n"
                                        "SetFlag;A;2z\nCheckFlag;A;2\n");
    EXPECT_TRUE(HasInOrder(package.Run(),
                           {", A = 1, goto step", ", B = 0, goto step", ", C = 0, goto step", ", D = -7, goto step",
                            ", E = 3, goto step", ", F = 6, goto step", ", a is not 1 or does not exist",
                            ", setting [] to [5]", ",  is not 5 or does not exist", ", A is not 2 or does not exist",
                            ", setting [A] to [2]", ", A = 2, goto step"}));
}

} // namespace
