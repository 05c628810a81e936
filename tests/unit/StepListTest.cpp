#include "Installer/StepList.h"

#include <gtest/gtest.h>

namespace {

// A section as the script reader hands it out, from lines parted by "|".
std::string Section(std::string lines)
{
    for (char &c : lines) {
        c = c == '|' ? '\0' : c;
    }
    return lines.empty() ? lines : lines + '\0';
}

// Label and text of each record with "~" between them.
std::string Records(const std::string &section)
{
    std::string records;
    const StepList list(section);
    for (const StepRecord &record : list.Records()) {
        records += record.mLabel + "~" + record.mText + "|";
        EXPECT_EQ(&record, &list.Records()[record.mIndex]);
    }
    return records;
}

TEST(StepList, CutsLinesIntoLabelAndText)
{
    EXPECT_EQ(Records(Section("CopyFile;a;b|<x>Log;a|<x>|<a>b>c|<>Log|<open;Log| #no comment|<x>#no comment|")),
              "~CopyFile;a;b|<x>~Log;a|<x>~|<a>~b>c|<>~Log|~<open;Log|~ #no comment|<x>~#no comment|~|");
    EXPECT_EQ(Records(Section("DONE|DONE;anything|DONEX|<end>DONE|done| DONE|<DONE>1")),
              "DONE~DONE|DONE~DONE;anything|DONE~DONEX|<end>~DONE|~done|~ DONE|<DONE>~1|");
    EXPECT_EQ(Records(Section("a|#dropped|b||c")), "~a|~b|~|~c|"); // the empty line stays
    EXPECT_EQ(Records(Section("#one|#two")), "");
    EXPECT_EQ(Records("Log;no line end"), "");
    EXPECT_EQ(Records(""), "");
}

TEST(StepList, Jumps)
{
    static const struct {
        const char *jump;
        const char *next;
    } kCases[] = {
        {"", "1"},         // no jump
        {"<y>", "2"},      // a label
        {"<x>", "4"},      // the last of two
        {"DONE", "DONEX"}, // the label of lines that begin so, the last again
        {"<DONE>", ""},    // the end, never a label
        {"<z>", ""},       {"x", ""}, {"<X>", ""}, {"<x> ", ""},
    };
    for (const auto &test : kCases) {
        StepList list(Section("0|<x>1|<y>2|DONE3|<x>4|DONEX|<DONE>5"));
        EXPECT_EQ(list.Text(), "0");
        list.Advance(test.jump);
        EXPECT_EQ(list.Text(), test.next) << test.jump;
    }
}

} // namespace
