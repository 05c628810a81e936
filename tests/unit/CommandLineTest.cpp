#include "Installer/CommandLine.h"

#include <gtest/gtest.h>

namespace {

TEST(CommandLine, Tokens)
{
    static const struct {
        std::string line;
        const char *tokens;
    } kCases[] = {
        {"", ""},
        {"   ", ""},
        {"/s /u/s  -silent --silent /a-b", "/s|/u|/s|/silent|/-silent|/a-b|"},  // inside an option "-" is a character
        {"ab-cd/ef L1031 // a\tb -", "ab|/cd|/ef|L1031|/|/|a\tb|/|"},           // a plain word is cut
        {R"(/d "C:\a b\t" /d"x"y "-x /y" "")", R"(/d|C:\a b\t|/d|x|y|-x /y|)"}, // quotes end a token on both sides
        {R"("a\"b" "a\\"b" a\"b" "open c)", R"(a"b|a\"b|a\|b|open c|)"},        // the last back-slash inside quotes
        {std::string("/\0s \0/u\0", 8), "/s|/u|"},
    };
    for (const auto &test : kCases) {
        std::string tokens;
        for (const std::string &token : SplitCommandLine(test.line)) {
            tokens += token + "|";
        }
        EXPECT_EQ(tokens, test.tokens) << test.line;
    }
}

// The name is recognised 12 characters in front of the tail and only when a NUL ends it there.
TEST(CommandLine, RemoveRole)
{
    static const struct {
        std::string front;
        bool role;
    } kCases[] = {
        {std::string("C:\\x\\REMOVE.Exe\0\"", 17), true},
        {std::string("remove.exe \0", 12), false}, // the text is longer than the name
        {"C:\\Remove.exe ", false},                // as the platform writes it
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

} // namespace
