// How many steps a second the interpreter runs, with everything traced, in a tree of groups that do nothing but set
// flags, check them and jump; and how that compares to writing the same trace with bare calls.
#include <string>
#include <vector>

#include "Bench.h"

namespace {

constexpr int kRounds = 9;
constexpr int kBranches = 10; // groups that Install calls, and groups that each of these calls
constexpr int kTurns = 33; // of flag, check and jump in a group at the end of a branch; a section holds 10 KB at most

// Script text, and the steps that are run when it is.
struct Group {
    std::string mText;
    size_t mSteps = 0;

    void Run(const std::string &line)
    {
        mText += line + "\r\n";
        ++mSteps;
    }
    void Skip(const std::string &line) { mText += line + "\r\n"; }
};

// Every jump passes a line over that would show in the count.
Group Leaf(const std::string &name)
{
    Group group;
    group.mText = "[" + name + "]\r\n";
    for (int turn = 0; turn < kTurns; ++turn) {
        const std::string number = std::to_string(turn);
        group.Run("<turn" + number + ">SetFlag;TURN;" + number);
        group.Run("CheckFlag;TURN;" + number + ";<checked" + number + ">");
        group.Skip("Log;not reached");
        group.Run("<checked" + number + ">GoTo;<turn" + std::to_string(turn + 1) + ">");
        group.Skip("Log;not reached");
    }
    group.Run("<turn" + std::to_string(kTurns) + ">NULL");
    return group;
}

// A group and, behind it, all the groups that it calls; `depth` levels of them.
Group Branch(const std::string &name, int depth)
{
    if (depth == 0) {
        return Leaf(name);
    }
    Group group;
    Group called;
    group.mText = "[" + name + "]\r\n";
    for (int branch = 0; branch < kBranches; ++branch) {
        const std::string below = name + "-" + std::to_string(branch);
        group.Run("Command;!" + below + "!");
        const Group next = Branch(below, depth - 1);
        called.mText += next.mText;
        called.mSteps += next.mSteps;
    }
    return {group.mText + called.mText, group.mSteps + called.mSteps};
}

} // namespace

int main()
{
    const StagedPackage package;
    const Group tree = Branch("Install", 2);
    std::vector<double> starts;
    std::vector<double> runs;
    std::vector<double> bare;
    size_t records = 0;
    for (int round = 0; round < kRounds; ++round) {
        package.Script("[Install]\r\n");
        starts.push_back(package.Run().mMilliseconds);
        package.Script(tree.mText);
        runs.push_back(package.Run().mMilliseconds);
        const std::string trace = package.Trace();
        if (CountOf(trace, "-- Instruction ") != tree.mSteps || CountOf(trace, "not reached") != 0) {
            Fail("the trace does not tell of the steps of the script");
        }
        const std::vector<std::string> own = Records(trace);
        records = own.size();
        bare.push_back(WriteBare(own, package.Path("bare.txt")));
    }
    const double net = Median(runs) - Median(starts);
    Print("steps run", static_cast<double>(tree.mSteps), "steps", 0);
    Print("records traced", static_cast<double>(records), "records", 0);
    Print("size of the script", static_cast<double>(tree.mText.size()) / 1024, "KiB", 0);
    Print("run, less one without steps", net, "ms");
    Print("steps a second", 1000.0 * static_cast<double>(tree.mSteps) / net, "/s", 0);
    Print("bare writes of the same trace", Median(bare), "ms");
    Print("steps ratio of the medians", net / Median(bare), "x", 2);
    Print("steps ratio of the best", (Least(runs) - Least(starts)) / Least(bare), "x", 2);
    return 0;
}
