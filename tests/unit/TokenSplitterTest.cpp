#include "Common/TokenSplitter.h"

#include <gtest/gtest.h>

namespace {

// The tokens, each with a "|" behind it.
std::string AllTokens(TokenSplitter &splitter)
{
    std::string tokens;
    for (std::string token = splitter.First(); !splitter.AtEnd(); token = splitter.Next()) {
        EXPECT_EQ(splitter.Current(), token);
        tokens += token + "|";
    }
    return tokens;
}

TEST(TokenSplitter, CutsAtEverySeparatorAndNowhereElse)
{
    static const std::string kCases[][3] = {
        {";", "CopyFile;a;b", "CopyFile|a|b|"},
        {";", "", "|"},
        {";", ";", "||"},
        {";", "a;;b;", "a||b||"},
        {";", " a ; \"b;c\" ", " a | \"b|c\" |"}, // no trimming, no quoting
        {"=", "A=1=2", "A|1|2|"},
        {std::string(1, '\0'), std::string("x\0y\0", 4), "x|y||"},
        {"::", "a:::b::", "a|:b||"},
        {"", "a;b", "a;b|"},
    };
    for (const auto &test : kCases) {
        TokenSplitter splitter(test[0], test[1]);
        EXPECT_EQ(AllTokens(splitter), test[2]) << test[1];
        EXPECT_EQ(AllTokens(splitter), test[2]) << "once more: " << test[1];
    }
}

TEST(TokenSplitter, StaysAtTheEndUntilItBeginsAnew)
{
    TokenSplitter splitter(";", "a;b");
    EXPECT_EQ(splitter.Current(), "a");
    for (const char *token : {"b", "", "", ""}) {
        EXPECT_EQ(splitter.Next(), token);
    }
    EXPECT_TRUE(splitter.AtEnd());
    EXPECT_EQ(splitter.First(), "a");
    splitter.Next();
    splitter.SetText("x;y"); // forgets the place
    EXPECT_EQ(splitter.Current(), "x");
    EXPECT_EQ(AllTokens(splitter), "x|y|");
}

} // namespace
