#include "CasePage.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <utility>

#include "CaseMachine.h"
#include "Files.h"
#include "TraceLog.h"

namespace {

// What a comment may say, by its name; anything where there is no pattern.
const std::map<std::string, std::string> kComments = {
    {"run", ""},
    {"file", ""},
    {"output", ""},
    {"response", ""},
    {"program", ""},
    {"main", ""},
    {"package", ""},
    {"devices", ""},
    {"started in", ""},
    {"trace at", ""},
    {"exit", "\\d+"},
    {"rights", "none|refused"},
    {"windows", "win2k|winxp|winxp64|vista|win7|win8|win81|win10"},
    {"language", "[a-z]+_[A-Z]+\\.UTF-8"},
};

const char *const kExpectations[] = {"trace", "lacks", "end", "logged", "wrote", "elevated", "check", "then", "again"};

bool IsExpectation(const std::string &kind)
{
    return std::find(std::begin(kExpectations), std::end(kExpectations), kind) != std::end(kExpectations);
}

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

void Replace(std::string *text_IO, const std::string &what, const std::string &by)
{
    for (size_t at = 0; (at = text_IO->find(what, at)) != std::string::npos; at += by.size()) {
        text_IO->replace(at, what.size(), by);
    }
}

// The lines that a cell holds.
std::vector<CaseText> CellLines(const std::string &cell, size_t line)
{
    std::vector<CaseText> lines;
    size_t at = 0;
    for (size_t end; (end = cell.find("<br>", at)) != std::string::npos; at = end + 4) {
        lines.push_back({line, cell.substr(at, end - at)});
    }
    lines.push_back({line, cell.substr(at)});
    return lines;
}

struct Table {
    struct Row {
        size_t mLine;
        std::vector<std::string> mCells;
    };
    std::vector<std::string> mNames;
    std::vector<Row> mRows;
    size_t mLine = 0;

    // The column, counted from 0; -1 without one.
    int Column(const std::string &name) const
    {
        const auto found = std::find(mNames.begin(), mNames.end(), name);
        return found == mNames.end() ? -1 : static_cast<int>(found - mNames.begin());
    }
    // Each row is a step of one run.
    bool HoldsSteps() const
    {
        return !mNames.empty() && mNames[0] == "step" && mNames.size() > 1 &&
               std::all_of(mNames.begin() + 1, mNames.end(),
                           [](const std::string &name) { return name == "trace" || name == "machine"; });
    }
};

// The cells of a table's line, without blanks and one pair of back-ticks around them.
std::vector<std::string> Cells(std::string line)
{
    std::vector<std::string> cells;
    Replace(&line, "\\|", "\x01");
    Replace(&line, "`<br>`", "<br>");
    std::istringstream stream(line.substr(1));
    for (std::string cell; std::getline(stream, cell, '|');) {
        const size_t first = cell.find_first_not_of(' ');
        cell = first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') - first + 1);
        if (cell.size() > 1 && cell.front() == '`' && cell.back() == '`') {
            cell = cell.substr(1, cell.size() - 2);
        }
        Replace(&cell, "\x01", "|");
        cells.push_back(cell);
    }
    return cells;
}

void EachBlock(Case *test, const std::function<void(CaseBlock &)> &visit)
{
    visit(test->mScript);
    for (auto *blocks : {&test->mFiles, &test->mBefore, &test->mAfter}) {
        std::for_each(blocks->begin(), blocks->end(), visit);
    }
}

// Puts the row's cells in the places of {name}; a line that names a cell with nothing but "-" goes.
void FillBlock(const Table &table, const Table::Row &row, CaseBlock *block_IO)
{
    std::vector<CaseText> filled;
    for (const CaseText &line : block_IO->mLines) {
        std::string text = line.mText;
        bool wanted = true;
        for (size_t i = 0; i < table.mNames.size(); ++i) {
            const std::string mark = "{" + table.mNames[i] + "}";
            wanted = wanted && (row.mCells[i] != "-" || text.find(mark) == std::string::npos);
            Replace(&text, mark, row.mCells[i]);
        }
        for (const CaseText &part : wanted ? CellLines(text, line.mLine) : std::vector<CaseText>()) {
            filled.push_back(part);
        }
    }
    block_IO->mLines = filled;
}

// A column that no block names and that is called like a comment or a block stands for it.
void AddColumn(const std::string &name, const std::string &cell, size_t line, Case *test_IO)
{
    if (cell == "-") {
        return;
    }
    std::vector<CaseText> lines = CellLines(cell, line);
    if (name == "before") {
        test_IO->mBefore.push_back({line, name, lines});
    } else if (IsExpectation(name)) {
        test_IO->mAfter.push_back({line, name, lines});
    } else {
        for (CaseText &comment : lines) {
            comment.mText = "; " + name + ": " + comment.mText;
        }
        test_IO->mScript.mLines.insert(test_IO->mScript.mLines.begin(), lines.begin(), lines.end());
    }
}

// Whether the line is "; name: value".
bool IsComment(const std::string &line, std::string *name_O, std::string *value_O)
{
    const size_t colon = line.find(':');
    if (line.compare(0, 1, ";") != 0 || colon == std::string::npos) {
        return false;
    }
    const size_t name = std::min(line.find_first_not_of("; "), colon);
    const size_t value = line.find_first_not_of(' ', colon + 1);
    *name_O = line.substr(name, colon - name);
    *value_O = value == std::string::npos ? "" : line.substr(value);
    return true;
}

// Puts the blocks and tables of a page together, one after the other.
class PageReader {
public:
    PageReader(std::string page, bool manual) : mPage(std::move(page)), mManual(manual) {}

