#include "Common/StringUtilities.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(Strings, CompareWithoutCase)
{
    EXPECT_TRUE(EqualsNoCase("", ""));
    EXPECT_TRUE(EqualsNoCase("Pen_Tablet", "PEN_tABLET"));
    EXPECT_TRUE(EqualsNoCase(std::string("a\0B", 3), std::string("A\0b", 3)));
    EXPECT_FALSE(EqualsNoCase(std::string("a\0B", 3), std::string("A\0c", 3)));
    EXPECT_FALSE(EqualsNoCase("a", "ab"));
    EXPECT_FALSE(EqualsNoCase("[", "{")); // differ in the bit that letters differ in
    EXPECT_EQ(ToLowerCopy("AZ[@`\x7F!09"), "az[@`\x7F!09");
    EXPECT_EQ(ToLowerCopy("\xFF\x80").size(), 2u); // bytes above 127 are no negative numbers
}

TEST(Strings, SplitAtAnyDelimiter)
{
    using Pieces = std::vector<std::string>;
    static const struct {
        const char *text;
        const char *delimiters;
        Pieces all;
        Pieces filled;
    } kCases[] = {
        {"", ",", {}, {}},
        {"abc", ",", {"abc"}, {"abc"}},
        {"abc", "", {"abc"}, {"abc"}},
        {"a,,b", ",", {"a", "", "b"}, {"a", "b"}},
        {"a,b,", ",", {"a", "b"}, {"a", "b"}},
        {"a,b,,", ",", {"a", "b", ""}, {"a", "b"}},
        {",", ",", {""}, {}},
        {",a", ",", {"", "a"}, {"a"}},
        {"1/2/3,4 5", ",/ ", {"1", "2", "3", "4", "5"}, {"1", "2", "3", "4", "5"}},
    };
    for (const auto &test : kCases) {
        EXPECT_EQ(SplitAny(test.text, test.delimiters, false), test.all) << test.text;
        EXPECT_EQ(SplitAny(test.text, test.delimiters, true), test.filled) << test.text;
    }
}

TEST(Strings, TrimTakesBlanksOfAllKindsFromTheEnds)
{
    EXPECT_EQ(TrimCopy(" \t\r\n\v\fa b \t\r\n\v\f"), "a b");
    EXPECT_EQ(TrimCopy(" \t "), "");
    EXPECT_EQ(TrimCopy(""), "");
    EXPECT_EQ(TrimCopy("a"), "a");
    EXPECT_EQ(TrimCopy("\x01 \xC3\xA9"), "\x01 \xC3\xA9");
}

TEST(Strings, ParseUnsignedReadsThirtyTwoBits)
{
    static const struct {
        const char *text;
        int base;
        uint32_t number;
        size_t index;
    } kCases[] = {
        {"0", 10, 0, 1},
        {" \t42x", 10, 42, 4},
        {"+7", 10, 7, 2},
        {"-1", 10, 0xFFFFFFFF, 2},
        {"0x1F", 16, 31, 4},
        {"0x1F", 0, 31, 4},
        {"017", 0, 15, 3},
        {"zz", 36, 1295, 2},
        {"4294967295", 10, 0xFFFFFFFF, 10},
        {"-4294967295", 10, 1, 11},
    };
    for (const auto &test : kCases) {
        size_t index = 0;
        EXPECT_EQ(ParseUnsigned(test.text, &index, test.base), test.number) << test.text;
        EXPECT_EQ(index, test.index) << test.text;
    }
    EXPECT_EQ(ParseUnsigned("12"), 12u);
}

TEST(Strings, ParseUnsignedRefusesWithATextAndLeavesTheIndex)
{
    size_t index = 77;
    for (const char *text : {"", "x", " ", "-", "+-1"}) {
        try {
            ADD_FAILURE() << "[" << text << "] was read as " << ParseUnsigned(text, &index);
        } catch (const std::invalid_argument &refusal) {
            EXPECT_STREQ(refusal.what(), "invalid stoul argument");
        }
    }
    for (const char *text :
         {"4294967296", "-4294967296", "18446744073709551615", "-18446744073709551615", "99999999999999999999999"}) {
        try {
            ADD_FAILURE() << text << " was read as " << ParseUnsigned(text, &index);
        } catch (const std::out_of_range &refusal) {
            EXPECT_STREQ(refusal.what(), "stoul argument out of range");
        }
    }
    EXPECT_EQ(index, 77u);
}

} // namespace
