// The readers against the real registry and real profile files, called one by one.
#include "Installer/ScriptAccess.h"

#include "../system/Files.h"
#include "Common/Status.h"
#include "RegistryTest.h"

namespace {

using ScriptAccessTest = RegistryTest;

const char kTypeExpected[] = "(dwType == REG_SZ) || (dwType == REG_EXPAND_SZ) || (dwType == REG_MULTI_SZ)";

TEST_F(ScriptAccessTest, TextOfEachRegistryType)
{
    SetEnvironmentVariableA("TAVIX_READER", "C:\\temp");
    static const struct {
        const char *what;
        RegData data;
        std::string plain; // with escapes processed, up to its first NUL
        std::string raw;
        bool traced; // that the type is none of the three
    } kCases[] = {
        {"text", RegText("a\\tb\\\\c"), "a\tb\\c", "a\\tb\\\\c", false},
        {"text without a NUL", {REG_SZ, "abc"}, "abc", "abc", false},
        {"text with a NUL inside", {REG_SZ, std::string("a\0b\0", 4)}, "a", std::string("a\0b", 3), false},
        {"expanded only when raw", RegText("%TAVIX_READER%\\n", REG_EXPAND_SZ), "%TAVIX_READER%\n", "C:\\temp\\n",
         false},
        {"list", {REG_MULTI_SZ, std::string("one\0two\0\0", 9)}, "one", std::string("one\0two\0\0", 9), false},
        {"empty text", RegText(""), "", "", false},
        {"binary", {REG_BINARY, std::string("ab\0", 3)}, "ab", "ab", true},
        {"number", RegNumber(0x00424241), "ABB", "ABB", true},
    };
    const CRegLocationScope scope(At());
    for (const auto &test : kCases) {
        WriteValue(HKEY_LOCAL_MACHINE, kBase, "v", test.data);
        mTrace.Take();
        EXPECT_EQ(ReadString("", "v", "default"), test.plain) << test.what;
        EXPECT_EQ(GetLastStatus(), TVXSTATUS_SUCCESS) << test.what;
        EXPECT_EQ(ReadString("", "v", "default", true), test.raw) << test.what;
        EXPECT_EQ(mTrace.Take(), test.traced ? (Records{kTypeExpected, kTypeExpected}) : Records()) << test.what;
    }
    SetEnvironmentVariableA("TAVIX_READER", nullptr);
}

TEST_F(ScriptAccessTest, FailureAnswersTheDefaultAsItStandsAndTellsWhy)
{
    const std::string odd = "C:\\temp\\0x";
    SetLastStatus(TVXSTATUS_SUCCESS);
    {
        const CRegLocationScope scope(At("Missing"));
        EXPECT_EQ(ReadString("", "v", odd), odd);
        EXPECT_EQ(GetLastStatus(), TVXSTATUS_KEY_NOT_FOUND);
        EXPECT_EQ(ReadInteger("", "v", 7), 7u);
        EXPECT_EQ(GetLastStatus(), TVXSTATUS_KEY_NOT_FOUND);
    }
    const CRegLocationScope scope(At());
    EXPECT_EQ(ReadString("", "missing", odd), odd);
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_VALUE_NOT_FOUND);
    EXPECT_EQ(ReadInteger("", "missing", 0xFFFFFFFF), 0xFFFFFFFF);
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_VALUE_NOT_FOUND);
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "large", RegText(std::string(10240, 'x')));
    EXPECT_EQ(ReadString("", "large", odd), odd);
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_BUFFER_TOO_SMALL);
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "large", RegText(std::string(10239, 'x')));
    EXPECT_EQ(ReadString("", "large", odd), std::string(10239, 'x'));
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_SUCCESS);
}

TEST_F(ScriptAccessTest, TheNameAtReadsTheUnnamedValue)
{
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "", RegText("unnamed"));
    const CRegLocationScope scope(At());
    EXPECT_EQ(ReadString("", "@", "default"), "unnamed");
    EXPECT_EQ(ReadString("", "@", "default", true), "unnamed");
}

