#include "CasePage.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "Files.h"
#include "TraceLog.h"

namespace {

std::string TestName(const std::string &heading, size_t line)
{
    std::string name;
    for (const char c : heading) {
        if (isalnum(static_cast<unsigned char>(c)) != 0) {
            name += c;
        } else if (!name.empty() && name.back() != '_') {
            name += '_';
        }
    }
    return name + (name.empty() || name.back() == '_' ? "" : "_") + std::to_string(line);
}

bool IsScript(const CaseBlock &block)
{
    return block.mKind == "ini" || block.mKind == "steps";
}

// Puts the blocks of a page together, one after the other.
class CasePage {
public:
    CasePage(std::string page, std::vector<Case> *cases_O) : mPage(std::move(page)), mCases(cases_O) {}

    void Take(const CaseBlock &block, const std::string &heading)
    {
        if (block.mKind == "before") {
            mNext.mBefore.push_back(block);
        } else if (IsScript(block) && !Comment(block, "file").empty()) {
            mNext.mFiles.push_back(block);
        } else if (IsScript(block)) {
            mNext.mPage = mPage;
            mNext.mName = TestName(heading, block.mLine);
            mNext.mScript = block;
            mCases->push_back(mNext);
            mNext = Case();
            mOpen = true;
        } else if (mOpen && !block.mKind.empty()) {
            mCases->back().mAfter.push_back(block);
        }
    }

private:
    std::string mPage;
    std::vector<Case> *mCases;
    Case mNext;
    bool mOpen = false;
};

void ReadPage(const std::string &folder, const std::string &name, std::vector<Case> *cases_O)
{
    CasePage page(name, cases_O);
    std::istringstream lines(ReadText(folder + "\\" + name));
    std::string heading;
    CaseBlock block;
    bool inside = false;
    size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.compare(0, 3, "```") == 0) {
            if (inside) {
                page.Take(block, heading);
            }
            inside = !inside;
            block = {number, line.substr(3), ""};
        } else if (inside) {
            block.mText += line + "\n";
        } else if (line.compare(0, 1, "#") == 0) {
            heading = line.substr(line.find_first_not_of("# "));
        }
    }
}

} // namespace

void PrintTo(const Case &test, std::ostream *out)
{
    *out << test.mPage << ":" << test.mScript.mLine;
}

std::vector<Case> ReadCases(const std::string &folder)
{
    std::vector<Case> cases;
    for (const std::string &name : Tree(folder)) {
        if (Fits("*.md", name)) {
            ReadPage(folder, name, &cases);
        }
    }
    return cases;
}

std::string Comment(const CaseBlock &block, const std::string &name, const std::string &otherwise)
{
    std::istringstream lines(block.mText);
    const std::string beginning = "; " + name + ":";
    for (std::string line; std::getline(lines, line) && line.compare(0, 1, ";") == 0;) {
        if (line.compare(0, beginning.size(), beginning) == 0) {
            const size_t value = line.find_first_not_of(' ', beginning.size());
            return value == std::string::npos ? "" : line.substr(value);
        }
    }
    return otherwise;
}

std::vector<std::string> Lines(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> FilledLines(const std::string &text)
{
    std::vector<std::string> filled = Lines(text);
    filled.erase(std::remove(filled.begin(), filled.end(), std::string()), filled.end());
    return filled;
}
