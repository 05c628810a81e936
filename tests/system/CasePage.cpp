#include "CasePage.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <regex>
#include <set>
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

bool IsExpectation(const std::string &kind)
{
    static const std::set<std::string> kKinds = {"trace", "lacks",    "end",   "logged", "wrote",
                                                 "check", "elevated", "again", "then"};
    return kKinds.count(kind) != 0;
}

std::string TestName(const std::string &heading, size_t line)
{
    return std::regex_replace(heading + "_", std::regex("[^A-Za-z0-9]+"), "_") + std::to_string(line);
}

void Replace(std::string *text_IO, const std::string &what, const std::string &by)
{
    for (size_t at = 0; (at = text_IO->find(what, at)) != std::string::npos; at += by.size()) {
        text_IO->replace(at, what.size(), by);
    }
}

// Puts the lines that a cell holds behind others.
void AddCell(std::string cell, size_t line, std::vector<CaseText> *lines_IO)
{
    Replace(&cell, "<br>", "\n");
    std::istringstream stream(cell + "\n");
    for (std::string text; std::getline(stream, text);) {
        lines_IO->push_back({line, text});
    }
}

struct Table {
    struct Row {
        size_t mLine;
        std::vector<std::string> mCells;
    };
    std::vector<std::string> mNames;
    std::vector<Row> mRows;
    size_t mLine = 0;

    // Each row is a step of one run.
    bool HoldsSteps() const
    {
        return mNames.size() > 1 && mNames[0] == "step" &&
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
        const size_t first = std::min(cell.find_first_not_of(' '), cell.size());
        cell = cell.substr(first, cell.find_last_not_of(' ') + 1 - first);
        if (cell.size() > 1 && cell.front() == '`' && cell.back() == '`') {
            cell = cell.substr(1, cell.size() - 2);
        }
        Replace(&cell, "\x01", "|");
        cells.push_back(cell);
    }
    return cells;
}

// Puts the row's cells in the places of {name}; a line that names a cell with nothing but "-" goes.
void FillBlock(const Table &table, const Table::Row &row, CaseBlock *block_IO)
{
    for (const CaseText &line : std::exchange(block_IO->mLines, {})) {
        std::string text = line.mText;
        bool wanted = true;
        for (size_t i = 0; i < table.mNames.size(); ++i) {
            const std::string mark = "{" + table.mNames[i] + "}";
            wanted = wanted && (row.mCells[i] != "-" || text.find(mark) == std::string::npos);
            Replace(&text, mark, row.mCells[i]);
        }
        if (wanted) {
            AddCell(text, line.mLine, &block_IO->mLines);
        }
    }
}

auto FindScript(std::vector<CaseBlock> &blocks)
{
    return std::find_if(blocks.begin(), blocks.end(),
                        [](const CaseBlock &block) { return block.IsScript() && !block.IsFile(); });
}

