#include "Script/ScriptFiles.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "FakeProfile.h"
#include "TraceRecorder.h"

namespace {

TEST(ScriptFiles, AWalkGoesFromTheScriptToTheLastIncludeAndOn)
{
    CFakeProfile profile;
    profile.mFiles = {{"main", {{"S", "a=1\nsame=d\nn=7\n"}, {"G", "x\ny\n"}}},
                      {"first", {{"S", "a=2\nb=first\nc=1\\tC\nsame=f\n"}, {"G", "z\n"}, {"H", "1\n2\n"}}},
                      {"last", {{"S", "b=last\nn=8\n"}, {"L", "w=low\n"}}},
                      {"words", {{"L", "w=word\n"}, {"S", "a=words\n"}}}};
    CScriptFiles files(profile);
    for (const char *name : {"first", "", "last"}) {
        files.AddIncludeFile(name);
    }
    files.SetDialogData("words");
    const struct {
        const char *mSection, *mKey, *mDefault, *mValue;
    } rows[] = {
        {"S", "a", "d", "1"},    {"S", "b", "d", "last"}, {"S", "c", "d", "1\tC"},
        {"S", "same", "d", "f"}, // a value equal to the default counts as not found
        {"S", "none", "d", "d"}, {"L", "w", "d", "low"},  {"None", "a", "\\n", "\n"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(files.ReadString(row.mSection, row.mKey, row.mDefault), row.mValue) << row.mKey;
    }
    EXPECT_EQ(files.ReadString("G", "", ""), std::string("x\0y\0", 4)); // sections are not put together
    EXPECT_EQ(files.ReadString("H", "", ""), std::string("1\0"
                                                         "2\0",
                                                         4));
    EXPECT_EQ(files.ReadInteger("S", "n", 7), 8u); // 7 is what the reader would answer anyway
    EXPECT_EQ(files.ReadInteger("S", "none", 9), 9u);
    EXPECT_EQ(files.ReadLanguageString("L", "w", "d"), "word"); // behind the script, in front of the includes
    EXPECT_EQ(files.ReadLanguageString("S", "a", "d"), "1");
    EXPECT_EQ(files.ReadString("L", "w", "d"), "low"); // for that read alone
    files.ReleaseSearchList();
    EXPECT_EQ(files.ReadString("L", "w", "d"), "d");
    EXPECT_EQ(profile.mLocated, 1);
}

TEST(ScriptFiles, AMissingFirstIncludeTakesTheDefaultOfTextsAway)
{
    CFakeProfile profile;
    profile.mFiles = {{"main", {}}, {"last", {}}};
    CScriptFiles files(profile);
    files.AddIncludeFile("missing");
    files.AddIncludeFile("last");
    EXPECT_EQ(files.ReadString("S", "a", "default"), "");
    EXPECT_EQ(files.ReadInteger("S", "a", 5), 5u);
}

TEST(ScriptFiles, ASectionThatIsCutIsReportedAndUsed)
{
    CFakeProfile profile;
    profile.mFiles["main"]["S"] = std::string(20000, 'x');
    CScriptFiles files(profile);
    TakeTraceRecords();
    EXPECT_EQ(files.ReadString("S", "", "").size(), 10239u);
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"Section S is too large (10238)"});
}

TEST(ScriptFiles, ScopesPutTheScriptBackAlsoOnAnException)
{
    CFakeProfile profile;
    profile.mFiles["main"]["S"] = "a=main\n";
    profile.mFiles["other"]["S"] = "a=other\n";
    CScriptFiles files(profile);
    files.SetConfigFile("");
    try {
        const CScriptScope other(files, "other");
        EXPECT_EQ(files.ReadString("S", "a", ""), "other");
        const CScriptScope same(files, ".");
        EXPECT_EQ(files.ReadString("S", "a", ""), "other");
        const CMainScriptScope main(files);
        EXPECT_EQ(files.ReadString("S", "a", ""), "main");
        throw std::runtime_error("step");
    } catch (const std::runtime_error &) {
        EXPECT_EQ(files.SetConfigFile(""), "main");
    }
    profile.mMainScript = "missing";
    TakeTraceRecords();
    const CMainScriptScope none(files);
    EXPECT_EQ(files.ReadString("S", "a", "d"), "");
    EXPECT_EQ(TakeAssertions(), "CheckConfigFile(mConfigFile) == TVXSTATUS_SUCCESS");
}

} // namespace
