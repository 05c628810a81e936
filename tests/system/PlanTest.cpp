// What tavixpack says about a run before it, and what the trace says behind it: random scripts, the same steps in the
// same order with the same outcomes, when the machine is described and when it is not.
#include <algorithm>
#include <random>

#include <nlohmann/json.hpp>

#include "Fixture.h"

namespace {

using Json = nlohmann::json;

constexpr char kMachineKey[] = "Software\\TAVIX\\PlanTest";
constexpr char kUserKey[] = "Software\\TAVIX\\PlanUser";

// One word out of several.
class CDice {
public:
    explicit CDice(uint32_t seed) : mNumbers(seed) {}
    uint32_t Below(uint32_t end) { return mNumbers() % end; }
    bool OneIn(uint32_t many) { return Below(many) == 0; }
    std::string Of(const std::vector<std::string> &words) { return words[Below(static_cast<uint32_t>(words.size()))]; }

private:
    std::mt19937 mNumbers;
};

// Scripts of steps that do no harm. "$" stands for the number of the script.
class CScriptWriter {
public:
    explicit CScriptWriter(uint32_t seed) : mDice(seed) {}

    // The groups of a script: its own, two that it calls, and those of the further file.
    std::string Groups(const std::string &number)
    {
        mNumber = number;
        return "[S" + number + "]\n" + Lines(14, 2) + "[S" + number + "A]\n" + Lines(6, 1) + "[S" + number + "B]\n" +
               Lines(4, 0);
    }
    std::string Further(const std::string &number)
    {
        mNumber = number;
        return "[S" + number + "F]\n" + Lines(4, 0);
    }

private:
    std::string Lines(uint32_t most, int calls)
    {
        mCalls = calls;
        mLabels = {"<one>", "<two>", "<three>"};
        std::string text;
        // Jumps lead on, but for one that is sure to come once.
        const bool circle = mDice.OneIn(6);
        text += circle ? "<again>NULL\n" : "";
        const uint32_t count = 2 + mDice.Below(most);
        for (uint32_t line = 0; line < count; ++line) {
            if (!mLabels.empty() && mDice.OneIn(4)) {
                text += mLabels.front(); // from here on nothing jumps to it, unless it comes twice
                mLabels.erase(mLabels.begin());
            }
            text += Step() + "\n";
        }
        text +=
            circle ? "CheckFlag;ROUND" + mNumber + ";1;<out>\nSetFlag;ROUND" + mNumber + ";1\nGoTo;<again>\n<out>NULL\n"
                   : "";
        return text + (mDice.OneIn(8) ? "<three>Log;last\n" : "");
    }

    std::string Path()
    {
        return mDice.Of({".\\w\\a.txt", ".\\w\\b.txt", ".\\W\\d\\c.txt", ".\\w\\d", "w", "!TEMP!t.txt",
                         "!TEMP!d\\u.txt", "!TEMP!d", "!.!\\w\\a.txt", ".\\w\\..\\w\\b.txt", ".\\src\\one.txt",
                         "^PLACE^", "!SYSTEM!\\TavixPlan\\s.txt", "!WINDOWS!\\SysWOW64\\TavixPlan\\s.txt"});
    }
    // Never a folder: the program waits for ever for a place beside one that a copy of a folder is to replace.
    std::string CopyTarget()
    {
        return mDice.Of({".\\w\\a.txt", ".\\w\\b.txt", ".\\W\\d\\c.txt", "!TEMP!t.txt", "!TEMP!d\\u.txt", "^PLACE^",
                         "!.!\\w\\b.txt", "!SYSTEM!\\TavixPlan\\s.txt", "!WINDOWS!\\SysWOW64\\TavixPlan\\s.txt"});
    }
    std::string Folder()
    {
        return mDice.Of({".\\w", ".\\w\\d", "!TEMP!d", "!TEMP!e\\f", "!SYSTEM!\\TavixPlan", ".\\copy"});
    }
    std::string Source()
    {
        return mDice.Of(
            {".\\src\\one.txt", ".\\src\\two.txt", ".\\SRC\\one.txt", "none.txt", ".\\src", "!.!\\src\\two.txt"});
    }
    std::string Key()
    {
        return mDice.Of({"Software\\TAVIX\\PlanTest\\A", "HKEY_LOCAL_MACHINE\\Software\\TAVIX\\PlanTest\\A\\B",
                         "HKEY_CURRENT_USER\\Software\\TAVIX\\PlanUser", "!BASE!\\C", "!BASE!", "!USER!\\D",
                         "HKEY_CURRENT_USER"});
    }
    std::string TestedKey()
    {
        return mDice.Of({"Software\\TAVIX\\PlanTest\\A", "Software\\TAVIX\\PlanTest\\A\\B", "Software\\TAVIX\\PlanTest",
                         "HKEY_CURRENT_USER\\Software\\TAVIX\\PlanUser", "!!BASE!!\\C", "!!USER!!\\D"});
    }
    std::string Name() { return mDice.Of({"v", "V", "w", "@", ""}); }
    std::string Flag() { return mDice.Of({"F" + mNumber, "G" + mNumber, "FORCE_PEN_SERVICE", "SKIP_TOUCH_SERVICE"}); }
    std::string Target()
    {
        std::vector<std::string> targets = mLabels;
        targets.insert(targets.end(), {"<DONE>", "<nowhere>", ""});
        if (mCalls != 0) {
            targets.insert(targets.end(), {"!S" + mNumber + "B!", "!Missing!"});
        }
        return mDice.Of(targets);
    }

