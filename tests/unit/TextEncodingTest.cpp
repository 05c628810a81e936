#include "Common/TextEncoding.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include "Tables.h"

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
        ASSERT_TRUE(valid == !surrogate && IsValidUtf8(bytes) == !surrogate) << codePoint;
        ASSERT_TRUE(surrogate || index == length) << codePoint;
    }
    EXPECT_EQ(EncodeCodePoint(0x110000) + EncodeCodePoint(0xFFFFFFFF), "");
    EXPECT_EQ(EncodeCodePoint(0x20AC) + EncodeCodePoint(0x1F600), "\xE2\x82\xAC\xF0\x9F\x98\x80");
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

TEST(Utf8, MalformedSequencesSkipToTheNextContinuationByte)
{
    ExpectTable("malformed", [](const std::string &hex) {
        size_t index = 0;
        bool valid = true;
        EXPECT_EQ(DecodeCodePoint(Bytes(hex), index, &valid), 65533u) << hex;
        EXPECT_FALSE(valid || IsValidUtf8(Bytes(hex)) || IsValidUtf8("ok " + Bytes(hex))) << hex;
        return std::to_string(index);
    });
}

TEST(Base64, WritesWithoutPaddingAndReadsBack)
{
    ExpectTable("base64", [](const std::string &hex) {
        const std::string bytes = Bytes(hex);
        return Base64Encode({bytes.begin(), bytes.end()});
    });
    EXPECT_EQ(Base64Decode("Z"), std::vector<uint8_t>());                    // one character makes no byte
    EXPECT_EQ(Base64Decode("Zm9vY"), (std::vector<uint8_t>{'f', 'o', 'o'})); // at the end neither
    std::mt19937 random(4648);
    for (size_t length = 0; length < 300; ++length) {
        std::vector<uint8_t> some(length);
        std::generate(some.begin(), some.end(), [&random] { return static_cast<uint8_t>(random()); });
        EXPECT_EQ(Base64Decode(Base64Encode(some)), some);
    }
}

TEST(Base64, RefusesPaddingAndOtherBytes)
{
    for (const char *text : {"Zm8=", "Zm 8", "Zm\x80", "Zm-_"}) {
        EXPECT_THROW(Base64Decode(text), std::invalid_argument) << text;
    }
}

} // namespace
