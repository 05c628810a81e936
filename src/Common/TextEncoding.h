// UTF-8 by code points, and base64.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// What stands for a sequence that cannot be read.
constexpr uint32_t kReplacementCodePoint = 65533;

// The one to four bytes of a code point; empty above 0x10ffff.
std::string EncodeCodePoint(uint32_t codePoint);

// Answers the code point at `index_I_O` and moves the index past it. A malformed sequence (overlong forms, surrogates
// and values above 0x10ffff included) answers kReplacementCodePoint and moves on to the next continuation byte
// behind its first byte, or to the end. At the end of the text the answer is 0. `valid_O`, when given, tells
// whether there was a well-formed sequence; at the end it is true only for an empty text.
uint32_t DecodeCodePoint(const std::string &text, size_t &index_I_O, bool *valid_O = nullptr);

// True for a text of nothing but well-formed sequences, an empty one too.
bool IsValidUtf8(const std::string &text);

// Base64 (RFC 4648, the alphabet with + and /) without padding: one byte left over gives two characters, two give
// three.
std::string Base64Encode(const std::vector<uint8_t> &bytes);

// The inverse. Four characters make three bytes, a last group of three makes two, of two one, of one none. Throws
// std::invalid_argument with the text "bad char" at any byte outside the alphabet, padding included.
std::vector<uint8_t> Base64Decode(const std::string &text);
