// String tables of resource libraries, as bytes: picking a string out of a block, and the coded form of a text. The
// bytes come from foreign files and may break off anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// A table is cut into blocks of this many strings. Block `id / 16 + 1` holds the string `id`.
constexpr unsigned kStringsPerBlock = 16;

// String `index` of a block of `size` bytes: strings stand one behind the other, each a count of 16 bits and as many
// characters of 16 bits. A block that breaks off in front of the string, or within it, has none: empty.
std::u16string StringOfBlock(const uint8_t *block, size_t size, unsigned index);

// A string whose first character is this one is coded.
constexpr char16_t kCodedMark = 0x0298;
bool IsCodedString(const std::u16string &text);

// UTF-8 text of a coded string, whose characters behind the mark are base64, padded or not. A character above 255
// is reported and counts by its low byte. Text that is no base64 gives an empty one.
std::string DecodeCodedString(const std::u16string &codedString_I);
