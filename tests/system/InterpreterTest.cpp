// Groups of steps as a script writes them, and what runs of them.
#include "Fixture.h"

namespace {

struct GroupCase {
    const char *name;
    const char *steps; // the group Install, and other sections behind it
    std::vector<std::string> logged;
};

void PrintTo(const GroupCase &test, std::ostream *out)
{
    *out << test.name;
}

class Groups : public ::testing::TestWithParam<GroupCase> {};

TEST_P(Groups, Run)
{
    Package package;
    package.Steps(GetParam().steps);
    const RunResult run = package.Run();
    EXPECT_EQ(Logged(run), GetParam().logged) << Has(run, "").message();
    EXPECT_EQ(run.mExitCode, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Interpreter, Groups,
    ::testing::Values(
        // line shapes
        GroupCase{"Empty", "", {}}, GroupCase{"InOrder", "Log;1\nLog;2\nLog;3", {"1", "2", "3"}},
        GroupCase{"HashLinesAreNoSteps", "# text\nLog;1\n#Log;2\nLog;3", {"1", "3"}},
        GroupCase{"SemicolonLinesAreThePlatformsComments", "Log;1\n; Log;2\nLog;3", {"1", "3"}},
        GroupCase{"BlanksInFrontAreThePlatforms", "Log;1\n   Log;2", {"1", "2"}},
        GroupCase{"NamesAreExact", "log;1\nLOG;2\nLog ;3\nLog;4", {"4"}},
        GroupCase{"FieldsKeepTheirBlanks", "Log; 1 ", {" 1"}}, // the platform takes those at the line's end
        GroupCase{"SurplusFieldsAreNotRead", "Log;1;2;3", {"1"}}, GroupCase{"MissingFieldsAreEmpty", "Log", {""}},
        GroupCase{"QuotesAreCharacters", R"(Log;"1;2")", {"\"1"}},
        GroupCase{"EqualSignsAreCharacters", "Log;A=1=2", {"A=1=2"}},
        GroupCase{"ALabelledStepRuns", "<a>Log;1\n<b>Log;2", {"1", "2"}},
        GroupCase{"OpenBracketIsText", "<a Log;1\nLog;2", {"2"}},
        GroupCase{"UnknownWordsArePassedOver", "NoSuchWord;1\nLog;2", {"2"}},
        // the end of a group
        GroupCase{"Done", "Log;1\nDONE\nLog;2", {"1"}}, GroupCase{"DoneWithFields", "Log;1\nDONE;x\nLog;2", {"1"}},
        GroupCase{"WordsThatBeginWithDone", "Log;1\nDONEX\nLog;2", {"1", "2"}},
        GroupCase{"DoneBehindALabel", "Log;1\n<x>DONE\nLog;2", {"1"}},
        GroupCase{"ABareLabelEndsTheGroup", "Log;1\n<x>\nLog;2", {"1"}},
        GroupCase{"NullCarriesALabel", "Log;1\n<x>NULL\nLog;2", {"1", "2"}},
        GroupCase{"EscapedNulCutsALine", "Log;1\\0Log;2\nLog;3", {"1", "2", "3"}},
        GroupCase{"TwoEscapedNulsEndTheGroup", "Log;1\\0\\0Log;2\nLog;3", {"1"}},
        // jumps
        GroupCase{"Forward", "GoTo;<x>\nLog;1\n<x>Log;2", {"2"}},
        GroupCase{"ToTheLastOfTwo", "GoTo;<x>\n<x>Log;1\n<x>Log;2\nLog;3", {"2", "3"}},
        GroupCase{"ToTheLastOfTwoBackward",
                  "<x>Log;1\nCheckFlag;F;1;<end>\nSetFlag;F;1\nGoTo;<x>\n<end>Log;2",
                  {"1", "1", "2"}},
        GroupCase{"ToAnUnknownLabel", "Log;1\nGoTo;<y>\nLog;2", {"1"}},
        GroupCase{"WithoutBrackets", "<x>Log;1\nGoTo;x\nLog;2", {"1"}},
        GroupCase{"CaseCounts", "GoTo;<X>\n<x>Log;1", {}},
        GroupCase{"ToDoneInBrackets", "Log;1\nGoTo;<DONE>\n<DONE>Log;2", {"1"}},
        GroupCase{"ToALineThatBeginsWithDone", "GoTo;DONE\nLog;1\nDONEX\nLog;2", {"2"}},
        GroupCase{"WithoutATarget", "GoTo\nLog;1", {"1"}},
        GroupCase{"ConditionFalse", "CheckFlag;F;1;<x>\nLog;1\n<x>Log;2", {"1", "2"}},
        GroupCase{"ConditionTrue", "CheckFlag;F;0;<x>\nLog;1\n<x>Log;2", {"2"}},
        GroupCase{"ConditionTrueWithoutTarget", "CheckFlag;F;0\nLog;1", {"1"}},
        // group calls
        GroupCase{"BareCall", "Log;1\n!In!\nLog;3\n[In]\nLog;2", {"1", "2", "3"}},
        GroupCase{"CommandCall", "Log;1\nCommand;!In!\nLog;3\n[In]\nLog;2", {"1", "2", "3"}},
        GroupCase{"CommandWithoutMarks", "Log;1\nCommand;In\nLog;3\n[In]\nLog;2", {"1", "3"}},
        GroupCase{"CallAsATarget", "GoTo;!In!\nLog;3\n[In]\nLog;2", {"2", "3"}},
        GroupCase{"TargetCallWithTextBehindIt", "GoTo;!In!<x>\nLog;3\n<x>Log;4\n[In]\nLog;2", {"2", "3", "4"}},
        GroupCase{"LabelledCall", "GoTo;<x>\nLog;1\n<x>!In!\nLog;3\n[In]\nLog;2", {"2", "3"}},
        GroupCase{"MissingGroup", "Log;1\n!No!\nLog;2", {"1", "2"}},
        GroupCase{"EmptyName", "Log;1\n!!\nLog;2", {"1", "2"}},
        GroupCase{"DoneInAnInnerGroup", "!In!\nLog;2\n[In]\nLog;1\nDONE\nLog;no", {"1", "2"}},
        GroupCase{"UnknownLabelInAnInnerGroup",
                  "!In!\nLog;2\n<x>Log;3\n[In]\nLog;1\nGoTo;<x>\nLog;no",
                  {"1", "2", "3"}}, // labels belong to their group
        GroupCase{"Nested",
                  "!A!\nLog;5\n[A]\nLog;1\n!B!\nLog;4\n[B]\nLog;2\n!C!\n[C]\nLog;3\nDONE\n",
                  {"1", "2", "3", "4", "5"}},
        GroupCase{"FlagsLiveOnInTheCaller", "!In!\nCheckFlag;F;5;<x>\nDONE\n<x>Log;1\n[In]\nSetFlag;F;5", {"1"}},
        // the worked example of the manual
        GroupCase{"InkBranch",
                  "# sample\nLog;starting\nIsInk;<ink>\nGoTo;<end>\n<ink>Command;!InkParts!;\n<end>DONE\n"
                  "[InkParts]\nLog;ink",
                  {"starting", "ink"}}),
    [](const auto &test) { return test.param.name; });

TEST(Interpreter, CallsIntoOtherScripts)
{
    Package package;
    package.File("other.dat", "[In]\r\nLog;other In\r\n!Deeper!\r\n[Deeper]\r\nLog;other Deeper\r\n");
    package.Steps(R"(!In!;.\\other.dat
!In!
Command;!In!;!.!\\other.dat
Command;!In!;.\\^File^.dat
!In!;missing.dat
!NotThere!;.\\other.dat
!In!;.
Log;end)",
                  "[In]\nLog;own In\n[NotThere]\nLog;wrong script\n[en]\nFile=other\n");
    const RunResult run = package.Run();
    EXPECT_EQ(Logged(run), (std::vector<std::string>{"other In", "other Deeper", "own In", "other In", "other Deeper",
                                                     "other In", "other Deeper", "own In", "end"}));
    EXPECT_TRUE(HasInOrder(run, {"Goto command .\\other.dat:In", "Goto command :In",
                                 "Goto command " + package.Path("other.dat:In"), "Goto command .\\other.dat:In",
                                 "Goto command missing.dat:In", "Skipping command: file does not exist",
                                 "Goto command .\\other.dat:NotThere", "Goto command .:In"}));
}

// The group that a target calls is looked for in the script of its caller.
TEST(Interpreter, ATargetCallsIntoThePresentScript)
{
    Package package;
    package.File("other.dat", "[In]\r\nGoTo;!Both!\r\n[Both]\r\nLog;other\r\n");
    package.Steps("!In!;.\\\\other.dat\nGoTo;!Both!\n[Both]\nLog;own");
    EXPECT_EQ(Logged(package.Run()), (std::vector<std::string>{"other", "own"}));
}

// The platform looks for a script without a folder in that of Windows, although the file beside the program exists.
TEST(Interpreter, AScriptNeedsAFolderInItsName)
{
    Package package;
    package.File("other.dat", "[In]\r\nLog;other\r\n");
    package.Steps("!In!;other.dat\nLog;end");
    EXPECT_EQ(Logged(package.Run()), (std::vector<std::string>{"end"}));
}

TEST(Interpreter, RecordsOfAGroup)
{
    Package package;
    package.Steps("Log;a\nWord;b\n<l>!In!\n!In\nGoTo;!In!\nGoTo;<end>\n<end>NULL\n[In]\nDONE\n");
    const RunResult run = package.Run();
    EXPECT_EQ(MessagesBetween(run, "DoWork", "[Response Result]"),
              (std::vector<std::string>{"Executing steps for group Install", "Instruction Log", "a", "Instruction Word",
                                        "Instruction !In!", "Goto command :In", "Executing steps for group In",
                                        "Instruction DONE", "Instruction !In", "endBang != std::string::npos",
                                        "Instruction GoTo", ", True goto command In", "Executing steps for group In",
                                        "Instruction DONE", "Instruction GoTo", ", True goto label <end>",
                                        "Instruction NULL"}));
}

TEST(Interpreter, AManyTimesRepeatedLoopEnds)
{
    // 40 turns over 8 labels; each turn sets one flag more.
    std::string steps;
    for (int i = 0; i < 40; ++i) {
        const std::string number = std::to_string(i);
        steps += "<turn" + number + ">CheckFlag;F" + number + ";1;<turn" + std::to_string(i + 1) + ">\nSetFlag;F" +
                 number + ";1\nGoTo;<turn0>\n";
    }
    Package package;
    package.Steps(steps + "<turn40>Log;end");
    const RunResult run = package.Run();
    EXPECT_EQ(Logged(run), (std::vector<std::string>{"end"}));
    EXPECT_EQ(CountRecords(run, "Instruction SetFlag"), 40u);
    EXPECT_EQ(CountRecords(run, "Instruction CheckFlag"), 40u * 41u / 2 + 40u);
}

TEST(Interpreter, DeeplyNestedGroupsRun)
{
    std::string groups;
    for (int i = 0; i < 60; ++i) {
        groups += "[G" + std::to_string(i) + "]\n!G" + std::to_string(i + 1) + "!\n";
    }
    Package package;
    package.Steps("!G0!\nLog;back", groups + "[G60]\nLog;deepest");
    EXPECT_EQ(Logged(package.Run()), (std::vector<std::string>{"deepest", "back"}));
}

TEST(Interpreter, SmallCommands)
{
    Package package;
    package.Steps("Delay;abc\nDelay;40x\nShowDialog;anything\nLog;!TEMP!^a^\nIsComment;said\nNULL;x\n"
                  "IfRebootRequired;<no>\nSetRebootFlag\nIfRebootRequired;<yes>\n<no>Log;no\n<yes>Log;yes");
    const DWORD start = GetTickCount();
    const RunResult run = package.Run();
    EXPECT_GE(GetTickCount() - start, 40u);
    EXPECT_EQ(run.mExitCode, 2u);
    EXPECT_EQ(MessagesBetween(run, "Executing steps*", "[Response Result]"),
              (std::vector<std::string>{
                  "Instruction Delay", "Sleeping 0", "Instruction Delay", "Sleeping 40", "Instruction ShowDialog",
                  "Instruction Log", "!TEMP!^a^", "Instruction IsComment", "# said", "Instruction NULL",
                  "Instruction IfRebootRequired", "IfRebootRequired: no", "Instruction SetRebootFlag",
                  "Reboot requested from the script", "Instruction IfRebootRequired", "IfRebootRequired: yes",
                  ", True goto label <yes>", "Instruction Log", "yes"}));
}

} // namespace
