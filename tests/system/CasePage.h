// The cases of a page: blocks and tables in Markdown, put together; tests/README.md tells what they mean.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

struct CaseText {
    size_t mLine;
    std::string mText;
};

struct CaseBlock {
    size_t mLine = 0;
    std::string mKind; // the word behind the fence
    std::vector<CaseText> mLines;

    bool IsScript() const { return mKind == "ini" || mKind == "steps"; }
    bool SetsUp() const { return mKind == "before" || mKind == "each" || mKind == "then"; }

    // The value of the first "; name: value" among the comments that the block begins with; of all of them.
    std::string Comment(const std::string &name, const std::string &otherwise = "") const;
    std::vector<std::string> Comments(const std::string &name) const;

    // Whether the block is a further file of the next script.
    bool IsFile() const { return (IsScript() || mKind == "xml") && !Comment("file").empty(); }

    // The lines as one text.
    std::string Text() const;
};

struct Case {
    std::string mPage;
    std::string mName;                // of the test: the heading above and the line
    std::vector<CaseBlock> mBlocks;   // in the order of the page; one of them is the script
    std::vector<std::string> mFaults; // what the page says and nobody understands: "page:line: what"

    const CaseBlock &Script() const;
};

// How GoogleTest shows a case.
void PrintTo(const Case &test, std::ostream *out);

// The cases of a page. What is not understood gives a case with faults. In a page of the manual tables may stand that
// are no business of the tests.
std::vector<Case> ReadPage(const std::string &page, const std::string &text, bool manual);

// The cases of all pages below the folder.
std::vector<Case> ReadCases(const std::string &folder, bool manual);
