// Functions of texts, by their tables.
#include <stdexcept>

#include "Common/Escapes.h"
#include "Common/StringUtilities.h"
#include "Common/TextEncoding.h"
#include "Common/TokenSplitter.h"
#include "Common/TvxException.h"
#include "Installer/CommandLine.h"
#include "Registry/MultiString.h"
#include "Tables.h"

namespace {

std::string Zeros(const std::string &text)
{
    return Exchanged(text, '~', '\0');
}

std::string InBrackets(const std::vector<std::string> &pieces)
{
    std::string text;
    for (const std::string &piece : pieces) {
        text += "[" + piece + "]";
    }
    return text;
}

TEST(CommandLine, TokensAndTheRoleInFront)
{
    ExpectTable("tokens", [](const std::string &line) { return InBrackets(SplitCommandLine(Zeros(line))); });
    ExpectTable("role", [](const std::string &front) {
        const std::string whole = Zeros(front) + "/s";
        const std::vector<char> line(whole.begin(), whole.end()); // of this size, so that a read outside is found
        return std::string(IsRemoveRole(line.data(), line.data() + front.size()) ? "yes" : "no");
    });
}

TEST(Escapes, OfValuesAndSections)
{
    const std::string all = R"(\"\'\\\a\b\f\n\r\t\v\q\A\1\%)";
    EXPECT_EQ(UnescapeValue(all.data(), all.size()), "\"'\\\a\b\f\n\r\t\vqA1%");
    ExpectTable("escapes", [](const std::string &row) {
        const std::string text = Zeros(row);
        return UnescapeValue(text.data(), text.size()) + ";" +
               Exchanged(UnescapeSection(text.data(), text.size()), '\0', '~');
    });
}

TEST(MultiString, AppendsOneOfEachAndRemovesTheFirst)
{
    ExpectTable("lists", [](const std::string &row) {
        const size_t plus = row.find(" + ");
        std::string longer = Zeros(row.substr(0, plus)), shorter = longer;
        const std::string text = row.substr(plus + 3);
        const bool appended = AppendEntry(longer, text), removed = RemoveEntry(shorter, text);
        return Exchanged((appended ? longer : "-") + " " + (removed ? shorter : "-"), '\0', '~');
    });
}

TEST(TokenSplitter, CutsAtEverySeparatorAndStaysAtTheEnd)
{
    ExpectTable("fields", [](const std::string &row) {
        const size_t blank = row.find(' ');
        TokenSplitter splitter(Zeros(row.substr(0, blank)), Zeros(row.substr(blank + 1)));
        std::vector<std::string> pieces;
        for (std::string piece = splitter.First(); !splitter.AtEnd(); piece = splitter.Next()) {
            EXPECT_EQ(splitter.Current(), piece);
            pieces.push_back(piece);
        }
        return InBrackets(pieces) + splitter.Next();
    });
    TokenSplitter splitter(";", "a;b");
    splitter.Next();
    splitter.SetText("x;y"); // forgets the place
    EXPECT_EQ(splitter.Current(), "x");
}

TEST(Strings, AreComparedTrimmedAndSplit)
{
    EXPECT_TRUE(EqualsNoCase(std::string("a\0B", 3), std::string("A\0b", 3)));
    EXPECT_FALSE(EqualsNoCase(std::string("a\0B", 3), std::string("A\0c", 3)) || EqualsNoCase("a", "ab"));
    EXPECT_FALSE(EqualsNoCase("[", "{")); // differ in the bit that letters differ in
    EXPECT_EQ(ToLowerCopy("AZ[@`\x7F!09\xFF").substr(0, 9), "az[@`\x7F!09");
    EXPECT_EQ(TrimCopy(" \t\r\n\v\f\x01 b \t\r\n\v\f") + TrimCopy(" \t "), "\x01 b");
    ExpectTable("split", [](const std::string &text) {
        return InBrackets(SplitAny(text, ",/ ", false)) + "~" + InBrackets(SplitAny(text, ",/ ", true));
    });
}

TEST(Strings, ParseUnsignedReadsThirtyTwoBitsOrRefuses)
{
    ExpectTable("unsigned", [](const std::string &row) {
        size_t index = 77;
        std::string outcome;
        try {
            outcome = std::to_string(ParseUnsigned(row.substr(3), &index, std::stoi(row)));
        } catch (const std::logic_error &refusal) {
            outcome = refusal.what();
        }
        return outcome + ", " + std::to_string(index);
    });
}

// The bytes of a text in hexadecimal, blanks between.
std::string Bytes(const std::string &hex)
{
    std::string bytes;
    for (size_t at = 0; at < hex.size(); at += 3) {
        bytes += static_cast<char>(std::stoi(hex.substr(at), nullptr, 16));
    }
    return bytes;
}

TEST(Utf8, CodePointsReadBackAndMalformedSequencesSkipToTheNextContinuationByte)
{
    for (uint32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const std::string bytes = EncodeCodePoint(codePoint);
        const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        size_t index = 0;
        ASSERT_EQ(DecodeCodePoint(bytes, index), surrogate ? kReplacementCodePoint : codePoint);
        ASSERT_TRUE(IsValidUtf8(bytes) == !surrogate && (surrogate || index == bytes.size())) << codePoint;
    }
    EXPECT_EQ(EncodeCodePoint(0x20AC) + EncodeCodePoint(0x1F600) + EncodeCodePoint(0x110000),
              "\xE2\x82\xAC\xF0\x9F\x98\x80");
    ExpectTable("malformed", [](const std::string &hex) {
        size_t index = 0;
        bool valid = true;
        EXPECT_EQ(DecodeCodePoint(Bytes(hex), index, &valid), 65533u) << hex;
        EXPECT_FALSE(valid || IsValidUtf8("ok " + Bytes(hex))) << hex;
        return std::to_string(index);
    });
}

TEST(Base64, WritesWithoutPaddingAndReadsBack)
{
    ExpectTable("base64", [](const std::string &hex) {
        const std::string bytes = Bytes(hex);
        const std::string text = Base64Encode({bytes.begin(), bytes.end()});
        EXPECT_EQ(Base64Decode(text), std::vector<uint8_t>(bytes.begin(), bytes.end()));
        return text;
    });
    EXPECT_EQ(Base64Decode("Zm9vY"), (std::vector<uint8_t>{'f', 'o', 'o'})); // one character makes no byte
    for (const char *text : {"Zm8=", "Zm 8", "Zm\x80", "Zm-_"}) {
        EXPECT_THROW(Base64Decode(text), std::invalid_argument) << text;
    }
}

TEST(TvxException, TextHoldsThePartsThatAreSet)
{
    const CTvxException noPlace(nullptr, 7, "text", static_cast<uint16_t>(-1)), whole("a.cpp", 42, "text", 0x60C);
    EXPECT_STREQ(noPlace.what(), "Status: ffff,  \"text\"");
    EXPECT_STREQ(CTvxException("a.cpp", 42, "", 0).what(), "File: a.cpp, Line: 42,  \"\"");
    EXPECT_STREQ(CTvxException(whole).what(), "File: a.cpp, Line: 42, Status: 60c,  \"text\"");
}

} // namespace
