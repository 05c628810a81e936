// The entries of docs/checks.md: each has a script that its check finds something in, in the words that the page shows,
// and one in which nothing is found.
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Pack/CheckReport.h"
#include "Pack/CodePage.h"
#include "Pack/PackageCheck.h"
#include "TraceRecorder.h"

namespace {

const std::string kPage =
#include "ChecksText.h"
    ;

constexpr const char *kPageWords[] = {"LicenseTitle",      "LicenseText1",     "LicenseText2",
                                      "AcceptText",        "DeclineText",      "ProgressTitle",
                                      "InstallProgress",   "UnConfirmTitle",   "UnConfirmText",
                                      "YesText",           "NoText",           "NonAdminTitle",
                                      "NonAdminText",      "OkText",           "RebootBeforeTitle",
                                      "RebootBeforeText",  "RebootNowText",    "RebootLaterText",
                                      "NotSupportedTitle", "NotSupportedText", "UnRebootTitle",
                                      "UnRebootText",      "RebootTitle",      "RebootText",
                                      "DoneTitle",         "DoneText"};

using Lines = std::vector<std::string>;

Lines LinesOf(const std::string &text)
{
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// The words of the window that the section does not have itself.
Lines Words(const std::string &section)
{
    Lines words;
    if (section.find("\nLicenseFile=") == std::string::npos) {
        words.emplace_back("LicenseFile=.\\\\agreement.txt");
    }
    for (const std::string word : kPageWords) {
        if (section.find("\n" + word + "=") == std::string::npos) {
            words.push_back(word + "=Pen");
        }
    }
    return words;
}

// A package made of a block of the page.
class CPagePackage : public IScriptSource {
public:
    explicit CPagePackage(const std::string &block)
    {
        mTree.AddFile("agreement.txt");
        std::string file = "installer.dat";
        std::map<std::string, uint32_t> codePages;
        mLines[file];
        const Lines lines = LinesOf(block);
        for (size_t at = 0; at < lines.size(); ++at) {
            std::smatch found;
            if (std::regex_match(lines[at], found, std::regex("; (file|code page): (.*)"))) {
                if (found[1] == "file") {
                    mLines[file = found[2]];
                } else {
                    codePages[file] = static_cast<uint32_t>(std::stoul(found[2]));
                }
            } else if (std::regex_match(lines[at], found, std::regex("; with: (.*)"))) {
                const std::regex comma(", ");
                const std::string names = found[1];
                for (std::sregex_token_iterator name(names.begin(), names.end(), comma, -1), end; name != end; ++name) {
                    mTree.AddFile(*name);
                }
            } else if (lines[at] == "%words%") {
                Append(file, Words(SectionAround(lines, at)));
            } else if (std::regex_match(lines[at], found, std::regex("%(\\d+)\\*(.*)%"))) {
                Append(file, Lines(std::stoul(found[1]), found[2]));
            } else {
                Append(file, {Repeated(lines[at])});
            }
        }
        AddWhatIsMissing();
        for (const auto &[name, text] : mLines) {
            const auto codePage = codePages.find(name);
            mFiles[name] = codePage == codePages.end() ? text : CCodePage(codePage->second).FromUtf8(text);
            mTree.AddFile(name);
        }
    }

    std::optional<std::string> ReadFile(const std::string &path) override
    {
        const auto file = mFiles.find(path.substr(path.rfind('\\') + 1));
        return file != mFiles.end() ? std::optional<std::string>(file->second) : std::nullopt;
    }

    const CPackageTree &Tree() const { return mTree; }

    // What the check says, a line each.
    std::string Check()
    {
        const CPackageCheck check(*this, mTree);
        std::string said;
        for (const Diagnostic &found : check.Found()) {
            const CheckInfo &info = InfoOf(found.mCheck);
            said += check.PathOf(found.mPlace) + ":" + std::to_string(found.mPlace.mLine) + ":" +
                    std::to_string(found.mPlace.mColumn) + ": " + SeverityWord(info.mSeverity) + ": " + found.mText +
                    " [" + info.mName + "]\n";
        }
        TakeTraceRecords();
        return said;
    }

private:
    void Append(const std::string &file, const Lines &lines)
    {
        for (const std::string &line : lines) {
            mLines[file] += line + "\r\n";
        }
    }

    static std::string SectionAround(const Lines &lines, size_t at)
    {
        size_t from = at, end = at;
        while (lines[from].front() != '[') {
            --from;
        }
        while (end + 1 < lines.size() && lines[end + 1].compare(0, 1, "[") != 0) {
            ++end;
        }
        std::string section;
        for (size_t line = from; line <= end; ++line) {
            section += "\n" + lines[line];
        }
        return section;
    }

    static std::string Repeated(std::string line)
    {
        std::smatch found;
        while (std::regex_search(line, found, std::regex("%(\\d+)\\*(.*?)%"))) {
            std::string text;
            for (size_t count = std::stoul(found[1]); count > 0; --count) {
                text += found[2];
            }
            line = found.prefix().str() + text + found.suffix().str();
        }
        return line;
    }

    void AddWhatIsMissing()
    {
        const std::string main = "\n" + mLines["installer.dat"];
        const std::map<std::string, Lines> sections = {
            {"MAIN", {"[MAIN]", "Version=1.10", "PrefType=Pen_Tablet", "Languages=en"}},
            {"Install", {"[Install]", "Log;installing"}},
            {"Uninstall", {"[Uninstall]", "Log;removing"}}};
        for (const auto &[name, lines] : sections) {
            if (main.find("\n[" + name + "]") == std::string::npos) {
                Append("installer.dat", lines);
            }
        }
        if (main.find("\n[en]") == std::string::npos) {
            Append("installer.dat", {"[en]"});
            Append("installer.dat", Words(std::string()));
        }
    }

    CPackageTree mTree;
    std::map<std::string, std::string> mLines;
    std::map<std::string, std::string> mFiles;
};

struct Entry {
    std::string mName;
    std::string mBad, mSays, mGood;
};

std::vector<Entry> Entries()
{
    std::vector<Entry> entries(1); // the head of the page
    std::string *block = nullptr;
    for (const std::string &line : LinesOf(kPage)) {
        if (line.compare(0, 5, "### `") == 0) {
            entries.push_back({line.substr(5, line.rfind('`') - 5), "", "", ""});
        } else if (line.compare(0, 3, "```") == 0) {
            const bool known = block == nullptr;
            Entry *const entry = known ? &entries.back() : nullptr;
            block = !known              ? nullptr
                    : line == "```bad"  ? &entry->mBad
                    : line == "```says" ? &entry->mSays
                                        : &entry->mGood;
        } else if (block != nullptr) {
            *block += line + "\n";
        }
    }
    return entries;
}

} // namespace

TEST(PackCheck, EachEntryOfTheManualShowsWhatItsCheckFinds)
{
    std::set<std::string> named;
    const std::vector<Entry> entries = Entries();
    EXPECT_EQ(CPagePackage(entries.front().mGood).Check(), "");
    for (auto at = entries.begin() + 1; at != entries.end(); ++at) {
        const Entry &entry = *at;
        SCOPED_TRACE(entry.mName);
        EXPECT_TRUE(named.insert(entry.mName).second);
        EXPECT_NE(FindCheck(entry.mName), ECheckCount);
        EXPECT_EQ(CPagePackage(entry.mBad).Check(), entry.mSays);
        EXPECT_EQ(CPagePackage(entry.mGood).Check(), "");
        for (const std::string &line : LinesOf(entry.mSays)) {
            const std::string end = " [" + entry.mName + "]";
            EXPECT_EQ(line.substr(line.size() - std::min(line.size(), end.size())), end);
        }
        EXPECT_FALSE(entry.mSays.empty() || entry.mGood.empty());
    }
    for (int check = 0; check < ECheckCount; ++check) {
        EXPECT_EQ(named.count(InfoOf(static_cast<ECheck>(check)).mName), 1U)
            << InfoOf(static_cast<ECheck>(check)).mName;
    }
}

TEST(PackCheck, ReportsMarkThePlaceForPeopleAndForPrograms)
{
    CPagePackage package("[Install]\nLog;one\n\tGoTo;<end\n");
    const CPackageCheck check(package, package.Tree());
    std::ostringstream text, json, sarif;
    WriteCheckText({{"a folder", check}}, false, text);
    EXPECT_EQ(text.str(),
              "a folder/installer.dat:3:7: error: \"<end\" is neither a <label> nor a !GROUP!, and ends the "
              "group [bad-target]\n"
              "     GoTo;<end\n"
              "          ^~~~\n"
              "1 package, 3 steps: 1 error, 0 warnings\n");
    WriteCheckJson({{"a folder", check}}, json);
    WriteCheckSarif({{"a folder", check}}, sarif);
    const auto finding = nlohmann::json::parse(json.str())["packages"][0]["findings"][0];
    EXPECT_EQ(finding["check"], "bad-target");
    EXPECT_EQ(finding["line"], 3);
    const auto log = nlohmann::json::parse(sarif.str());
    EXPECT_EQ(log["version"], "2.1.0");
    const auto &run = log["runs"][0], &result = run["results"][0];
    EXPECT_EQ(run["tool"]["driver"]["rules"][result["ruleIndex"].get<size_t>()]["id"], result["ruleId"]);
    EXPECT_EQ(result["level"], finding["severity"]);
    const auto &place = result["locations"][0]["physicalLocation"];
    EXPECT_EQ(place["artifactLocation"]["uri"], "a%20folder/installer.dat");
    EXPECT_EQ(place["region"]["startColumn"], finding["column"]);
    TakeTraceRecords();
}
