// The interpreter over a table of its own.
#include <stdexcept>

#include <gtest/gtest.h>

#include "FakeProfile.h"
#include "Script/CRunState.h"
#include "Script/Step.h"
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
    const struct {
        const char *mSteps, *mLog;
        uint16_t mStatus;
    } rows[] = {
        {"Log;1\n#Log;no\nWord;no\nlog;no\n Log;no\nLog;2;3\nLog\n", "1|2||", 0},
        {"Log;1\n\nLog;no\n", "1|", 0},
        {"Log;1\n<x>\nLog;no\n", "1|", 0},
        {"Log;1\nDONE;x\nLog;no\n", "1|", 0x60C},
        {"GoTo;<x>\n<x>Log;no\n<x>Log;last\n", "last|", 0},
        {"GoTo;<none>\nLog;no\n", "", 0},
        {"GoTo;x\nLog;no\n<x>Log;no\n", "", 0},
        {"GoTo;<DONE>\n<DONE>Log;no\n", "", 0},
        {"GoTo;\nLog;on\n", "on|", 0},
        {"GoTo;!In!\nLog;behind\n", "in|behind|", 0},
        {"!In!\n!In!;other\n!In!;missing\nLog;main\n", "in|other|main|", 0},
        {"!Loop!\n!In\n!!\nLog;end\n", "loop|loop|end|", 0},
        {"Say;!PRODUCT_NAME!x;7a;^w^\n", "Say,pen x,pen x,7,^w^|", 0},
        {"Fail;a;b\nLog;on\n", "on|", 0},
        {"", "", 0},
    };
    mRun.mProductName = "pen ";
    for (const auto &row : rows) {
        EXPECT_EQ(Run(row.mSteps), row.mLog) << row.mSteps;
        EXPECT_EQ(mStatus, row.mStatus) << row.mSteps;
        EXPECT_EQ(mScript.SetConfigFile(""), "main");
    }
}

TEST_F(Interpreter, TracesWhatItDoes)
{
    mProfile.mFiles["main"]["In"] = "Log;x\n";
    mRun.SetProgress(&mBar);
    mRun.mCommandMap["Gap"] = 8;
    TakeTraceRecords();
    Run("GoTo;<x>\n<x>GoTo;!In!\n!In!;missing\n!In\nFail;a;b\nGap;1\nDONE\n");
    EXPECT_EQ(TakeTraceRecords(),
              (std::vector<std::string>{"Executing steps for group Install", "Instruction GoTo", ", yes",
                                        ", True goto label <x>", "Instruction GoTo", ", yes", ", True goto command In",
                                        "Executing steps for group In", "Instruction Log", "Instruction !In!",
                                        "Goto command missing:In", "Skipping command: file does not exist",
                                        "Instruction !In", "endBang != std::string::npos", "Instruction Fail",
                                        "Step Fail;a;b failed: refused 12/32/99", "Instruction Gap",
                                        "Unknown step command: [Gap]", "Instruction DONE"}));
}

TEST_F(Interpreter, TheBarCountsTheStepsOfTheOutermostGroup)
{
    mRun.SetProgress(&mBar);
    mProfile.mFiles["main"]["In"] = "Log;1\nLog;2\n";
    const std::pair<const char *, const char *> rows[] = {
        {"", "0 500 "},
        {"Log\nLog\nLog\n", "0 125 250 375 500 "},
        {"#Log\nLog\n", "0 250 500 "},
        {"!In!\nGoTo;!In!\nWord\n", "0 250 500 "}, // a bare call and an unknown word leave the bar to the next step
        {"Log\nGoTo;<x>\nLog\n<x>Log\n", "0 100 200 300 500 "},
        {"Log\nDONE\n", "0 166 "},
        {"<a>Once;F;<a>\nOnce;G;<a>\nLog\n", "0 125 250 375 500 625 750 500 "}, // jumps back past its end
    };
    for (const auto &[steps, positions] : rows) {
        TakeTraceRecords();
        Run(steps);
        EXPECT_EQ(mBar.mPositions, positions) << steps;
    }
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
    const struct {
        const char *mFlags;
        int32_t mType;
        uint32_t mKind, mPresence;
        const char *mOutcome; // M the touch interface, P and T the services, p a pen
    } rows[] = {
        {"", 40, 0, 0, "----"},
        {"", 40, 0, 0x1, "MPT-"},
        {"", 40, 0, 0x2, "-P-p"},
        {"", 40, 0, 0x4, "-P-p"},
        {"", 60, 1, 0x1, "--T-"},
        {"", 60, 1, 0x801, "----"},
        {"", 61, 1, 0x1001, "----"},
        {"", 60, 1, 0x803, "-P-p"},
        {"", 60, 3, 0x1001, "MPT-"},
        {"", 51, 1, 0x801, "MPT-"},
        {"", 30, 0, 0x1810, "----"},
        {"SKIP_MTAPI=1", 40, 0, 0x1, "--T-"},
        {"FORCE_MTAPI=1", 60, 1, 0, "MPT-"},
        {"FORCE_MTAPI=1,SKIP_MTAPI=1", 40, 0, 0, "----"},
        {"FORCE_PEN_SERVICE=1", 40, 0, 0, "-P-p"},
        {"FORCE_PEN_SERVICE=2", 40, 0, 0, "----"},
        {"FORCE_PEN_SERVICE=1,SKIP_PEN_SERVICE=1", 40, 0, 0x2, "---p"},
        {"FORCE_TOUCH_SERVICE=1", 40, 0, 0, "--T-"},
        {"SKIP_TOUCH_SERVICE=1,FORCE_TOUCH_SERVICE=1", 40, 0, 0x1, "MP--"},
        {"SKIP_TOUCH_SERVICE=01=2, FORCE_MTAPI=1,=1,FORCE_PEN_SERVICE", 40, 0, 0x1, "MP--"},
    };
    for (const auto &row : rows) {
        std::string section = *row.mFlags == '\0' ? "" : std::string(row.mFlags) + ",";
        std::replace(section.begin(), section.end(), ',', '\0');
        Flags flags;
        flags.TakeStaticFlags(section);
        const ServiceFacts facts{row.mPresence, row.mKind, row.mType};
        const std::string outcome = std::string(NeedMTAPI(flags, facts) ? "M" : "-") +
                                    (PenService(flags, facts) ? "P" : "-") + (TouchService(flags, facts) ? "T" : "-") +
                                    (PenPresent(flags, facts) ? "p" : "-");
        EXPECT_EQ(outcome, row.mOutcome) << row.mFlags << " " << &row - rows;
    }
}

} // namespace
