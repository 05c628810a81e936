#include "Common/Escapes.h"

#include <gtest/gtest.h>

namespace {

std::string Value(const std::string &text)
{
    return UnescapeValue(text.data(), text.size());
}

std::string Lines(const std::string &text)
{
    return UnescapeSection(text.data(), text.size());
}

TEST(Escapes, ValueTable)
{
    static const struct {
        std::string text;
        std::string value;
    } kCases[] = {
        {"", ""},
        {"plain", "plain"},
        {R"(\"\'\\)", R"("'\)"},
        {R"(\a\b\f\n\r\t\v)", "\a\b\f\n\r\t\v"},
        {R"(C:\temp\new)", "C:\temp\new"},
        {R"(C:\\temp\\new)", R"(C:\temp\new)"},
        {R"(\q\A\1\%)", "qA1%"},
        {R"(a\0b)", "a"}, // a NUL ends the value
        {R"(\0b)", ""},
        {R"(a\)", "a"}, // a back-slash at the very end is lost
        {R"(a\\)", R"(a\)"},
        {std::string("one\0two\0\0three", 14), "one"},
        {std::string("\0\0x", 3), ""},
        {"\xFF\x80\\\xE9", "\xFF\x80\xE9"},
    };
    for (const auto &test : kCases) {
        EXPECT_EQ(Value(test.text), test.value) << test.text;
    }
}

TEST(Escapes, SectionKeepsItsLines)
{
    EXPECT_EQ(Lines(""), "");
    EXPECT_EQ(Lines(std::string("\0\0", 2)), "");
    EXPECT_EQ(Lines(std::string("a\0b\0\0junk", 9)), std::string("a\0b\0", 4));
    EXPECT_EQ(Lines(std::string("a\\0b\0\0", 6)), std::string("a\0b\0", 4));      // an escaped NUL parts a line
    EXPECT_EQ(Lines(std::string("a\\0\\0b\0\0", 8)), std::string("a\0\0b\0", 5)); // and two leave an empty one
    EXPECT_EQ(Lines(std::string("a\\\\\0b\\n\0\0", 9)), std::string("a\\\0b\n\0", 6));
    EXPECT_EQ(Lines(std::string("a\\\0b\0\0", 6)), std::string("a\0b\0", 4)); // dropped in front of the line's end
    EXPECT_EQ(Lines("no end"), std::string("no end\0", 7));
}

} // namespace
