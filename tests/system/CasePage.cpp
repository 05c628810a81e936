#include "CasePage.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <regex>
#include <sstream>
#include <utility>

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

using Row = std::vector<std::string>;

// The cells of a table's line, without blanks and back-ticks around them.
Row Cells(const std::string &line)
{
    Row cells;
    std::istringstream stream(line.substr(1));
    for (std::string cell; std::getline(stream, cell, '|');) {
        const size_t first = cell.find_first_not_of(" `");
        cells.push_back(first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(" `") - first + 1));
    }
    return cells;
}

// Puts the cells of a row into a block; answers whether it names one.
bool Fill(const Row &names, const Row &row, CaseBlock *block_IO)
{
    bool named = false;
    std::string filled;
    for (std::string line : Lines(block_IO->mText)) {
        bool wanted = true;
        for (size_t i = 0; i < std::min(names.size(), row.size()); ++i) {
            const std::string mark = "{" + names[i] + "}";
            for (size_t at = 0; (at = line.find(mark, at)) != std::string::npos; at += row[i].size()) {
                line.replace(at, mark.size(), row[i]);
                named = true;
                wanted = wanted && row[i] != "-";
            }
        }
        filled += wanted ? line + "\n" : "";
    }
    block_IO->mText = std::regex_replace(filled, std::regex("<br>"), "\n");
    return named;
}

// The cases that a table makes of one: the case itself when it names no column.
std::vector<Case> FilledCases(const Case &test, const std::vector<Row> &table)
{
    std::vector<Case> cases;
    for (size_t row = 1; row < table.size(); ++row) {
        Case filled = test;
        filled.mName += "_" + std::to_string(row);
        bool named = Fill(table[0], table[row], &filled.mScript);
        for (auto *blocks : {&filled.mFiles, &filled.mBefore, &filled.mAfter}) {
            for (CaseBlock &block : *blocks) {
                named = Fill(table[0], table[row], &block) || named;
            }
        }
        if (!named) {
            return {test};
        }
        cases.push_back(filled);
    }
    return cases.empty() ? std::vector<Case>{test} : cases;
}

std::string Repeated(std::string line)
{
    static const std::regex kMany("%([0-9]+)\\*([^%]*)%");
    for (std::smatch found; std::regex_search(line, found, kMany);) {
        std::string many;
        for (int count = std::stoi(found[1]); count > 0; --count) {
            many += found[2];
        }
        line.replace(static_cast<size_t>(found.position()), static_cast<size_t>(found.length()), many);
    }
    return line;
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
            Finish();
            mOpen = std::exchange(mNext, Case());
            mTable = std::exchange(mNextTable, {});
        } else if (mOpen && !block.mKind.empty()) {
            mOpen->mAfter.push_back(block);
        }
    }

    // A line of a table; the one below its head is dashes alone.
    void TakeRow(const std::string &line, bool first)
    {
        if (first) {
            mNextTable.clear();
        }
        if (line.find_first_not_of("|-: ") != std::string::npos) {
            mNextTable.push_back(Cells(line));
        }
    }

    void Finish()
    {
        for (const Case &test : mOpen ? FilledCases(*mOpen, mTable) : std::vector<Case>()) {
            mCases->push_back(test);
        }
        mOpen.reset();
    }

private:
    std::string mPage;
    std::vector<Case> *mCases;
    Case mNext;
    std::optional<Case> mOpen;
    std::vector<Row> mNextTable, mTable;
};

void ReadPage(const std::string &folder, const std::string &name, std::vector<Case> *cases_O)
{
    CasePage page(name, cases_O);
    std::istringstream lines(ReadText(folder + "\\" + name));
    std::string heading;
    CaseBlock block;
    bool inside = false;
    bool table = false;
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
            block.mText += Repeated(line) + "\n";
        } else if (line.compare(0, 1, "#") == 0) {
            heading = line.substr(line.find_first_not_of("# "));
        } else if (line.compare(0, 1, "|") == 0) {
            page.TakeRow(Repeated(line), !table);
        }
        table = !inside && line.compare(0, 1, "|") == 0;
    }
    page.Finish();
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