    std::string Step()
    {
        switch (mDice.Below(30)) {
        case 0:
        case 1:
        case 2:
            return mDice.Of({"CopyFile;", "CopyFileRedir;", "CopyFileCustom;", "CopyFileCustomRedir;"}) + Source() +
                   ";" + CopyTarget();
        case 3:
            return mDice.Of({"CopyFileIfNewer;", "CopyFileIfNewerRedir;"}) + Source() + ";" + CopyTarget();
        case 4:
            return "CreateDir;" + Folder();
        case 5:
            return mDice.Of({"DeleteDir;", "DeleteDirRedir;"}) + Folder();
        case 6:
            return "DeleteDirContents;" + Folder();
        case 7:
        case 8:
            return mDice.Of({"DeleteFile;", "DeleteFileRedir;"}) + CopyTarget();
        case 9:
            return "CopyDir;" + mDice.Of({".\\src", ".\\w", ".\\none", ".\\src\\one.txt"}) + ";" +
                   mDice.Of({".\\copy", "!TEMP!e"});
        case 10:
        case 11:
        case 12:
        case 13:
            return mDice.Of({"Exist;", "NotExist;", "ExistRedir;", "NotExistRedir;"}) +
                   (mDice.OneIn(3) ? Folder() : Path()) + ";" + Target();
        case 14:
        case 15:
        case 16:
            return mDice.Of({"RegValueString;", "RegValueStringRedir;", "RegValueExpStr;", "RegValueDWORD;",
                             "RegValueDWORDRedir;"}) +
                   Key() + ";" + Name() + ";" + mDice.Of({"text", "", "5", "256", "!APP VERSION!"});
        case 17:
            return mDice.Of({"RegValueMultiStringAppeRedir;", "RegValueMultiStringDeleRedir;",
                             "RegValueMultiStringAppe;", "RegValueMultiStringDele;"}) +
                   Key() + ";list;" + mDice.Of({"a", "b"});
        case 18:
        case 19:
        case 20:
            return mDice.Of({"RegExist;", "RegNotExist;"}) + TestedKey() + ";" + mDice.Of({"v", "w", "", "list", "@"}) +
                   ";" + Target();
        case 21:
            return "CheckRegDWORD;" + Key() + ";" + Name() + ";" + mDice.Of({"5", "256", "0"}) + ";" + Target();
        case 22:
            return "SetFlag;" + Flag() + ";" + mDice.Of({"0", "1", "2", "x"});
        case 23:
        case 24:
            return "CheckFlag;" + Flag() + ";" + mDice.Of({"0", "1", "2"}) + ";" + Target();
        case 25:
            return mDice.Of({"InstallPenCheck;",
                             "InstallTouchCheck;",
                             "NoDriverRequired;",
                             "IsPenPresent;",
                             "Is64;",
                             "Not64;",
                             "IsWin7;",
                             "IsWin8;",
                             "IsVista;",
                             "IsXP;",
                             "IsInk;",
                             "OSVersion;6.x;",
                             "OSVersion;6.1;",
                             "ProductIDIsAttached;VID;",
                             "ProductIDIsNotAttached;VID;",
                             "IfRebootRequired;",
                             "IfNotOlder;.\\w\\a.txt;.\\src\\one.txt;",
                             "DetectPreISDSplit;",
                             "IfVHIDObsolete;",
                             "ConNeedsHidRouter;",
                             "ShouldUninstallHidRouter;"}) +
                   Target();
        case 26:
            return mDice.Of({"Log;text !TEMP!", "IsComment;x", "NULL", "Word;of a later version", "# no step",
                             "ShowDialog;1", "Log;a\\0Log;b"}) +
                   (mDice.OneIn(6) ? "\nDONE" : "");
        case 27:
            return "GoTo;" + Target();
        case 28:
            return mCalls == 2 && mDice.OneIn(3) ? "!S$A!;"
                   : mCalls != 0 ? mDice.Of({"Command;!S$B!;", "!S$F!;.\\sub.dat", "Command;!S$F!;.\\none.dat",
                                             "!S$B!;.\\w\\a.txt", "!S$B!;none.dat"})
                                 : "Log;leaf";
        default:
            return mDice.OneIn(5) ? "SetRebootFlag" : mDice.OneIn(3) ? "Language" : "Log;plain";
        }
    }

