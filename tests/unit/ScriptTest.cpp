// The interpreter over a table of its own, the files of a script, and macros in texts and in registry paths.
#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

#include "Common/StringUtilities.h"
#include "FakeProfile.h"
#include "Registry/RegPath.h"
#include "Script/CRunState.h"
#include "Script/Macros.h"
#include "Script/ScriptFiles.h"
#include "Script/Step.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

std::string gLog; // what the steps of the tests wrote

void Log(CStep &step)
{
    gLog += step.Plain() + "|";
}
void Say(CStep &step)
{
    gLog += step.PlainAgain() + ",";
    gLog += step.Expanded() + ",";
    gLog += step.ExpandedAgain() + ",";
    gLog += std::to_string(step.Number()) + ",";
    gLog += step.Plain() + "|";
}
void GoTo(CStep &step)
{
    BranchOn(step, true, ", yes", ", no");
}
void Unless(CStep &step)
{
    const std::string flag = step.Plain();
    const bool first = step.Main().GetFlag(flag) == 0;
    step.Main().SetFlag(flag, 1);
    BranchOn(step, first, ", yes", ", no");
}
void Fail(CStep &)
{
    throw std::runtime_error("refused 12/32/99");
}
void Done(CStep &step)
{
    step.EndGroup();
}

const CommandRow kRows[] = {{"Log", 0, Log},     {"Say", 1, Say},   {"GoTo", 2, GoTo},
                            {"Once", 5, Unless}, {"Fail", 7, Fail}, {"DONE", 9, Done}};

class CFakeHost : public IRunHost {
public:
    bool PathExists(const std::string &path) override { return path == "other"; }
    std::optional<std::string> MacroValue(const CRunState &state, const std::string &upperName) override
    {
        return upperName == "PRODUCT_NAME" ? std::optional(state.mProductName) : std::nullopt;
    }
};

class CFakeBar : public IProgress {
public:
    bool HasBegun() const override { return mBegun; }
    void Begin() override { mBegun = true; }
    bool HasBar() const override { return mBar; }
    void Show(uint32_t position) override { mPositions += std::to_string(position) + " "; }

    bool mBegun = false;
    bool mBar = true;
    std::string mPositions;
};

class Interpreter : public ::testing::Test {
protected:
    // Runs a group and answers what its steps wrote.
    std::string Run(const std::string &steps)
    {
        gLog.clear();
        mBar = CFakeBar();
        mProfile.mFiles["main"]["Install"] = steps;
        mRun.mFlags.clear();
        mStatus = mRun.RunSteps("Install");
        return gLog;
    }

    CFakeProfile mProfile;
    CScriptFiles mScript{mProfile};
    CFakeHost mHost;
    CFakeBar mBar;
    CRunState mRun{mHost, mScript, kRows, std::size(kRows)};
    uint16_t mStatus = 0;
};

TEST_F(Interpreter, GroupsLabelsAndEnds)
{
    mProfile.mFiles["main"]["In"] = "Log;in\nDONE\nLog;no\n";
    mProfile.mFiles["other"]["In"] = "Log;other\n";
    mProfile.mFiles["main"]["Loop"] = "<a>Log;loop\nOnce;F;<a>\n";
    mRun.mProductName = "pen ";
    ExpectTable("groups", [&](const std::string &steps) {
        const std::string log = Run(Exchanged(steps, '/', '\n'));
        EXPECT_EQ(mScript.SetConfigFile(""), "main");
        return log + (mStatus == 0 ? "" : mStatus == 0x60C ? " ended" : "?");
    });
    TakeTraceRecords();
}

TEST_F(Interpreter, TracesWhatItDoes)
{
    mRun.mCommandMap["Gap"] = 8;
    TakeTraceRecords();
    Run("GoTo;<x>\n<x>!In\n!In!;missing\nFail;a;b\nGap;1\nDONE\n");
    EXPECT_EQ(TakeAssertions(),
              "Executing steps for group Install & Instruction GoTo & , yes & , True goto label <x> & "
              "Instruction !In & endBang != std::string::npos & Instruction !In! & Goto command missing:In & "
              "Skipping command: file does not exist & Instruction Fail & Step Fail;a;b failed: refused 12/32/99 & "
              "Instruction Gap & Unknown step command: [Gap] & Instruction DONE");
}

