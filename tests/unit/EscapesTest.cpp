#include "Common/Escapes.h"

#include <gtest/gtest.h>

namespace {

TEST(Escapes, ValueTable)
{
    static const std::pair<std::string, std::string> kCases[] = {
        {"", ""},
        {R"(\"\'\\\a\b\f\n\r\t\v\q\A\1\%)", "\"'\\\a\b\f\n\r\t\vqA1%"},
        {R"(C:\temp\new C:\\temp\\new)", "C:\temp\new C:\\temp\\new"},
        {R"(a\0b)", "a"}, // a NUL ends the value
        {R"(\0b)", ""},
        {R"(a\)", "a"}, // a back-slash at the very end is lost
        {R"(a\\)", R"(a\)"},
        {std::string("one\0two\0\0three", 14), "one"},
        {std::string("\0\0x", 3), ""},
        {"\xFF\x80\\\xE9", "\xFF\x80\xE9"},
    };
    for (const auto &[text, value] : kCases) {
        EXPECT_EQ(UnescapeValue(text.data(), text.size()), value) << text;
    }
}

TEST(Escapes, SectionKeepsItsLines)
{
    static const std::pair<std::string, std::string> kCases[] = {
        {"", ""},
        {std::string("\0\0", 2), ""},
        {std::string("a\0b\0\0junk", 9), std::string("a\0b\0", 4)},
        {std::string("a\\0b\0\0", 6), std::string("a\0b\0", 4)},      // an escaped NUL parts a line
        {std::string("a\\0\\0b\0\0", 8), std::string("a\0\0b\0", 5)}, // and two leave an empty one
        {std::string("a\\\\\0b\\n\0\0", 9), std::string("a\\\0b\n\0", 6)},
        {std::string("a\\\0b\0\0", 6), std::string("a\0b\0", 4)}, // dropped in front of the line's end
        {"no end", std::string("no end\0", 7)},
    };
    for (const auto &[text, lines] : kCases) {
        EXPECT_EQ(UnescapeSection(text.data(), text.size()), lines) << text;
    }
}

} // namespace
