// Feeds the reader of hexadecimal text with any bytes, and brings the same bytes through such a text and back.
#include <algorithm>

#include "Require.h"
#include "Shell/HexText.h"

void CheckInput(const std::string &bytes)
{
    const auto *const data = reinterpret_cast<const unsigned char *>(bytes.data());
    const size_t size = bytes.size();
    std::string text;
    for (size_t at = 0; at < size; at += kHexLineBytes) {
        text += HexLine(data + at, std::min(kHexLineBytes, size - at));
    }
    Require(text.size() == size * 3 + (size + 15) / 16 && BytesFromHex(text) == bytes);
    const std::string digits = "0123456789abcdefABCDEF \t\r\n\v\f";
    const std::string good = bytes.substr(0, std::min(bytes.find_first_not_of(digits), size));
    Require(BytesFromHex(bytes) == BytesFromHex(good) && BytesFromHex(good + " 1").back() == 1);
}