// The script files of a test: a main script and whatever it is told to read besides. The path of the main script is
// put back at the end.
class ScriptFilesTest : public RegistryTest {
protected:
    ScriptFilesTest() : mFolder(FreeTempName("tavix-reader"))
    {
        WriteText(Path("main.dat"), "[MAIN]\r\nText=main\r\nNumber=5\r\nBad=x7\r\n[Empty]\r\n");
        mFormer = SetConfigFile(Path("main.dat"));
    }
    ~ScriptFilesTest() override
    {
        ReleaseSearchList();
        SetDialogData("");
        mConfigFile = mFormer;
    }
    std::string Path(const std::string &name) const { return mFolder.Path() + "\\" + name; }

private:
    const Scratch mFolder;
    std::string mFormer;
};

TEST_F(ScriptFilesTest, ThePointAndNothingOnlyAskForThePath)
{
    EXPECT_EQ(SetConfigFile("."), Path("main.dat"));
    EXPECT_EQ(SetConfigFile(""), Path("main.dat"));
    EXPECT_EQ(SetConfigFile(".\\"), Path("main.dat"));
    EXPECT_EQ(SetConfigFile("."), ".\\");
    SetConfigFile(Path("main.dat"));
}

TEST_F(ScriptFilesTest, NumbersYieldTheDefaultWhereTextsYieldNothing)
{
    EXPECT_EQ(ReadInteger("MAIN", "Number", 1), 5u);
    EXPECT_EQ(ReadInteger("MAIN", "Number", 5), 5u);
    EXPECT_EQ(ReadInteger("MAIN", "Bad", 3), 0u);
    EXPECT_EQ(ReadInteger("MAIN", "Missing", 3), 3u);
    EXPECT_EQ(ReadString("MAIN", "Missing", "default"), "default");
    AddIncludeFile(Path("missing.dat")); // the last of the walk from here on
    EXPECT_EQ(ReadInteger("MAIN", "Missing", 3), 3u);
    EXPECT_EQ(ReadString("MAIN", "Missing", "default"), "");
    EXPECT_EQ(ReadString("MAIN", "Text", "default"), "main");
    EXPECT_EQ(ReadString("Empty", "", ""), "");
    AddIncludeFile("");
    ReleaseSearchList();
    EXPECT_EQ(ReadString("MAIN", "Missing", "default"), "default");
}

TEST_F(ScriptFilesTest, DialogDataServesWordsForTheTimeOfOneRead)
{
    WriteText(Path("dialog.dat"), "[en]\r\nWord=dialog\r\nNumber=9\r\n");
    WriteText(Path("include.dat"), "[en]\r\nWord=include\r\n");
    AddIncludeFile(Path("include.dat"));
    EXPECT_EQ(ReadLanguageString("en", "Word", ""), "include");
    SetDialogData(Path("dialog.dat"));
    EXPECT_EQ(ReadLanguageString("en", "Word", ""), "dialog");
    EXPECT_EQ(ReadLanguageInteger("en", "Number", 1), 9u);
    EXPECT_EQ(ReadString("en", "Word", ""), "include");
    EXPECT_EQ(ReadInteger("en", "Number", 1), 1u);
}

TEST_F(ScriptFilesTest, ASectionEndsWhereTheBufferDoes)
{
    // With its NUL a line takes 100 characters; 10238 is what the platform answers when it cut.
    static const struct {
        size_t lines;
        size_t last; // length of one more line
        bool cut;
    } kCases[] = {{102, 36, false}, {102, 37, true}, {102, 50, true}, {103, 1, true}};
    for (const auto &test : kCases) {
        std::string text = "[S]\r\n";
        for (size_t i = 0; i < test.lines; ++i) {
            text += std::string(99, 'x') + "\r\n";
        }
        WriteText(Path("main.dat"), text + std::string(test.last, 'y') + "\r\n[T]\r\n");
        mTrace.Take();
        const std::string section = ReadString("S", "", "");
        EXPECT_EQ(mTrace.Take(), test.cut ? Records{"Section S is too large (10238)"} : Records()) << test.last;
        EXPECT_LE(section.size(), 10239u);
        EXPECT_EQ(section.substr(0, 100), std::string(99, 'x') + '\0');
        EXPECT_EQ(section.back(), '\0');
    }
}

} // namespace
