#include "Common/MultiString.h"

#include <gtest/gtest.h>

namespace {

// Written with "|" for a zero byte.
std::string Z(std::string text)
{
    for (char &c : text) {
        c = c == '|' ? '\0' : c;
    }
    return text;
}

TEST(MultiString, AppendKeepsOneOfEach)
{
    static const struct {
        const char *list, *text;
        bool added;
        const char *result;
    } kRows[] = {
        {"", "a", true, "a||"},        {"|", "a", true, "a||"},       {"a||", "b", true, "a|b||"},
        {"a|b||", "a", false, ""},     {"a|b||", "b", false, ""},     {"a||", "A", true, "a|A||"},
        {"ab||", "b", true, "ab|b||"}, // no part of an entry counts
        {"ab||", "a", true, "ab|a||"}, {"", "", true, "||"},          {"a||", "", true, "a|||"},
        {"a|||", "", false, ""},       {"a|||", "b", true, "a||b||"}, // an empty entry doesn't end the list
        {"a||b||", "b", false, ""},    {"a|b|", "a", false, ""},      // entries without the list's own end
        {"abc", "x", true, "abx||"},                                  // a plain text loses its last byte
        {"a", "x", true, "x||"},       {"ab", "a", false, ""},
    };
    for (const auto &row : kRows) {
        std::string list = Z(row.list);
        EXPECT_EQ(AppendEntry(list, row.text), row.added) << row.list << " + " << row.text;
        if (row.added) {
            EXPECT_EQ(list, Z(row.result)) << row.list << " + " << row.text;
        }
    }
}

TEST(MultiString, RemoveTakesTheFirstEqualEntryWithItsZeroByte)
{
    static const struct {
        const char *list, *text;
        bool removed;
        const char *result;
    } kRows[] = {
        {"a|b|c||", "a", true, "b|c||"},
        {"a|b|c||", "b", true, "a|c||"},
        {"a|b|c||", "c", true, "a|b||"},
        {"a||", "a", true, "|"},
        {"a|b|a||", "a", true, "b|a||"},
        {"a|b||", "x", false, "a|b||"},
        {"ab|b||", "b", true, "ab||"},
        {"ab||", "a", false, "ab||"},
        {"", "a", false, ""},
        {"", "", false, ""},
        {"a|b", "b", true, "a|"}, // the last entry without a zero byte
        {"abc", "abc", true, ""},
        {"a||", "", true, "a|"},
        {"A||", "a", false, "A||"},
    };
    for (const auto &row : kRows) {
        std::string list = Z(row.list);
        EXPECT_EQ(RemoveEntry(list, row.text), row.removed) << row.list << " - " << row.text;
        EXPECT_EQ(list, Z(row.result)) << row.list << " - " << row.text;
    }
}

TEST(MultiString, TenThousandEntriesGrowAndShrink)
{
    std::string list;
    for (int i = 0; i < 10000; ++i) {
        list += std::to_string(i) + '\0';
    }
    list += '\0';
    const std::string before = list;
    EXPECT_FALSE(AppendEntry(list, "9999"));
    list = before;
    EXPECT_TRUE(AppendEntry(list, "10000"));
    EXPECT_TRUE(ContainsEntry(list, "0"));
    EXPECT_TRUE(RemoveEntry(list, "10000"));
    EXPECT_EQ(list, before);
}

} // namespace