    std::vector<Case> Read(const std::string &text)
    {
        std::istringstream lines(text);
        CaseBlock block;
        bool inside = false;
        size_t number = 0;
        for (std::string line; std::getline(lines, line);) {
            ++number;
            if (!line.empty() && line.back() == '\r') {
                line.pop_back();
            }
            line = Repeated(line);
            const bool fence = line.compare(0, 3, "```") == 0;
            const bool row = !inside && line.compare(0, 1, "|") == 0;
            if (row) {
                TakeRow(line, number);
            } else if (mReading.mLine != 0) {
                TakeTable();
            }
            if (fence) {
                if (inside) {
                    Take(block);
                }
                inside = !inside;
                block = {number, line.substr(3), {}};
            } else if (inside) {
                block.mLines.push_back({number, line});
            } else if (line.compare(0, 1, "#") == 0) {
                mHeading = line.substr(std::min(line.find_first_not_of("# "), line.size()));
            }
        }
        if (inside) {
            Complain(block.mLine, "a block that does not end");
        }
        if (mReading.mLine != 0) {
            TakeTable();
        }
        Finish();
        ComplainOfRest(number);
        return mCases;
    }

private:
    static std::string Repeated(std::string line)
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

    void TakeRow(const std::string &line, size_t number)
    {
        if (mReading.mLine == 0) {
            mReading = {Cells(line), {}, number};
        } else if (line.find_first_not_of("|-: ") == std::string::npos) {
            return; // below the head
        } else {
            mReading.mRows.push_back({number, Cells(line)});
            if (mReading.mRows.back().mCells.size() != mReading.mNames.size() && !mManual) {
                Complain(number, "a row of another number of cells");
                mReading.mRows.pop_back();
            }
        }
    }

    void TakeTable()
    {
        const Table table = std::exchange(mReading, {});
        if (table.HoldsSteps()) {
            TakeSteps(table);
        } else if (mTable.mLine != 0 && !mManual) {
            Complain(mTable.mLine, "a table without a script");
        } else {
            mTable = table;
        }
    }

