// Bytes as hexadecimal text, and back: how a resource library travels inside an XML document.
#pragma once

#include <cstddef>
#include <string>

// Bytes that one line of the text holds.
constexpr size_t kHexLineBytes = 16;

// One line of at most kHexLineBytes bytes: "%02X " each, the last blank replaced by CR LF. Empty for no byte.
std::string HexLine(const unsigned char *bytes, size_t count);

// The bytes of a text: pairs of hexadecimal digits in any case of letters, or single ones where white space or the end
// follows. Stops at the first character that is neither a digit nor white space, and tells nobody.
std::string BytesFromHex(const std::string &text);
