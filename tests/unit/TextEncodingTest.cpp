#include "Common/TextEncoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

TEST(Utf8, EveryCodePointReadsBack)
{
    for (uint32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const std::string bytes = EncodeCodePoint(codePoint);
        const size_t length = codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
        ASSERT_EQ(bytes.size(), length) << codePoint;
        const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        size_t index = 0;
        bool valid = surrogate;
        ASSERT_EQ(DecodeCodePoint(bytes, index, &valid), surrogate ? kReplacementCodePoint : codePoint);
        ASSERT_EQ(valid, !surrogate) << codePoint;
        ASSERT_EQ(IsValidUtf8(bytes), !surrogate) << codePoint;
        if (!surrogate) {
            ASSERT_EQ(index, length) << codePoint;
        }
    }
    EXPECT_EQ(EncodeCodePoint(0x110000), "");
    EXPECT_EQ(EncodeCodePoint(0xFFFFFFFF), "");
    EXPECT_EQ(EncodeCodePoint(0x20AC), "\xE2\x82\xAC");
    EXPECT_EQ(EncodeCodePoint(0x1F600), "\xF0\x9F\x98\x80");
}

TEST(Utf8, MalformedSequencesSkipToTheNextContinuationByte)
{
    static const struct {
        const char *name;
        std::string text;
        size_t next;
    } kCases[] = {
        {"continuation byte alone", "\x80", 1},
        {"cut at the end", "\xE2\x82", 1},
        {"nothing behind the first byte", "\xC3", 1},
        {"letter in place of a continuation byte",
         "\xC3"
         "AB\xA9",
         3},
        {"no continuation byte in sight",
         "\xC3"
         "AB",
         3},
        {"overlong slash of two bytes", "\xC0\xAF", 1},
        {"overlong of two bytes", "\xC1\xBF", 1},
        {"overlong of three bytes", "\xE0\x9F\xBF", 1},
        {"overlong of four bytes", "\xF0\x8F\xBF\xBF", 1},
        {"above 0x10ffff", "\xF4\x90\x80\x80", 1},
        {"first byte 0xf5", "\xF5\x80\x80\x80", 1},
        {"first byte 0xff", "\xFFz\x80", 2},
    };
    for (const auto &test : kCases) {
        size_t index = 0;
        bool valid = true;
        EXPECT_EQ(DecodeCodePoint(test.text, index, &valid), 65533u) << test.name;
        EXPECT_FALSE(valid) << test.name;
        EXPECT_EQ(index, test.next) << test.name;
        EXPECT_FALSE(IsValidUtf8(test.text)) << test.name;
        EXPECT_FALSE(IsValidUtf8("ok " + test.text)) << test.name;
    }
}

TEST(Utf8, EndOfTheTextIsValidOnlyForAnEmptyOne)
{
    size_t index = 0;
    bool valid = false;
    EXPECT_EQ(DecodeCodePoint("", index, &valid), 0u);
    EXPECT_TRUE(valid);
    index = 1;
    EXPECT_EQ(DecodeCodePoint("a", index, &valid), 0u);
    EXPECT_FALSE(valid);
    EXPECT_EQ(index, 1u);
    EXPECT_TRUE(IsValidUtf8(""));
    EXPECT_TRUE(IsValidUtf8(std::string("a\0\xC3\xA9", 4)));
}

TEST(Base64, WritesWithoutPadding)
{
    static const struct {
        std::vector<uint8_t> bytes;
        const char *text;
    } kCases[] = {
        {{}, ""},
        {{'f'}, "Zg"},
        {{'f', 'o'}, "Zm8"},
        {{'f', 'o', 'o'}, "Zm9v"},
        {{'f', 'o', 'o', 'b'}, "Zm9vYg"},
        {{0xFB, 0xEF, 0xFF, 0xFF}, "++///w"},
    };
    for (const auto &test : kCases) {
        EXPECT_EQ(Base64Encode(test.bytes), test.text);
        EXPECT_EQ(Base64Decode(test.text), test.bytes);
    }
    EXPECT_EQ(Base64Decode("Z"), std::vector<uint8_t>());                    // one character makes no byte
    EXPECT_EQ(Base64Decode("Zm9vY"), (std::vector<uint8_t>{'f', 'o', 'o'})); // at the end neither
}

TEST(Base64, RandomBytesReadBack)
{
    std::mt19937 random(4648);
    for (size_t length = 0; length < 300; ++length) {
        std::vector<uint8_t> bytes(length);
        std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<uint8_t>(random()); });
        const std::string text = Base64Encode(bytes);
        EXPECT_EQ(text.size(), (length * 4 + 2) / 3);
        EXPECT_EQ(Base64Decode(text), bytes);
    }
}

TEST(Base64, RefusesBytesOutsideTheAlphabetPaddingIncluded)
{
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (int byte = 0; byte < 256; ++byte) {
        const auto character = static_cast<char>(byte);
        const std::string text = std::string("Zm8") + character;
        std::string refusal;
        try {
            Base64Decode(text);
        } catch (const char *reason) {
            refusal = reason;
        }
        EXPECT_EQ(refusal, alphabet.find(character) == std::string::npos ? "bad char" : "") << byte;
    }
}

} // namespace
