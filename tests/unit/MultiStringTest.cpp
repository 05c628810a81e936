#include "Registry/MultiString.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// "|" stands for a zero byte; no result where nothing is done.
TEST(MultiString, AppendsOneOfEachAndRemovesTheFirst)
{
    static const struct {
        const char *list, *text, *appended, *removed;
    } kRows[] = {
        {"", "a", "a||", nullptr},          {"|", "a", "a||", nullptr},
        {"a||", "b", "a|b||", nullptr},     {"a||", "A", "a|A||", nullptr},
        {"ab||", "b", "ab|b||", nullptr}, // no part of an entry counts
        {"ab||", "a", "ab|a||", nullptr},   {"", "", "||", nullptr},
        {"a||", "", "a|||", nullptr},       {"a|||", "b", "a||b||", nullptr}, // an empty entry doesn't end the list
        {"a||b||", "b", nullptr, "a|||"},   {"a|||", "", nullptr, "a||"},
        {"a|b|", "a", nullptr, "b||"},                                        // without the list's own end
        {"a|b|", "c", "a|b|c||", nullptr},  {"abc", "x", "abc|x||", nullptr}, // and without that of the entry
        {"abc", "abc", nullptr, "|"},       {"a|b", "b", nullptr, "a||"},
        {"a||b||", "a", nullptr, "|b||"},   {"a|||", "a", nullptr, "||"},
        {"|", "", "||", nullptr},           {"||", "", nullptr, "|"},
        {"a|b|c||", "a", nullptr, "b|c||"}, {"a|b|c||", "b", nullptr, "a|c||"},
        {"a|b|c||", "c", nullptr, "a|b||"}, {"a|b|a||", "a", nullptr, "b|a||"},
        {"a||", "a", nullptr, "|"},         {"ab|b||", "b", nullptr, "ab||"},
    };
    const auto zero = [](std::string text) {
        std::replace(text.begin(), text.end(), '|', '\0');
        return text;
    };
    for (const auto &row : kRows) {
        SCOPED_TRACE(std::string(row.list) + " and " + row.text);
        std::string list = zero(row.list);
        EXPECT_EQ(AppendEntry(list, row.text), row.appended != nullptr);
        EXPECT_TRUE(row.appended == nullptr || list == zero(row.appended)) << list;
        list = zero(row.list);
        EXPECT_EQ(RemoveEntry(list, row.text), row.removed != nullptr);
        EXPECT_TRUE(row.removed == nullptr || list == zero(row.removed)) << list;
    }
}

} // namespace
