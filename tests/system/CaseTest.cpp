// Runs the cases of the manual and of tests/cases; tests/README.md tells how they are written.
#include <algorithm>
#include <regex>

#include "CaseMachine.h"
#include "CasePage.h"
#include "Fixture.h"
#include "TestService.h"
#include "WithoutRights.h"

namespace {

// Every pattern fits one record, in this order and with nothing between. The failure shows where the two part.
::testing::AssertionResult AreExactly(const std::vector<std::string> &messages, const std::vector<CaseText> &patterns)
{
    size_t at = 0;
    while (at < messages.size() && at < patterns.size() && Fits(patterns[at].mText, messages[at])) {
        ++at;
    }
    if (at == messages.size() && at == patterns.size()) {
        return ::testing::AssertionSuccess();
    }
    ::testing::AssertionResult result = ::testing::AssertionFailure();
    if (at < patterns.size()) {
        result << "line " << patterns[at].mLine << " of the page: " << patterns[at].mText;
    }
    for (size_t i = 0; i < messages.size(); ++i) {
        result << (i == at ? "\n  > " : "\n    ") << messages[i];
    }
    return result;
}

// The records between the two marks, without those that tell the names of the steps or of the redirection's entries,
// which are bound at first use.
std::vector<std::string> Written(const RunResult &run)
{
    std::vector<std::string> messages = MessagesBetween(run, "begin", "end");
    messages.erase(std::remove_if(messages.begin(), messages.end(),
                                  [](const std::string &message) {
                                      return Fits("Instruction *", message) || Fits("STDisableRedirect*", message);
                                  }),
                   messages.end());
    return messages;
}

std::vector<std::string> Messages(const std::vector<TraceRecord> &records)
{
    std::vector<std::string> messages;
    for (const TraceRecord &record : records) {
        messages.push_back(record.mMessage);
    }
    return messages;
}

std::vector<std::string> Texts(const std::vector<CaseText> &lines)
{
    std::vector<std::string> texts;
    for (const CaseText &line : lines) {
        texts.push_back(line.mText);
    }
    return texts;
}

class Cases : public ::testing::TestWithParam<Case> {
protected:
    void Stage(const CaseBlock &script)
    {
        if (const std::string package = script.Comment("package"); !package.empty()) {
            const std::string folder = EnvironmentText("TAVIX_PACKAGES") + "\\" + package;
            for (const std::string &name : Tree(folder)) {
                if (name.back() != '\\' && !FileExists(mPackage.Path(name))) { // the program is there
                    mPackage.Copy(folder + "\\" + name, name);
                }
            }
        } else if (script.mKind == "steps") {
            std::string main;
            for (const std::string &line : script.Comments("main")) {
                main += line + "\n";
            }
            mPackage.Steps(script.Text(), "", main);
        } else {
            mPackage.Script(script.Text());
        }
    }

    // One run, as the comments of a block tell.
    RunResult Play(const CaseBlock &script)
    {
        const auto comment = [&](const char *name, const std::string &otherwise = "") {
            return mMachine.Expanded(script.Comment(name, otherwise));
        };
        if (const std::string response = comment("response"); !response.empty()) {
            mPackage.InputResponse(response);
        }
        if (const std::string program = comment("program"); !program.empty()) {
            mPackage.Program(program);
        }
        if (std::string devices = comment("devices"); !devices.empty()) {
            devices = std::regex_replace(devices, std::regex(" *\\| *"), "\n");
            mPackage.File("tree.txt", devices + "\n").Environment("TAVIX_DEVICE_TREE", mPackage.Path("tree.txt"));
            mPackage.Environment("TAVIX_DEVICE_LOG", mPackage.Path("device-calls.txt"));
        }
        mPackage.StartedIn(comment("started in", "%PACKAGE%"))
            .TraceAt(comment("trace at"))
            .Language(comment("language"));
        const RunResult run = Run(comment("run", "/s"), comment("rights"));
        const std::string exitCode = std::to_string(run.mExitCode);
        EXPECT_EQ(exitCode, comment("exit", "0")) << GetParam().mPage << ":" << script.mLine;
        EXPECT_EQ(run.mOutputFile.value_or("none"), comment("output", exitCode));
        return run;
    }

