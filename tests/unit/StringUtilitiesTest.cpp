#include "Common/StringUtilities.h"

#include <stdexcept>

#include "Tables.h"

namespace {

TEST(Strings, CompareWithoutCaseAndTrim)
{
    EXPECT_TRUE(EqualsNoCase("", "") && EqualsNoCase(std::string("a\0B", 3), std::string("A\0b", 3)));
    EXPECT_FALSE(EqualsNoCase(std::string("a\0B", 3), std::string("A\0c", 3)) || EqualsNoCase("a", "ab"));
    EXPECT_FALSE(EqualsNoCase("[", "{")); // differ in the bit that letters differ in
    EXPECT_EQ(ToLowerCopy("AZ[@`\x7F!09"), "az[@`\x7F!09");
    EXPECT_EQ(ToLowerCopy("\xFF\x80").size(), 2u); // bytes above 127 are no negative numbers
    EXPECT_EQ(TrimCopy(" \t\r\n\v\fa b \t\r\n\v\f") + TrimCopy(" \t "), "a b");
    EXPECT_EQ(TrimCopy("\x01 \xC3\xA9"), "\x01 \xC3\xA9");
}

TEST(Strings, SplitAtAnyDelimiter)
{
    ExpectTable("split", [](const std::string &text) { // with empty pieces and without
        std::string all, filled;
        for (const bool skipEmpty : {false, true}) {
            for (const std::string &piece : SplitAny(text, ",/ ", skipEmpty)) {
                (skipEmpty ? filled : all) += "[" + piece + "]";
            }
        }
        return all + "~" + filled;
    });
    EXPECT_EQ(SplitAny("abc", "", false), std::vector<std::string>{"abc"});
}

TEST(Strings, ParseUnsignedReadsThirtyTwoBitsOrRefuses)
{
    ExpectTable("unsigned", [](const std::string &row) { // base and text; number and index behind it
        size_t index = 77;
        std::string outcome;
        try {
            outcome = std::to_string(ParseUnsigned(row.substr(3), &index, std::stoi(row)));
        } catch (const std::invalid_argument &refusal) {
            outcome = refusal.what();
        } catch (const std::out_of_range &refusal) {
            outcome = refusal.what();
        }
        return outcome + ", " + std::to_string(index);
    });
    EXPECT_EQ(ParseUnsigned("12"), 12u);
}

} // namespace
