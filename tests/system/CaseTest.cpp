// Runs the cases of the manual and of tests/cases; their form is told in CasePage.h and CaseMachine.h.
#include <algorithm>
#include <regex>

#include "CaseMachine.h"
#include "CasePage.h"
#include "Fixture.h"
#include "WithoutRights.h"

namespace {

// Every pattern fits one record, in this order and with nothing between.
::testing::AssertionResult AreExactly(const std::vector<std::string> &messages,
                                      const std::vector<std::string> &patterns)
{
    const bool same =
        messages.size() == patterns.size() && std::equal(patterns.begin(), patterns.end(), messages.begin(), Fits);
    ::testing::AssertionResult result = same ? ::testing::AssertionSuccess() : ::testing::AssertionFailure();
    for (const std::string &message : messages) {
        result << "\n    " << message;
    }
    return result;
}

// The records between the two marks, without those that tell the names of the steps.
std::vector<std::string> Written(const RunResult &run)
{
    std::vector<std::string> messages = MessagesBetween(run, "begin", "end");
    messages.erase(std::remove_if(messages.begin(), messages.end(),
                                  [](const std::string &message) { return Fits("Instruction *", message); }),
                   messages.end());
    return messages;
}

class Cases : public ::testing::TestWithParam<Case> {
protected:
    void Stage(const CaseBlock &script)
    {
        if (const std::string package = Comment(script, "package"); !package.empty()) {
            const std::string folder = EnvironmentText("TAVIX_PACKAGES") + "\\" + package;
            for (const std::string &name : Tree(folder)) {
                if (name.back() != '\\' && !FileExists(mPackage.Path(name))) { // the program is there
                    mPackage.Copy(folder + "\\" + name, name);
                }
            }
        } else if (script.mKind == "steps") {
            mPackage.Steps(script.mText);
        } else {
            mPackage.Script(script.mText);
        }
    }

    // One run, as the comments of a block tell.
    RunResult Play(const CaseBlock &script)
    {
        if (const std::string response = Comment(script, "response"); !response.empty()) {
            mPackage.InputResponse(response);
        }
        if (const std::string program = Comment(script, "program"); !program.empty()) {
            mPackage.Program(mMachine.Expanded(program));
        }
        if (const std::string folder = Comment(script, "started in"); !folder.empty()) {
            mPackage.StartedIn(mMachine.Expanded(folder));
        }
        mPackage.TraceAt(mMachine.Expanded(Comment(script, "trace at")));
        if (const std::string language = Comment(script, "language"); !language.empty()) {
            mPackage.Language(language);
        }
        if (std::string devices = Comment(script, "devices"); !devices.empty()) {
            devices = std::regex_replace(devices, std::regex(" *\\| *"), "\n");
            mPackage.File("tree.txt", devices + "\n").Environment("TAVIX_DEVICE_TREE", mPackage.Path("tree.txt"));
            mPackage.Environment("TAVIX_DEVICE_LOG", mPackage.Path("device-calls.txt"));
        }
        const RunResult run = Run(Comment(script, "run", "/s"), Comment(script, "rights"));
        const std::string exitCode = std::to_string(run.mExitCode);
        EXPECT_EQ(exitCode, Comment(script, "exit", "0")) << GetParam().mPage << ":" << script.mLine;
        EXPECT_EQ(run.mOutputFile.value_or("none"), Comment(script, "output", exitCode));
        return run;
    }

    void Expect(const RunResult &run, const CaseBlock &block)
    {
        const bool exact = block.mKind == "logged" || block.mKind == "wrote"; // an empty record counts there
        const std::string text = mMachine.Expanded(block.mText);
        const std::vector<std::string> lines = exact ? Lines(text) : FilledLines(text);
        const std::string place = GetParam().mPage + ":" + std::to_string(block.mLine);
        if (block.mKind == "trace") {
            EXPECT_TRUE(HasInOrder(run, lines)) << place;
        } else if (block.mKind == "elevated") {
            EXPECT_TRUE(HasInOrder(mElevated, lines)) << place;
        } else if (block.mKind == "logged") {
            EXPECT_TRUE(AreExactly(Logged(run), lines)) << place;
        } else if (block.mKind == "wrote") {
            EXPECT_EQ(CountRecords(run, "end"), 1u) << place << run.mTraceText;
            EXPECT_TRUE(AreExactly(Written(run), lines)) << place;
        } else if (block.mKind == "lacks") {
            for (const std::string &line : lines) {
                EXPECT_TRUE(Lacks(run, line)) << place;
            }
        } else if (block.mKind == "check") {
            for (const std::string &line : lines) {
                EXPECT_TRUE(mMachine.Check(line)) << place << ": " << line;
            }
        } else if (block.mKind == "then") {
            for (const std::string &line : lines) {
                EXPECT_TRUE(mMachine.SetUp(line)) << place;
            }
        } else {
            ADD_FAILURE() << place << ": no such block: " << block.mKind;
        }
    }

    // What a process wrote that was started with more rights is kept aside.
    RunResult Run(const std::string &tail, const std::string &rights)
    {
        if (rights.empty()) {
            return mPackage.RunPlain(tail);
        }
        const auto &after = GetParam().mAfter;
        const auto elevated =
            std::count_if(after.begin(), after.end(), [](const CaseBlock &block) { return block.mKind == "elevated"; });
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
    const std::string version = Comment(test.mScript, "windows");
    if (!version.empty() || !Comment(test.mScript, "language").empty() || !Comment(test.mScript, "devices").empty()) {
        SKIP_UNLESS_WINE();
    }
    std::unique_ptr<WindowsVersion> windows;
    if (!version.empty()) {
        windows = std::make_unique<WindowsVersion>(version);
    }
    for (const CaseBlock &file : test.mFiles) {
        mPackage.File(Comment(file, "file"), file.mText);
    }
    Stage(test.mScript);
    for (const CaseBlock &block : test.mBefore) {
        for (const std::string &line : FilledLines(block.mText)) {
            ASSERT_TRUE(mMachine.SetUp(line));
        }
    }
    EXPECT_FALSE(test.mAfter.empty()) << "a script without anything that it is to do";
    RunResult run = Play(test.mScript);
    for (const CaseBlock &block : test.mAfter) {
        if (block.mKind == "again") {
            run = Play(block);
        } else {
            Expect(run, block);
        }
    }
}

// The cases of a folder; those of pages for a 32-bit Windows, or the others.
std::vector<Case> CasesOf(const char *folder, bool win32)
{
    std::vector<Case> cases = ReadCases(EnvironmentText(folder));
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

} // namespace