    void Expect(const RunResult &run, const CaseBlock &block)
    {
        const bool exact = block.mKind == "logged" || block.mKind == "wrote"; // an empty record counts there
        std::vector<CaseText> lines;
        for (const CaseText &line : block.mLines) {
            if (exact || !line.mText.empty()) {
                lines.push_back({line.mLine, mMachine.Expanded(line.mText)});
            }
        }
        SCOPED_TRACE(GetParam().mPage + ":" + std::to_string(block.mLine));
        if (block.mKind == "trace") {
            EXPECT_TRUE(HasInOrder(run, Texts(lines)));
        } else if (block.mKind == "elevated") {
            EXPECT_TRUE(HasInOrder(mElevated, Texts(lines)));
        } else if (block.mKind == "logged") {
            EXPECT_TRUE(AreExactly(Logged(run), lines));
        } else if (block.mKind == "wrote") {
            EXPECT_EQ(CountRecords(run, "end"), 1u) << run.mTraceText;
            EXPECT_TRUE(AreExactly(Written(run), lines));
        } else if (block.mKind == "end") {
            std::vector<std::string> messages = Messages(run.mTrace);
            messages.erase(messages.begin(),
                           messages.end() - static_cast<ptrdiff_t>(std::min(messages.size(), lines.size())));
            EXPECT_TRUE(AreExactly(messages, lines));
        } else if (block.mKind == "lacks") {
            for (const CaseText &line : lines) {
                EXPECT_TRUE(Lacks(run, line.mText));
            }
        } else {
            for (const CaseText &line : lines) {
                EXPECT_TRUE(mMachine.Do(line.mText, true)) << GetParam().mPage << ":" << line.mLine;
            }
        }
    }

    // What a process wrote that was started with more rights is kept aside.
    RunResult Run(const std::string &tail, const std::string &rights)
    {
        if (rights.empty()) {
            return mPackage.Run(tail);
        }
        const auto &blocks = GetParam().mBlocks;
        const auto elevated =
            std::count_if(blocks.begin(), blocks.end(), [](auto &block) { return block.mKind == "elevated"; });
        const WithoutRightsResult result = RunWithoutRights(mPackage, tail, rights == "refused");
        EXPECT_EQ(result.mOtherTraces.size(), static_cast<size_t>(elevated)) << "processes with more rights";
        if (!result.mOtherTraces.empty()) {
            mElevated.mTrace = result.mOtherTraces.front();
        }
        return result.mParent;
    }