TEST_F(Interpreter, TheBarCountsTheStepsOfTheOutermostGroup)
{
    mRun.SetProgress(&mBar);
    mProfile.mFiles["main"]["In"] = "Log;1\nLog;2\n";
    ExpectTable("bar", [&](const std::string &steps) { // the last row's records are looked at
        TakeTraceRecords();
        Run(Exchanged(steps, '/', '\n'));
        return TrimCopy(mBar.mPositions);
    });
    size_t expectations = 0;
    for (const std::string &record : TakeTraceRecords()) {
        expectations += record == "mBarValue <= PROGRESS_MAX" ? 1 : 0;
    }
    EXPECT_EQ(expectations, 2u);
    mBar.mBar = false;
    mBar.mBegun = false;
    mRun.mBarTarget = 0;
    mRun.RunSteps("In"); // a silent run counts all the same
    EXPECT_TRUE(mBar.mBegun);
    EXPECT_EQ(mRun.mBarTarget, 333u);
    TakeTraceRecords();
}

TEST(Services, FollowFlagsPackageDevicesAndPlatform)
{
    ExpectTable("wanted-services", [](const std::string &row) {
        ServiceFacts facts = {};
        char section[200] = "";
        sscanf(row.c_str(), "%d %u %x %199[^\n]", &facts.mOSType, &facts.mDriverKind, &facts.mDevicePresence, section);
        Flags flags;
        flags.TakeStaticFlags(*section == '\0' ? "" : Exchanged(section + std::string(","), ',', '\0'));
        return std::string(NeedMTAPI(flags, facts) ? "M" : "-") + (PenService(flags, facts) ? "P" : "-") +
               (TouchService(flags, facts) ? "T" : "-") + (PenPresent(flags, facts) ? "p" : "-");
    });
}

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

using Names = std::map<std::string, std::string>;

Names NamesOf(const std::string &table)
{
    const auto rows = TableRows(table);
    return {rows.begin(), rows.end()};
}

class Values : public IMacroValues {
public:
    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override
    {
        return mWords.count(key) != 0 ? mWords[key] : defaultValue;
    }
    std::optional<std::string> Value(const std::string &upperName) override
    {
        return mValues.count(upperName) != 0 ? std::optional(mValues[upperName]) : std::nullopt;
    }

private:
    Names mWords = NamesOf("words"), mValues = NamesOf("values");
};

TEST(Macros, Expand)
{
    Values values;
    ExpectTable("macros", [&](const std::string &text) { return WithAssertions(ExpandMacros(text, values)); });
}

TEST(Macros, AMacroThatBringsItselfInIsGivenUp)
{
    Values values;
    EXPECT_GT(ExpandMacros("a!SELF!b", values).size(), 0x10000u);
    EXPECT_EQ(TakeAssertions(), "The macros of a!SELF!b do not end");
    // What ends may be long.
    EXPECT_EQ(ExpandMacros(std::string(0x20000, 'x') + "!TEMP!", values), std::string(0x20000, 'x') + "C:\\T\\");
    EXPECT_EQ(TakeAssertions(), "");
}

std::string gAsked;

RegLocation Parse(const std::string &text, RegRoot root = kRootLocalMachine)
{
    gAsked.clear();
    return ParseRegPathWith(text, root, [data = NamesOf("platform-data")](const std::string &name) {
        gAsked += " " + name;
        return data.count(name) != 0 ? data.at(name) : std::string();
    });
}

TEST(RegPath, RootsAndMacros)
{
    ExpectTable("registry-paths", [](const std::string &text) {
        const RegLocation location = Parse(text);
        return WithAssertions(std::to_string(location.mRootKey - kRootClasses) + ":" + location.mPath +
                              location.mPermissions + gAsked);
    });
    std::string odd; // is kept byte for byte
    for (int byte = 0; byte < 256; ++byte) {
        odd += static_cast<char>(byte);
    }
    EXPECT_EQ(Parse("HKEY_USERS\\" + odd).mPath, "\\" + odd);
    EXPECT_EQ(Parse("x\\y", kRootClasses).mRootKey, kRootClasses);
    EXPECT_EQ(Parse("!LOOP!\\below").mPath, "");
    EXPECT_EQ(TakeAssertions(), "PlatformData LOOP leads back to itself");
    EXPECT_EQ(Parse("!PING!").mRootKey, kRootUsers);
    EXPECT_EQ(TakeTraceRecords().size(), 1u);
    EXPECT_LT(gAsked.size(), 1000u);
}

} // namespace
