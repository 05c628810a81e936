// Escape processing of script values. Every back-slash is an escape: \" \' \0 \\ \a \b \f \n \r \t \v mean what
// they mean in C; in front of any other character the back-slash is dropped.
#pragma once

#include <cstddef>
#include <string>

// A single value: `text` points to `size` bytes; the value ends at the first NUL of the processed text.
std::string UnescapeValue(const char *text, size_t size);

// A whole section as the platform hands it out: lines with a NUL behind each, a second NUL at the end. The answer
// keeps every line with one NUL behind it; an escaped NUL ends a line too. Empty in, empty out.
std::string UnescapeSection(const char *text, size_t size);