// A column that no block names and that is called like a comment or a block stands for it.
void AddColumn(const std::string &name, const std::string &cell, size_t line, std::vector<CaseBlock> *blocks_IO)
{
    CaseBlock block{line, name, {}};
    AddCell(cell, line, &block.mLines);
    const auto script = FindScript(*blocks_IO);
    if (cell == "-") {
        return;
    }
    if (name == "before") {
        blocks_IO->insert(script, block);
    } else if (IsExpectation(name)) {
        blocks_IO->push_back(block);
    } else {
        for (CaseText &comment : block.mLines) {
            comment.mText = "; " + name + ": " + comment.mText;
        }
        script->mLines.insert(script->mLines.begin(), block.mLines.begin(), block.mLines.end());
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
            line = Repeated(line.substr(0, line.find('\r')));
            const bool fence = line.compare(0, 3, "```") == 0;
            if (!inside && line.compare(0, 1, "|") == 0) {
                TakeRow(line, number);
                continue;
            }
            TakeTable();
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
        ComplainIf(inside, block.mLine, "a block that does not end");
        TakeTable();
        Finish();
        for (const CaseBlock &left : mNext) {
            Complain(left.mLine, "a block without a script");
        }
        ComplainIf(mGroups.mLine != 0, mGroups.mLine, "groups without a table of steps");
        ComplainIf(mTable.mLine != 0 && !mManual, mTable.mLine, "a table without a script");
        ComplainIf(mCases.empty() && !mManual, number, "a page without cases");
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
        const std::vector<std::string> cells = Cells(line);
        if (mReading.mLine == 0) {
            mReading = {cells, {}, number};
        } else if (line.find_first_not_of("|-: ") != std::string::npos) { // not what stands below the head
            const bool fits = cells.size() == mReading.mNames.size() || mManual;
            ComplainIf(!fits, number, "a row of another number of cells");
            mReading.mRows.push_back({number, fits ? cells : mReading.mNames});
        }
    }

    void TakeTable()
    {
        if (mReading.mLine == 0) {
            return;
        }
        const Table table = std::exchange(mReading, {});
        if (table.HoldsSteps()) {
            TakeSteps(table);
            return;
        }
        ComplainIf(mTable.mLine != 0 && !mManual, mTable.mLine, "a table without a script");
        mTable = table;
    }

    // Each row is a step, the records that it leaves and what the machine shows behind the run.
    void TakeSteps(const Table &table)
    {
        CaseBlock script{table.mLine, "steps", {}}, wrote{table.mLine, "wrote", {}}, check{table.mLine, "check", {}};
        auto more = mGroups.mLines.begin();
        while (more != mGroups.mLines.end() && more->mText.compare(0, 1, ";") == 0) {
            script.mLines.push_back(*more++);
        }
        script.mLines.push_back({table.mLine, "Log;begin"});
        for (const Table::Row &row : table.mRows) {
            for (size_t column = 0; column < row.mCells.size(); ++column) {
                CaseBlock &block = column == 0 ? script : table.mNames[column] == "trace" ? wrote : check;
                if (!row.mCells[column].empty()) {
                    AddCell(row.mCells[column], row.mLine, &block.mLines);
                }
            }
        }
        script.mLines.push_back({table.mLine, "<end>Log;end"});
        script.mLines.insert(script.mLines.end(), more, mGroups.mLines.end());
        mGroups = {};
        TakeScript(script);
        if (std::count(table.mNames.begin(), table.mNames.end(), "trace") != 0) {
            mOpen->mBlocks.push_back(wrote);
        }
        if (!check.mLines.empty()) {
            mOpen->mBlocks.push_back(check);
        }
    }

    void Take(const CaseBlock &block)
    {
        if (block.mKind == "before" || block.IsFile()) {
            mNext.push_back(block);
        } else if (block.mKind == "each") {
            mEach.push_back(block);
        } else if (block.mKind == "groups" && mGroups.mLine == 0) {
            mGroups = block;
        } else if (block.IsScript()) {
            TakeScript(block);
        } else if (mOpen && IsExpectation(block.mKind)) {
            mOpen->mBlocks.push_back(block);
        } else if (!mManual || (!block.mKind.empty() && block.mKind != "xml")) {
            const bool known = IsExpectation(block.mKind) || block.mKind == "groups";
            Complain(block.mLine, (known ? "a block out of place: " : "unknown block: ") + block.mKind);
        }
    }

    void TakeScript(const CaseBlock &script)
    {
        Finish();
        mOpen = Case{mPage, TestName(mHeading, script.mLine), mEach, {}};
        mOpen->mBlocks.insert(mOpen->mBlocks.end(), mNext.begin(), mNext.end());
        mOpen->mBlocks.push_back(script);
        mNext.clear();
        mOpenTable = std::exchange(mTable, {});
    }

    // Adds the case that is open, one for each row of its table.
    void Finish()
    {
        if (!mOpen) {
            return;
        }
        const Case test = *std::exchange(mOpen, std::nullopt);
        std::string whole;
        for (const CaseBlock &block : test.mBlocks) {
            whole += block.Text();
        }
        std::vector<size_t> columns; // that stand for a comment or a block
        bool used = false;           // the table is one of the case
        for (size_t i = 0; i < mOpenTable.mNames.size(); ++i) {
            const std::string &name = mOpenTable.mNames[i];
            const bool known = name == "before" || IsExpectation(name) || kComments.count(name) != 0;
            const bool named = whole.find("{" + name + "}") != std::string::npos;
            used = used || named;
            if (known && !named) {
                columns.push_back(i);
            }
            ComplainIf(!named && !known && !mManual, mOpenTable.mLine, "a column that nothing names: " + name);
        }
        if (!used && (columns.empty() || columns.size() != mOpenTable.mNames.size())) {
            Add(test);
            return;
        }
        for (const Table::Row &row : mOpenTable.mRows) {
            Case filled = test;
            filled.mName += "_" + std::to_string(&row - mOpenTable.mRows.data() + 1);
            for (CaseBlock &block : filled.mBlocks) {
                FillBlock(mOpenTable, row, &block);
            }
            for (const size_t column : columns) {
                AddColumn(mOpenTable.mNames[column], row.mCells[column], row.mLine, &filled.mBlocks);
            }
            Add(filled);
        }
    }

    // Adds the case with its faults.
    void Add(Case test)
    {
        static const std::regex kMark("\\{[a-z][A-Za-z0-9 ]*\\}");
        const auto complain = [&](bool wrong, size_t line, const std::string &what) {
            if (wrong) {
                test.mFaults.push_back(mPage + ":" + std::to_string(line) + ": " + what);
            }
            return wrong;
        };
        complain(!IsExpectation(test.mBlocks.back().mKind), test.Script().mLine, "nothing is expected of the script");
        for (const CaseBlock &block : test.mBlocks) {
            bool first = block.IsScript() || block.mKind == "again";
            for (const auto &[line, text] : block.mLines) {
                first = first && text.compare(0, 1, ";") == 0;
                std::string name, value;
                if (first &&
                    !complain(!IsComment(text, &name, &value), line,
                              "no comment of the form '; name: value': " + text) &&
                    !complain(kComments.count(name) == 0, line, "unknown comment: " + name)) {
                    const std::string &pattern = kComments.at(name);
                    complain(!pattern.empty() && !std::regex_match(value, std::regex(pattern)), line,
                             "unknown value of " + name + ": " + value);
                }
                if ((block.SetsUp() || block.mKind == "check") && !text.empty()) {
                    const std::string fault = CaseMachine::Fault(text, !block.SetsUp());
                    complain(!fault.empty(), line, fault);
                }
                complain(std::regex_search(text, kMark), line, "no such column: " + text);
            }
        }
        mCases.push_back(test);
    }

    void Complain(size_t line, const std::string &what)
    {
        const std::string place = std::to_string(line);
        mCases.push_back({mPage,
                          "Fault_" + std::to_string(mCases.size()) + "_" + place,
                          {CaseBlock{line, "steps", {}}},
                          {mPage + ":" + place + ": " + what}});
    }
    void ComplainIf(bool wrong, size_t line, const std::string &what)
    {
        if (wrong) {
            Complain(line, what);
        }
    }

    std::string mPage;
    bool mManual;
    std::string mHeading;
    std::vector<CaseBlock> mEach, mNext;
    CaseBlock mGroups;
    std::optional<Case> mOpen;
    Table mReading, mTable, mOpenTable;
    std::vector<Case> mCases;
};

} // namespace

