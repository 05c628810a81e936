#include "Common/TextEncoding.h"

#include <stdexcept>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr uint32_t kLastCodePoint = 0x10FFFF;

char ToChar(uint32_t byte)
{
    return static_cast<char>(static_cast<uint8_t>(byte));
}

bool IsContinuation(char byte)
{
    return (static_cast<uint8_t>(byte) & 0xC0) == 0x80;
}

// Number of bytes that a first byte announces, 0 for a byte that begins no sequence.
size_t SequenceLength(uint8_t first)
{
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xC2 || first >= 0xF5) {
        return 0;
    }
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

// Reads the sequence at `at`; answers its length, 0 when it is malformed.
size_t ReadSequence(const std::string &text, size_t at, uint32_t &codePoint_O)
{
    static constexpr uint32_t kLowest[] = {0, 0, 0x80, 0x800, 0x10000};
    static constexpr uint8_t kFirstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const auto first = static_cast<uint8_t>(text[at]);
    const size_t length = SequenceLength(first);
    if (length == 0 || length > text.size() - at) {
        return 0;
    }
    uint32_t codePoint = first & kFirstBits[length];
    for (size_t next = at + 1; next < at + length; ++next) {
        if (!IsContinuation(text[next])) {
            return 0;
        }
        codePoint = codePoint << 6 | (static_cast<uint8_t>(text[next]) & 0x3F);
    }
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < kLowest[length] || codePoint > kLastCodePoint || surrogate) {
        return 0;
    }
    codePoint_O = codePoint;
    return length;
}

uint32_t SixBits(char character)
{
    if (character >= 'A' && character <= 'Z') {
        return static_cast<uint32_t>(character - 'A');
    }
    if (character >= 'a' && character <= 'z') {
        return static_cast<uint32_t>(character - 'a' + 26);
    }
    if (character >= '0' && character <= '9') {
        return static_cast<uint32_t>(character - '0' + 52);
    }
    if (character == '+') {
        return 62;
    }
    if (character == '/') {
        return 63;
    }
    throw std::invalid_argument("bad char");
}

} // namespace

std::string EncodeCodePoint(uint32_t codePoint)
{
    std::string bytes;
    if (codePoint < 0x80) {
        bytes += ToChar(codePoint);
    } else if (codePoint < 0x800) {
        bytes += ToChar(0xC0 | codePoint >> 6);
        bytes += ToChar(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        bytes += ToChar(0xE0 | codePoint >> 12);
        bytes += ToChar(0x80 | (codePoint >> 6 & 0x3F));
        bytes += ToChar(0x80 | (codePoint & 0x3F));
    } else if (codePoint <= kLastCodePoint) {
        bytes += ToChar(0xF0 | codePoint >> 18);
        bytes += ToChar(0x80 | (codePoint >> 12 & 0x3F));
        bytes += ToChar(0x80 | (codePoint >> 6 & 0x3F));
        bytes += ToChar(0x80 | (codePoint & 0x3F));
    }
    return bytes;
}

uint32_t DecodeCodePoint(const std::string &text, size_t &index_I_O, bool *valid_O)
{
    uint32_t codePoint = 0;
    bool valid = text.empty();
    if (index_I_O < text.size()) {
        const size_t length = ReadSequence(text, index_I_O, codePoint);
        valid = length != 0;
        if (valid) {
            index_I_O += length;
        } else {
            codePoint = kReplacementCodePoint;
            do {
                ++index_I_O;
            } while (index_I_O < text.size() && !IsContinuation(text[index_I_O]));
        }
    }
    if (valid_O != nullptr) {
        *valid_O = valid;
    }
    return codePoint;
}

bool IsValidUtf8(const std::string &text)
{
    bool valid = true;
    for (size_t index = 0; valid && index < text.size();) {
        DecodeCodePoint(text, index, &valid);
    }
    return valid;
}

std::string Base64Encode(const std::vector<uint8_t> &bytes)
{
    std::string text;
    text.reserve((bytes.size() * 4 + 2) / 3);
    uint32_t bits = 0;
    unsigned bitCount = 0;
    for (const uint8_t byte : bytes) {
        bits = bits << 8 | byte;
        for (bitCount += 8; bitCount >= 6; bitCount -= 6) {
            text += kAlphabet[bits >> (bitCount - 6) & 0x3F];
        }
    }
    if (bitCount > 0) {
        text += kAlphabet[bits << (6 - bitCount) & 0x3F];
    }
    return text;
}

std::vector<uint8_t> Base64Decode(const std::string &text)
{
    std::vector<uint8_t> bytes;
    bytes.reserve(text.size() * 3 / 4);
    uint32_t bits = 0;
    unsigned bitCount = 0;
    for (const char character : text) {
        bits = bits << 6 | SixBits(character);
        bitCount += 6;
        if (bitCount >= 8) {
            bitCount -= 8;
            bytes.push_back(static_cast<uint8_t>(bits >> bitCount & 0xFF));
        }
    }
    return bytes;
}
