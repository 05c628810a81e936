// The interpreter over a table of its own.
#include <stdexcept>

#include "Common/StringUtilities.h"
#include "FakeProfile.h"
#include "Script/CRunState.h"
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

} // namespace
