#include "Common/TokenSplitter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Tokens = std::vector<std::string>;

Tokens AllTokens(TokenSplitter &splitter)
{
    Tokens tokens;
    for (std::string token = splitter.First(); !splitter.AtEnd(); token = splitter.Next()) {
        tokens.push_back(token);
    }
    return tokens;
}

TEST(TokenSplitter, CutsAtEverySeparatorAndNowhereElse)
{
    static const struct {
        std::string separator;
        std::string text;
        Tokens tokens;
    } kCases[] = {
        {";", "CopyFile;a;b", {"CopyFile", "a", "b"}},
        {";", "", {""}},
        {";", ";", {"", ""}},
        {";", "a;;b;", {"a", "", "b", ""}},
        {";", " a ; \"b;c\" ", {" a ", " \"b", "c\" "}}, // no trimming, no quoting
        {"=", "A=1=2", {"A", "1", "2"}},
        {std::string(1, '\0'), std::string("x\0y\0", 4), {"x", "y", ""}},
        {"::", "a:::b::", {"a", ":b", ""}},
        {"", "a;b", {"a;b"}},
    };
    for (const auto &test : kCases) {
        TokenSplitter splitter(test.separator, test.text);
        EXPECT_EQ(AllTokens(splitter), test.tokens) << test.text;
        EXPECT_EQ(AllTokens(splitter), test.tokens) << "once more: " << test.text;
    }
}

TEST(TokenSplitter, StaysAtTheEndAndAnswersEmptyThere)
{
    TokenSplitter splitter(";", "a;b");
    EXPECT_EQ(splitter.Current(), "a");
    EXPECT_EQ(splitter.Next(), "b");
    EXPECT_EQ(splitter.Current(), "b");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(splitter.Next(), "");
        EXPECT_TRUE(splitter.AtEnd());
    }
    EXPECT_EQ(splitter.First(), "a");
    EXPECT_EQ(splitter.Next(), "b");
}

TEST(TokenSplitter, NewTextForgetsThePlace)
{
    TokenSplitter splitter(";", "a;b;c");
    splitter.Next();
    splitter.SetText("x;y");
    EXPECT_EQ(splitter.Current(), "x");
    EXPECT_EQ(AllTokens(splitter), (Tokens{"x", "y"}));
}

} // namespace
