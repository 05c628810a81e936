#include "Installer/CommandLine.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using Tokens = std::vector<std::string>;

TEST(CommandLine, Tokens)
{
    static const struct {
        std::string line;
        Tokens tokens;
    } kCases[] = {
        {"", {}},
        {"   ", {}},
        {"/s /u", {"/s", "/u"}},
        {"/s/u", {"/s", "/u"}},
        {"-silent", {"/silent"}},
        {"--silent", {"/-silent"}}, // inside an option "-" is a character
        {"/suppress-error", {"/suppress-error"}},
        {"ab-cd/ef", {"ab", "/cd", "/ef"}}, // a plain word is cut
        {"L1031", {"L1031"}},
        {"//", {"/", "/"}},
        {"-", {"/"}},
        {"/d \"C:\\a b\\t.txt\"", {"/d", "C:\\a b\\t.txt"}},
        {"/d\"x\"y", {"/d", "x", "y"}}, // quotes end a token on both sides
        {"\"a\\\"b\"", {"a\"b"}},       // \" inside quotes
        {"\"a\\\\\"b", {"a\\\"b"}},     // only the last back-slash counts
        {"a\\\"b\"", {"a\\", "b"}},     // outside quotes it is no escape
        {"\"\"", {}},
        {"\"-x /y\"", {"-x /y"}}, // quoted text is no option
        {"\"open", {"open"}},
        {std::string("/\0s \0/u\0", 8), {"/s", "/u"}},
        {"a\tb", {"a\tb"}}, // only the blank separates
    };
    for (const auto &test : kCases) {
        EXPECT_EQ(SplitCommandLine(test.line), test.tokens) << test.line;
    }
}

TEST(CommandLine, OptionsMatchWholeAndWithoutCase)
{
    EXPECT_TRUE(IsOption("/s", "/s"));
    EXPECT_TRUE(IsOption("/SuPPress-ERROR", "/suppress-error"));
    EXPECT_FALSE(IsOption("/si", "/s"));
    EXPECT_FALSE(IsOption("/", "/s"));
    EXPECT_FALSE(IsOption("s", "/s"));
    EXPECT_FALSE(IsOption(std::string("/s\0", 3), "/s"));
}

// The name is recognised 12 characters in front of the tail and only when a NUL ends it there.
TEST(CommandLine, RemoveRole)
{
    static const struct {
        std::string front;
        bool role;
    } kCases[] = {
        {std::string("remove.exe\0 ", 12), true},
        {std::string("C:\\x\\REMOVE.Exe\0\"", 17), true},
        {std::string("remove.exe \0", 12), false}, // the text is longer than the name
        {"remove.exe  ", false},
        {"C:\\Remove.exe ", false}, // as the platform writes it
        {std::string("removf.exe\0 ", 12), false},
        {std::string("emove.exe\0 ", 11), false}, // nothing in front of the buffer is read
        {"", false},
    };
    for (const auto &test : kCases) {
        const std::string whole = test.front + "/s";
        // A copy of exactly this size, so that a read outside is found.
        const std::vector<char> line(whole.c_str(), whole.c_str() + whole.size() + 1);
        EXPECT_EQ(IsRemoveRole(line.data(), line.data() + test.front.size()), test.role) << test.front;
    }
}

std::string ResponseText(const std::string &file)
{
    CResponseText response;
    for (size_t at = 0; at < file.size(); at += CResponseText::kChunk) {
        const size_t count = std::min(CResponseText::kChunk, file.size() - at);
        std::memcpy(response.Buffer(), file.data() + at, count);
        response.TakeChunk();
    }
    return response.Text();
}

TEST(CommandLine, ResponseFileRepeatsTheTailOfTheChunkBefore)
{
    EXPECT_EQ(ResponseText(""), "");
    EXPECT_EQ(ResponseText("/u"), "/u");
    EXPECT_EQ(ResponseText("0123456789abcdef"), "0123456789abcdef");
    EXPECT_EQ(ResponseText("0123456789abcdefWXYZ"), "0123456789abcdefWXYZ456789abcdef");
    EXPECT_EQ(ResponseText("0123456789abcdef0123456789ABCDEF"), "0123456789abcdef0123456789ABCDEF");
    // A chunk ends at its first NUL; the next chunk still comes behind it.
    EXPECT_EQ(ResponseText(std::string("ab\0defghijklmnopXY", 18)), "abXY");
}

TEST(CommandLine, HexText)
{
    EXPECT_EQ(HexText(nullptr, 0), "");
    const unsigned char bytes[18] = {0x00, 0x0F, 0xFF, 0x41, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 0xA0, 0x11};
    EXPECT_EQ(HexText(bytes, 1), "00\r\n");
    EXPECT_EQ(HexText(bytes, 16), "00 0F FF 41 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10\r\n");
    EXPECT_EQ(HexText(bytes, 18), HexText(bytes, 16) + "A0 11\r\n");
}

} // namespace