    CDice mDice;
    std::string mNumber;
    std::vector<std::string> mLabels;
    int mCalls = 0; // how deep
};

std::string Doubled(const std::string &text)
{
    std::string doubled;
    for (size_t at = 0; at < text.size(); ++at) {
        doubled += text[at];
        doubled += text[at] == '\\' && text.compare(at, 2, "\\0") != 0 ? "\\" : "";
    }
    return doubled;
}

std::string Numbered(std::string text, const std::string &number)
{
    for (size_t at = text.find('$'); at != std::string::npos; at = text.find('$', at)) {
        text.replace(at, 1, number);
    }
    return text;
}

// What tavixpack writes about the package.
std::string PlanText(const Package &package, const std::string &options)
{
    const std::string file = package.Temp("plan.txt");
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE output = CreateFileA(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
    startup.hStdError = output;
    PROCESS_INFORMATION process = {};
    std::string line = "\"" + EnvironmentText("TAVIX_PACK") + "\" plan \"" + package.Folder() + "\" " + options;
    EXPECT_TRUE(CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process))
        << line;
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 60000), WAIT_OBJECT_0);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    CloseHandle(output);
    const std::string text = ReadText(file);
    DeleteFileA(file.c_str());
    return text;
}

Json PlanOf(const Package &package, const std::string &options)
{
    const std::string text = PlanText(package, "--format json --macro \"TEMP=" + package.Temp() + "\\\" " + options);
    Json json = Json::parse(text, nullptr, false);
    EXPECT_FALSE(json.is_discarded()) << text.substr(0, 2000);
    return json;
}

// A step or the beginning of a group in the trace, with the records that it left.
struct Heading {
    std::string mText;
    std::vector<std::string> mRecords;
    bool Has(const std::string &pattern) const
    {
        return std::any_of(mRecords.begin(), mRecords.end(),
                           [&](const std::string &record) { return Fits(pattern, record); });
    }
};

std::vector<Heading> HeadingsOf(const RunResult &run)
{
    std::vector<Heading> headings;
    std::string thread;
    for (const TraceRecord &record : run.mTrace) {
        const bool group = Fits("Executing steps for group *", record.mMessage);
        if (group && headings.empty()) {
            thread = record.mThread;
        }
        if (record.mThread != thread) {
            continue;
        }
        if (group || Fits("Instruction *", record.mMessage)) {
            headings.push_back({record.mMessage, {}});
        } else if (!headings.empty()) {
            headings.back().mRecords.push_back(record.mMessage);
        }
    }
    return headings;
}

