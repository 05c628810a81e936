// Feeds the reader of hexadecimal text with any bytes, and brings the same bytes through such a text and back.
#include <algorithm>

#include "Require.h"
#include "Shell/HexText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string bytes = TextOf(data, size);
    std::string text;
    for (size_t at = 0; at < size; at += kHexLineBytes) {
        text += HexLine(data + at, std::min(kHexLineBytes, size - at));
    }
    Require(text.size() == size * 3 + (size + 15) / 16 && BytesFromHex(text) == bytes);
    const std::string digits = "0123456789abcdefABCDEF \t\r\n\v\f";
    const std::string good = bytes.substr(0, std::min(bytes.find_first_not_of(digits), size));
    Require(BytesFromHex(bytes) == BytesFromHex(good) && BytesFromHex(good + " 1").back() == 1);
    return 0;
}