    Package mPackage;
    CaseMachine mMachine{mPackage};
    RunResult mElevated;
};

TEST_P(Cases, Hold)
{
    const Case &test = GetParam();
    for (const std::string &fault : test.mFaults) {
        ADD_FAILURE() << fault;
    }
    if (!test.mFaults.empty()) {
        return;
    }
    ASSERT_TRUE(WaitForServiceManager());
    const CaseBlock &script = test.Script();
    const std::string version = script.Comment("windows");
    if (!(version + script.Comment("language") + script.Comment("devices")).empty()) {
        SKIP_UNLESS_WINE();
    }
    std::unique_ptr<WindowsVersion> windows;
    if (!version.empty()) {
        windows = std::make_unique<WindowsVersion>(version);
    }
    Stage(script);
    RunResult run;
    for (const CaseBlock &block : test.mBlocks) {
        if (block.IsFile()) {
            mPackage.File(block.Comment("file"), block.Text());
        } else if (block.SetsUp()) {
            for (const CaseText &line : block.mLines) {
                ASSERT_TRUE(line.mText.empty() || mMachine.Do(line.mText, false)) << test.mPage << ":" << line.mLine;
            }
        } else if (block.IsScript() || block.mKind == "again") {
            run = Play(block);
        } else {
            Expect(run, block);
        }
    }
}

// The cases of a folder; those of pages for a 32-bit Windows, or the others.
std::vector<Case> CasesOf(const char *folder, bool win32)
{
    std::vector<Case> cases = ReadCases(EnvironmentText(folder), std::string(folder) == "TAVIX_DOCS");
    cases.erase(std::remove_if(cases.begin(), cases.end(),
                               [win32](const Case &test) { return Fits("*win32*", test.mPage) != win32; }),
                cases.end());
    return cases;
}

std::string NameOf(const ::testing::TestParamInfo<Case> &info)
{
    std::string page = info.param.mPage.substr(0, info.param.mPage.rfind('.'));
    std::replace_if(
        page.begin(), page.end(), [](char c) { return isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
    return page + "_" + info.param.mName;
}

INSTANTIATE_TEST_SUITE_P(Manual, Cases, ::testing::ValuesIn(CasesOf("TAVIX_DOCS", false)), NameOf);
INSTANTIATE_TEST_SUITE_P(Pages, Cases, ::testing::ValuesIn(CasesOf("TAVIX_CASES", false)), NameOf);
INSTANTIATE_TEST_SUITE_P(Win32Prefix, Cases, ::testing::ValuesIn(CasesOf("TAVIX_CASES", true)), NameOf);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Cases);

TEST(CasePages, AreThere)
{
    EXPECT_GT(CasesOf("TAVIX_DOCS", false).size(), 10u) << EnvironmentText("TAVIX_DOCS");
    EXPECT_GT(CasesOf("TAVIX_CASES", false).size(), 10u) << EnvironmentText("TAVIX_CASES");
}

// A page that says what nobody understands, in its last line but those of "end", and what is told of it.
TEST(CasePages, RefuseWhatTheyDoNotKnow)
{
    static const char *const kPages[][3] = {
        {"```before\nvalue HKLM\\X;n = strng x", "\n```\n```steps\n```\n```trace\n```", "unknown type: strng x"},
        {"```steps\n```\n```check\nno key 32 HKML\\X", "\n```", "unknown root: HKML\\X"},
        {"```steps\n```\n```check\nno key HKLM\\X;n", "\n```", "a value, not a key: HKLM\\X;n"},
        {"```steps\n```\n```check\nlocked a", "\n```", "unknown word: locked"},
        {"```steps\nLog;x\n```\n```trace\n```\n```again\n; exitt: 7", "\n```", "unknown comment: exitt"},
        {"```steps\n; exit: seven", "\n```\n```trace\n```", "unknown value of exit: seven"},
        {"```steps\n; run /s", "\n```\n```trace\n```", "no comment of the form '; name: value': ; run /s"},
        {"```steps\n```\n```trace\n```\n```lakcs", "\n```", "unknown block: lakcs"},
        {"```trace", "\n```\n```steps\n```\n```trace\n```", "a block out of place: trace"},
        {"```steps", "\n```", "nothing is expected of the script"},
        {"```steps\n```\n```trace\n```\n```check", "\nfolder a", "a block that does not end"},
        {"| a | run |\n|---|---|\n| 1 |", "\n```steps\nLog;{a}\n```\n```trace\n```",
         "a row of another number of cells"},
        {"| a | rnu |", "\n| 1 | /s |\n```steps\nLog;{a}\n```\n```trace\n```", "a column that nothing names: rnu"},
        {"| a |\n| 1 |\n```steps\nLog;{a}\n{b}", "\n```\n```trace\n```", "no such column: {b}"},
        {"| step | trace |\n| Log;x | x |\n```groups", "\n```", "groups without a table of steps"},
    };
    for (const auto &[begin, end, fault] : kPages) {
        const std::string place = "page.md:" + std::to_string(std::count(begin, begin + strlen(begin), '\n') + 1);
        std::vector<std::string> faults;
        for (const Case &test : ReadPage("page.md", std::string(begin) + end + "\n", false)) {
            faults.insert(faults.end(), test.mFaults.begin(), test.mFaults.end());
        }
        EXPECT_EQ(faults, std::vector<std::string>{place + ": " + fault}) << begin;
    }
}

} // namespace