// Walks the plan beside the trace: at an open question along the course that the run has taken.
class CComparison {
public:
    explicit CComparison(const std::vector<Heading> &run) : mRun(run) {}

    void Whole(const Json &plan)
    {
        Block(plan["plan"]);
        if (mFault.empty() && mAt != mRun.size()) {
            Fault("the plan is over");
        }
    }
    std::string mFault; // the first difference
    size_t mOpen = 0;   // steps of the run of which the plan does not know how they come out

private:
    void Fault(const std::string &text)
    {
        std::string before;
        for (size_t at = mAt < 8 ? 0 : mAt - 8; at < mAt + 2 && at < mRun.size(); ++at) {
            before += "\n    " + mRun[at].mText;
            for (const std::string &record : mRun[at].mRecords) {
                before += "\n        " + record;
            }
        }
        mFault = text + " at record " + std::to_string(mAt) + before;
    }

    const Heading *Next(const std::string &text)
    {
        if (mAt == mRun.size() || mRun[mAt].mText != text) {
            Fault("plan: " + text + ", run: " + (mAt == mRun.size() ? "end" : mRun[mAt].mText));
            return nullptr;
        }
        return &mRun[mAt++];
    }

    void Block(const Json &block)
    {
        for (auto node = block.begin(); node != block.end() && mFault.empty(); ++node) {
            if (node->contains("group")) {
                if (Next("Executing steps for group " + (*node)["group"].get<std::string>()) != nullptr) {
                    Block((*node)["steps"]);
                }
            } else {
                Step(*node);
            }
        }
    }

    void Step(const Json &step)
    {
        const std::string command = step["step"];
        const Heading *const found = Next("Instruction " + command);
        if (found == nullptr) {
            return;
        }
        const Heading heading = *found;
        const bool call = step["does"] == "calls group";
        const bool yes = call ? !heading.Has("Skipping command*") : heading.Has(", True goto *");
        const std::string shown = "line " + step["line"].dump() + " " + step["text"].get<std::string>();
        if (step.contains("answer") && step["answer"] != "open" && (step["answer"] == "yes") != yes) {
            Fault(shown + ": the plan says " + step["answer"].get<std::string>());
        } else if (step.contains("yes")) {
            ++mOpen;
            const Json &course = step[yes ? "yes" : "no"];
            Block(course["steps"]);
            if (mFault.empty() && course.contains("end")) {
                Fault(shown + ": " + course["end"].get<std::string>());
            }
            return;
        }
        Outcome(step, heading, shown);
        if (mFault.empty() && step.contains("groups")) {
            Block(step["groups"]);
        }
    }

    // What the step has done, by its own words.
    void Outcome(const Json &step, const Heading &heading, const std::string &shown)
    {
        const std::string command = step["step"];
        const std::string acts = step.value("acts", "");
        const bool tells = command.compare(0, 3, "Log") == 0;
        if (tells && !heading.Has(step["fields"][0])) {
            Fault(shown + ": another text");
        }
        if (acts == "open") {
            ++mOpen;
            return;
        }
        const std::string does = step["does"];
        bool done = acts == "yes";
        if (does == "writes file") {
            done = heading.Has(", New, Copied Yes *") || heading.Has(", Deleted, Copyed *");
        } else if (does == "copies folder") {
            done = heading.Has(", DirCopied Yes *");
        } else if (does == "makes folder") {
            done = heading.Has("Directory *, Created Yes *") && acts == "yes";
        } else if (does == "deletes folder") {
            done = heading.Has("Directory *, Removed Yes *");
        } else if (does == "deletes file") {
            done = heading.Has(", Deleted Yes *");
        } else if (does == "writes value") {
            done = heading.Has("*, status: 0x0") || heading.Has("*, status 0x0");
        }
        if (done != (acts == "yes")) {
            Fault(shown + ": the plan says " + acts + " " + step.value("note", ""));
        }
    }

    const std::vector<Heading> &mRun;
    size_t mAt = 0;
};

