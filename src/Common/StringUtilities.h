// Small helpers on narrow strings. Letters and blanks are those of the C runtime's locale, byte by byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// True when the two are equal, or are so with their letters in lower case.
bool EqualsNoCase(const std::string &a, const std::string &b);

// A copy in lower case, byte by byte.
std::string ToLowerCopy(const std::string &text);

// A copy with the letters a to z in capitals. Other letters stay: the names and ids of Windows that are compared this
// way have none, and the user's locale must not decide.
std::string UpperAscii(std::string text);

// Cuts a text at each byte of `delimiters`; pieces of no length are left out when `skipEmpty` is set. There is no
// piece behind a delimiter that ends the text, so an empty text gives none and "a," gives one.
std::vector<std::string> SplitAny(const std::string &text, const std::string &delimiters, bool skipEmpty);

// Removes blanks (isspace) from both ends.
void TrimInPlace(std::string &text_I_O);
std::string TrimCopy(const std::string &text);

// Reads an unsigned 32-bit number as the runtime's strtoul does: blanks, a sign, a base of 2 to 36 or 0 to tell it by
// its prefix. `index_O`, when given, receives the index of the first byte behind the number. Throws
// std::invalid_argument when there is no digit and std::out_of_range when the number has more than 32 bits.
uint32_t ParseUnsigned(const std::string &text, size_t *index_O = nullptr, int base = 10);