    // Each row is a step, the records that it leaves and what the machine shows behind the run.
    void TakeSteps(const Table &table)
    {
        CaseBlock script{table.mLine, "steps", {}}, wrote{table.mLine, "wrote", {}}, check{table.mLine, "check", {}};
        const auto add = [](const std::vector<CaseText> &lines, CaseBlock *block_IO) {
            block_IO->mLines.insert(block_IO->mLines.end(), lines.begin(), lines.end());
        };
        auto more = mGroups.mLines.begin();
        while (more != mGroups.mLines.end() && more->mText.compare(0, 1, ";") == 0) {
            script.mLines.push_back(*more++);
        }
        script.mLines.push_back({table.mLine, "Log;begin"});
        for (const Table::Row &row : table.mRows) {
            add(CellLines(row.mCells[0], row.mLine), &script);
            for (const auto &[name, block] : {std::pair("trace", &wrote), std::pair("machine", &check)}) {
                const int column = table.Column(name);
                if (column > 0 && !row.mCells[static_cast<size_t>(column)].empty()) {
                    add(CellLines(row.mCells[static_cast<size_t>(column)], row.mLine), block);
                }
            }
        }
        script.mLines.push_back({table.mLine, "<end>Log;end"});
        script.mLines.insert(script.mLines.end(), more, mGroups.mLines.end());
        mGroups = {};
        TakeScript(script);
        if (table.Column("trace") > 0) {
            mOpen->mAfter.push_back(wrote);
        }
        if (!check.mLines.empty()) {
            mOpen->mAfter.push_back(check);
        }
    }

    void Take(const CaseBlock &block)
    {
        const bool script = block.mKind == "ini" || block.mKind == "steps";
        if (block.mKind == "before") {
            mNext.mBefore.push_back(block);
        } else if (block.mKind == "each") {
            mEach.push_back(block);
        } else if (block.mKind == "groups" && mGroups.mLine == 0) {
            mGroups = block;
        } else if ((script || block.mKind == "xml") && !Comment(block, "file").empty()) {
            mNext.mFiles.push_back(block);
        } else if (script) {
            TakeScript(block);
        } else if (mOpen && IsExpectation(block.mKind)) {
            mOpen->mAfter.push_back(block);
        } else if (!mManual || (!block.mKind.empty() && block.mKind != "xml")) {
            Complain(block.mLine, (IsExpectation(block.mKind) || block.mKind == "groups" ? "a block out of place: "
                                                                                         : "unknown block: ") +
                                      block.mKind);
        }
    }

    void TakeScript(const CaseBlock &script)
    {
        Finish();
        mOpen = std::exchange(mNext, Case());
        mOpen->mPage = mPage;
        mOpen->mName = TestName(mHeading, script.mLine);
        mOpen->mScript = script;
        mOpen->mBefore.insert(mOpen->mBefore.begin(), mEach.begin(), mEach.end());
        mOpenTable = std::exchange(mTable, {});
    }

    void Finish()
    {
        if (!mOpen) {
            return;
        }
        Case test = *mOpen;
        mOpen.reset();
        std::vector<std::string> columns; // that stand for a comment or a block
        bool used = false;                // the table is one of the case
        for (const std::string &name : mOpenTable.mNames) {
            bool named = false;
            EachBlock(&test, [&](CaseBlock &block) {
                named = named || Text(block).find("{" + name + "}") != std::string::npos;
            });
            used = used || named;
            if (named) {
                continue;
            }
            if (name == "before" || IsExpectation(name) || kComments.count(name) != 0) {
                columns.push_back(name);
            } else if (!mManual) {
                Complain(mOpenTable.mLine, "a column that nothing names: " + name);
            }
        }
        used = used || (!columns.empty() && columns.size() == mOpenTable.mNames.size());
        if (!used) {
            Add(test);
            return;
        }
        for (size_t row = 0; row < mOpenTable.mRows.size(); ++row) {
            Case filled = test;
            filled.mName += "_" + std::to_string(row + 1);
            const Table::Row &cells = mOpenTable.mRows[row];
            EachBlock(&filled, [&](CaseBlock &block) { FillBlock(mOpenTable, cells, &block); });
            for (const std::string &name : columns) {
                AddColumn(name, cells.mCells[static_cast<size_t>(mOpenTable.Column(name))], cells.mLine, &filled);
            }
            Add(filled);
        }
    }