// The folder that the scripts have in the system folders of both views goes, in front of a run and behind it.
class CleanSystemFolders {
public:
    CleanSystemFolders() { Clean(); }
    ~CleanSystemFolders() { Clean(); }
    CleanSystemFolders(const CleanSystemFolders &) = delete;
    CleanSystemFolders &operator=(const CleanSystemFolders &) = delete;

private:
    static void Clean()
    {
        const std::string windows = EnvironmentText("windir");
        RemoveTree(windows + "\\SysWOW64\\TavixPlan");
        const RedirectionOff off;
        RemoveTree(windows + "\\System32\\TavixPlan");
    }
};

TEST(Plan, SaysWhatARunDoes)
{
    SKIP_UNLESS_WINE();
    const std::pair<const char *, const char *> versions[] = {{"win7", "7"}, {"win81", "8.1"}, {"vista", "vista"}};
    const std::string wanted = EnvironmentText("TAVIX_PLAN_PACKAGES"); // more of them, for a longer look
    const uint32_t packages = wanted.empty() ? 6 : static_cast<uint32_t>(std::stoul(wanted));
    constexpr uint32_t kScripts = 50;
    for (uint32_t seed = 1; seed <= packages; ++seed) {
        const RegistrySnapshot machine(HKEY_LOCAL_MACHINE, kMachineKey), user(HKEY_CURRENT_USER, kUserKey);
        RemoveKey(HKEY_LOCAL_MACHINE, kMachineKey, EView64);
        RemoveKey(HKEY_LOCAL_MACHINE, kMachineKey, EView32);
        RemoveKey(HKEY_CURRENT_USER, kUserKey);
        const CleanSystemFolders clean;
        Package package;
        CScriptWriter writer(seed);
        std::string calls, groups, further;
        for (uint32_t script = 0; script < kScripts; ++script) {
            const std::string number = std::to_string(script);
            calls += "!S" + number + "!;\n";
            groups += Doubled(Numbered(writer.Groups(number), number));
            further += Doubled(Numbered(writer.Further(number), number));
        }
        package.Steps(calls, "[PlatformData]\nBASE=Software\\\\TAVIX\\\\PlanTest\nUSER=HKEY_CURRENT_"
                             "USER\\\\Software\\\\TAVIX\\\\PlanUser\n[en]\nPLACE=!TEMP!p.txt\nLog;words\n" +
                                 groups);
        package.File("sub.dat", further).File("src\\one.txt", "one").File("src\\two.txt", "two");
        const auto [wine, windows] = versions[seed % 3];
        const WindowsVersion version(wine);
        const std::string all = std::string("--windows ") + windows + " --no-device --branches 100000 ";
        const Json known = PlanOf(package, all + "--nothing-else");
        const Json open = PlanOf(package, all);
        const RunResult run = package.Run();
        const std::vector<Heading> headings = HeadingsOf(run);
        ASSERT_GT(headings.size(), kScripts);
        for (const bool described : {true, false}) {
            CComparison comparison(headings);
            comparison.Whole(described ? known : open);
            EXPECT_EQ(comparison.mFault, "") << "seed " << seed << (described ? ", described" : ", open");
            // On a machine that is described the times of files alone leave a question.
            EXPECT_LT(comparison.mOpen * (described ? 10 : 2), headings.size()) << "seed " << seed;
            std::printf("seed %u: %u steps and groups, %u of them open\n", static_cast<unsigned>(seed),
                        static_cast<unsigned>(headings.size()), static_cast<unsigned>(comparison.mOpen));
        }
        EXPECT_EQ(known["exit"], std::to_string(run.mExitCode)) << "seed " << seed;
        EXPECT_GT(open["questions"].size(), 3u);
        if (HasFailure()) {
            break; // one is enough to look at
        }
    }
}

TEST(Plan, LooksAsTheManualShows)
{
    const std::string page = ReadText(EnvironmentText("TAVIX_DOCS") + "\\plan.md");
    const auto block = [&](const std::string &beginning) {
        const size_t from = page.find(beginning) + beginning.size();
        return page.substr(from, page.find("```", from) - from);
    };
    Package package;
    package.Script(block("```ini\n; file: PACKAGE/installer.dat\n"));
    std::string text = PlanText(package, block("$ tavixpack plan PACKAGE").substr(0, 12));
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    EXPECT_EQ(text, block("```text\n"));
}

} // namespace
