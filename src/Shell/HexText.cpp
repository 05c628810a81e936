#include "Shell/HexText.h"

#include <cstring>

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

// Value of a digit, -1 for another character.
int DigitValue(char character)
{
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    const char upper = static_cast<char>(character & ~0x20);
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

bool IsWhiteSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

} // namespace

std::string HexLine(const unsigned char *bytes, size_t count)
{
    std::string line;
    for (size_t at = 0; at < count; ++at) {
        line += kDigits[bytes[at] >> 4];
        line += kDigits[bytes[at] & 15];
        line += ' ';
    }
    if (!line.empty()) {
        line.replace(line.size() - 1, 1, "\r\n");
    }
    return line;
}

std::string BytesFromHex(const std::string &text)
{
    std::string bytes;
    for (size_t at = 0; at < text.size(); ++at) {
        if (IsWhiteSpace(text[at])) {
            continue;
        }
        int value = DigitValue(text[at]);
        if (value < 0) {
            break;
        }
        const int low = at + 1 < text.size() ? DigitValue(text[at + 1]) : -1;
        if (low >= 0) {
            value = value * 16 + low;
            ++at;
        }
        bytes += static_cast<char>(value);
    }
    return bytes;
}
