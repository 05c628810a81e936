// Pages of cases: the manual's examples and the pages of tests/cases. tests/README.md tells how they are written.
#pragma once

#include <ostream>
#include <string>
#include <vector>

struct CaseText {
    size_t mLine; // in the page
    std::string mText;
};

struct CaseBlock {
    size_t mLine = 0; // of the fence
    std::string mKind;
    std::vector<CaseText> mLines;
};

struct Case {
    std::string mPage;
    std::string mName; // of the test: the heading above and the line
    CaseBlock mScript;
    std::vector<CaseBlock> mFiles;    // further files of the package
    std::vector<CaseBlock> mBefore;   // set-up
    std::vector<CaseBlock> mAfter;    // what is expected
    std::vector<std::string> mFaults; // what the page says and nobody understands: "page:line: what"
};

// How GoogleTest shows a case.
void PrintTo(const Case &test, std::ostream *out);

// The cases of a page. What is not understood gives a case with faults. In a page of the manual tables may stand that
// are no business of the tests.
std::vector<Case> ReadPage(const std::string &page, const std::string &text, bool manual);

// The cases of all pages below the folder.
std::vector<Case> ReadCases(const std::string &folder, bool manual);

// The value of the first "; name: value" among the comments that the block begins with; of all of them.
std::string Comment(const CaseBlock &block, const std::string &name, const std::string &otherwise = "");
std::vector<std::string> Comments(const CaseBlock &block, const std::string &name);

// The lines of a block as one text.
std::string Text(const CaseBlock &block);