const CaseBlock &Case::Script() const
{
    return *FindScript(const_cast<Case *>(this)->mBlocks);
}

void PrintTo(const Case &test, std::ostream *out)
{
    *out << test.mPage << ":" << test.Script().mLine;
}

std::vector<Case> ReadPage(const std::string &page, const std::string &text, bool manual)
{
    return PageReader(page, manual).Read(text);
}

std::vector<Case> ReadCases(const std::string &folder, bool manual)
{
    std::vector<Case> cases;
    for (const std::string &name : Tree(folder)) {
        if (!Fits("*.md", name)) {
            continue;
        }
        const std::string page = ReadText(folder + "\\" + name);
        if (manual && page.find("<!-- read by tavixpack, not run -->") != std::string::npos) {
            continue; // other tests have its scripts
        }
        for (Case &test : ReadPage(name, page, manual)) {
            cases.push_back(std::move(test));
        }
    }
    return cases;
}

std::vector<std::string> CaseBlock::Comments(const std::string &wanted) const
{
    std::vector<std::string> values;
    std::string name, value;
    if (mKind == "xml" && !mLines.empty()) { // <!-- name: value -->
        const std::string &first = mLines[0].mText;
        const bool named = Fits("<!-- " + wanted + ": * -->", first);
        return named ? std::vector{first.substr(wanted.size() + 7, first.size() - wanted.size() - 11)} : values;
    }
    for (auto line = mLines.begin(); line != mLines.end() && IsComment(line->mText, &name, &value); ++line) {
        if (name == wanted) {
            values.push_back(value);
        }
    }
    return values;
}

std::string CaseBlock::Comment(const std::string &name, const std::string &otherwise) const
{
    const std::vector<std::string> values = Comments(name);
    return values.empty() ? otherwise : values.front();
}

std::string CaseBlock::Text() const
{
    std::string text;
    for (const CaseText &line : mLines) {
        text += line.mText + "\n";
    }
    return text;
}
