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

TEST(StepList, CutsLinesIntoLabelAndText)
{
    static const struct {
        const char *line;
        const char *label;
        const char *text;
    } kCases[] = {
        {"CopyFile;a;b", "", "CopyFile;a;b"},
        {"<x>Log;a", "<x>", "Log;a"},
        {"<x>", "<x>", ""},
        {"<a>b>c", "<a>", "b>c"},
        {"<>Log", "<>", "Log"},
        {"<open;Log", "", "<open;Log"},
        {"DONE", "DONE", "DONE"},
        {"DONE;anything", "DONE", "DONE;anything"},
        {"DONEX", "DONE", "DONEX"},
        {"<end>DONE", "<end>", "DONE"},
        {"done", "", "done"},
        {" DONE", "", " DONE"},
        {" #no comment", "", " #no comment"},
        {"<x>#no comment", "<x>", "#no comment"},
    };
    for (const auto &test : kCases) {
        StepList list(Section(test.line));
        ASSERT_EQ(list.Count(), 1u) << test.line;
        EXPECT_EQ(list.Records()[0].mLabel, test.label) << test.line;
        EXPECT_EQ(list.Records()[0].mText, test.text) << test.line;
        EXPECT_EQ(list.Text(), test.text) << test.line;
    }
}

TEST(StepList, CountsWhatIsAStep)
{
    EXPECT_EQ(StepList("").Count(), 0u);
    EXPECT_EQ(StepList("Log;no line end").Count(), 0u);
    EXPECT_EQ(StepList(Section("#one|#two")).Count(), 0u);
    StepList list(Section("a|#dropped|b||c"));
    ASSERT_EQ(list.Count(), 4u);
    for (uint32_t at = 0; at < list.Count(); ++at) {
        EXPECT_EQ(list.Records()[at].mIndex, at);
    }
    EXPECT_EQ(list.Records()[2].mText, ""); // the empty line stays
}

TEST(StepList, Jumps)
{
    // Numbers of the text: its place in the list.
    const std::string section = Section("0|<x>1|<y>2|DONE3|<x>4|DONEX");
    static const struct {
        const char *jump;
        const char *next;
    } kCases[] = {
        {"", "1"},         // no jump
        {"<y>", "2"},      // a label
        {"<x>", "4"},      // the last of two
        {"DONE", "DONEX"}, // the label of lines that begin so, the last again
        {"<DONE>", ""},    // the end, never a label
        {"<z>", ""},       // unknown
        {"x", ""},         // brackets belong to the label
        {"<X>", ""},       // case counts
        {"<x> ", ""},
    };
    for (const auto &test : kCases) {
        StepList list(section);
        EXPECT_EQ(list.Text(), "0");
        list.Advance(test.jump);
        EXPECT_EQ(list.Text(), test.next) << test.jump;
    }
}

TEST(StepList, JumpsBackwardAndWalksToTheEnd)
{
    StepList list(Section("<a>0|1|2"));
    list.Advance("");
    list.Advance("");
    EXPECT_EQ(list.Text(), "2");
    list.Advance("<a>");
    EXPECT_EQ(list.Text(), "0");
    for (int i = 0; i < 5; ++i) {
        list.Advance("");
    }
    EXPECT_EQ(list.Text(), "");
    list.Advance("<a>"); // the list is over, but its labels are still there
    EXPECT_EQ(list.Text(), "0");
}

TEST(StepList, ALabelNamedDoneCannotBeReached)
{
    StepList list(Section("0|<DONE>1"));
    EXPECT_EQ(list.Records()[1].mLabel, "<DONE>");
    list.Advance("<DONE>");
    EXPECT_EQ(list.Text(), "");
}

} // namespace