    // Adds the case with its faults.
    void Add(Case test)
    {
        const auto complain = [&](size_t line, const std::string &what) {
            test.mFaults.push_back(mPage + ":" + std::to_string(line) + ": " + what);
        };
        if (test.mAfter.empty()) {
            complain(test.mScript.mLine, "nothing is expected of the script");
        }
        EachBlock(&test, [&](CaseBlock &block) {
            const bool acts = block.mKind == "before" || block.mKind == "each" || block.mKind == "then";
            bool first = block.mKind == "ini" || block.mKind == "steps" || block.mKind == "again";
            for (const CaseText &line : block.mLines) {
                first = first && line.mText.compare(0, 1, ";") == 0;
                std::string name, value;
                if (first && !IsComment(line.mText, &name, &value)) {
                    complain(line.mLine, "no comment of the form '; name: value': " + line.mText);
                } else if (first && kComments.count(name) == 0) {
                    complain(line.mLine, "unknown comment: " + name);
                } else if (first && !kComments.at(name).empty() &&
                           !std::regex_match(value, std::regex(kComments.at(name)))) {
                    complain(line.mLine, "unknown value of " + name + ": " + value);
                } else if ((acts || block.mKind == "check") && !line.mText.empty()) {
                    const std::string fault = CaseMachine::Fault(line.mText, !acts);
                    if (!fault.empty()) {
                        complain(line.mLine, fault);
                    }
                }
                static const std::regex kMark("\\{[a-z][A-Za-z0-9 ]*\\}");
                if (std::regex_search(line.mText, kMark)) {
                    complain(line.mLine, "no such column: " + line.mText);
                }
            }
        });
        mCases.push_back(test);
    }

    void Complain(size_t line, const std::string &what)
    {
        Case test;
        test.mPage = mPage;
        test.mScript.mLine = line;
        test.mName = "Fault_" + std::to_string(mCases.size()) + "_" + std::to_string(line);
        test.mFaults = {mPage + ":" + std::to_string(line) + ": " + what};
        mCases.push_back(test);
    }

    void ComplainOfRest(size_t line)
    {
        for (const auto *blocks : {&mNext.mBefore, &mNext.mFiles}) {
            for (const CaseBlock &block : *blocks) {
                Complain(block.mLine, "a block without a script");
            }
        }
        if (mGroups.mLine != 0) {
            Complain(mGroups.mLine, "groups without a table of steps");
        }
        if (mTable.mLine != 0 && !mManual) {
            Complain(mTable.mLine, "a table without a script");
        }
        if (mCases.empty() && !mManual) {
            Complain(line, "a page without cases");
        }
    }

    std::string mPage;
    bool mManual;
    std::string mHeading;
    std::vector<CaseBlock> mEach;
    CaseBlock mGroups;
    Case mNext;
    std::optional<Case> mOpen;
    Table mReading, mTable, mOpenTable;
    std::vector<Case> mCases;
};

} // namespace

void PrintTo(const Case &test, std::ostream *out)
{
    *out << test.mPage << ":" << test.mScript.mLine;
}

std::vector<Case> ReadPage(const std::string &page, const std::string &text, bool manual)
{
    return PageReader(page, manual).Read(text);
}

std::vector<Case> ReadCases(const std::string &folder, bool manual)
{
    std::vector<Case> cases;
    for (const std::string &name : Tree(folder)) {
        if (Fits("*.md", name)) {
            for (Case &test : ReadPage(name, ReadText(folder + "\\" + name), manual)) {
                cases.push_back(std::move(test));
            }
        }
    }
    return cases;
}

std::vector<std::string> Comments(const CaseBlock &block, const std::string &wanted)
{
    std::vector<std::string> values;
    std::string name, value;
    if (block.mKind == "xml" && !block.mLines.empty()) { // <!-- name: value -->
        const std::string &first = block.mLines[0].mText;
        const bool named = Fits("<!-- " + wanted + ": * -->", first);
        return named ? std::vector{first.substr(wanted.size() + 7, first.size() - wanted.size() - 11)} : values;
    }
    for (auto line = block.mLines.begin(); line != block.mLines.end() && IsComment(line->mText, &name, &value);
         ++line) {
        if (name == wanted) {
            values.push_back(value);
        }
    }
    return values;
}

std::string Comment(const CaseBlock &block, const std::string &name, const std::string &otherwise)
{
    const std::vector<std::string> values = Comments(block, name);
    return values.empty() ? otherwise : values.front();
}

std::string Text(const CaseBlock &block)
{
    std::string text;
    for (const CaseText &line : block.mLines) {
        text += line.mText + "\n";
    }
    return text;
}
