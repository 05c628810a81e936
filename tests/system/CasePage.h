// Pages of cases: the manual's examples and the pages of tests/cases, both Markdown with fenced blocks. A case is one
// block with a script, the blocks in front of it that set the machine up, and those behind it that say what comes of
// it.
//
//     ```ini       a whole script            ```steps    the group Install of a script that passes all checks
//
// A Markdown table in front of the blocks of a case makes a case of each of its rows, when its blocks name a column in
// braces: {column} stands for the cell. A line that names a cell with nothing but "-" is left out, and <br> in a cell
// begins a further line. %5*text% stands for the text five times.
//
// Comments at the beginning of a script block tell more:
//
//     ; run: /s /u        the arguments, /s when the comment is missing
//     ; exit: 2           the exit code, 0 when the comment is missing
//     ; file: name        the block is a further file of the next script, and is not run
//     ; output: text      the output response file, the exit code when the comment is missing
//     ; response: text    the response file that a front end leaves
//     ; program: name     the name that the installer runs under
//     ; started in: path  the current directory of its start, the package's folder when the comment is missing
//     ; trace at: path    where the trace is expected, a "*" for the process id
//     ; windows: vista    the version of Windows that the program meets, as Wine names them
//     ; rights: none     the user is no administrator; "refused": nor does the shell start an elevated process
//     ; language: fr_FR.UTF-8   the display language
//     ; devices: USB USB\VID_7A1C&PID_0118\1 live | ...   the device tree, a line each; device-calls.txt has its log
//     ; package: isd      the sample package of this name, in place of the block's script
//
// Other blocks:
//
//     ```before    lines that set the machine up, see CaseMachine.h; it goes back to what it was behind the case
//     ```trace     patterns of records that appear in this order ("*" stands for anything)
//     ```lacks     patterns that no record fits
//     ```logged    what the steps Log wrote, all of it
//     ```wrote     the records between "Log;begin" and "Log;end", all of them but the names of the steps
//     ```elevated patterns like those of trace, for the elevated process; without the block there must be none
//     ```check     lines that ask the machine afterwards, see CaseMachine.h
//     ```then      lines like those of before, carried out behind the run
//     ```again     one more run, with comments like those of a script; what stands behind is asked of it
//
// In these blocks and in the comments that name paths %PACKAGE%, %TEMP%, %DOUBLES%, %SYSTEM%, %WINDOWS%, %APPDATA%,
// %COMMONDATA%, %PUBLIC%, %PROGRAMS% and %PROGRAMS32% stand for the folders.
#pragma once

#include <ostream>
#include <string>
#include <vector>

struct CaseBlock {
    size_t mLine = 0; // of the fence
    std::string mKind;
    std::string mText;
};

struct Case {
    std::string mPage;
    std::string mName; // of the test: the heading above and the line
    CaseBlock mScript;
    std::vector<CaseBlock> mFiles;  // further files of the package
    std::vector<CaseBlock> mBefore; // set-up
    std::vector<CaseBlock> mAfter;  // what is expected
};

// How GoogleTest shows a case.
void PrintTo(const Case &test, std::ostream *out);

// The cases of all pages below the folder. A page that is not put together as told above gives a case without
// expectations, which fails.
std::vector<Case> ReadCases(const std::string &folder);

// The value of "; name: value" among the comments that the block begins with.
std::string Comment(const CaseBlock &block, const std::string &name, const std::string &otherwise = "");

// The lines of a block; those that hold something.
std::vector<std::string> Lines(const std::string &text);
std::vector<std::string> FilledLines(const std::string &text);
