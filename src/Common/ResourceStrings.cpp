#include "Common/ResourceStrings.h"

#include <stdexcept>
#include <vector>

#include "Common/TextEncoding.h"
#include "Common/Trace.h"

namespace {

constexpr size_t kCharacterSize = 2;

char16_t CharacterAt(const uint8_t *bytes, size_t at)
{
    return static_cast<char16_t>(bytes[at] | bytes[at + 1] << 8);
}

} // namespace

std::u16string StringOfBlock(const uint8_t *block, size_t size, unsigned index)
{
    size_t at = 0;
    while (size - at >= kCharacterSize) {
        const size_t length = CharacterAt(block, at);
        at += kCharacterSize;
        if (length > (size - at) / kCharacterSize) {
            break;
        }
        if (index-- == 0) {
            std::u16string text;
            for (const size_t end = at + length * kCharacterSize; at < end; at += kCharacterSize) {
                text += CharacterAt(block, at);
            }
            return text;
        }
        at += length * kCharacterSize;
    }
    return {};
}

bool IsCodedString(const std::u16string &text)
{
    return !text.empty() && text.front() == kCodedMark;
}

std::string DecodeCodedString(const std::u16string &codedString_I)
{
    // Whether or not the text comes padded to groups of four: the decoder takes no padding.
    std::string base64;
    for (size_t i = 1; i < codedString_I.size(); ++i) {
        TVX_ASSERT(codedString_I[i] < 256);
        base64 += static_cast<char>(static_cast<uint8_t>(codedString_I[i]));
    }
    base64.resize(base64.find_last_not_of('=') + 1);
    try {
        const std::vector<uint8_t> bytes = Base64Decode(base64);
        return std::string(bytes.begin(), bytes.end());
    } catch (const std::invalid_argument &) {
        return {};
    }
}
