#include "Common/Escapes.h"

#include <algorithm>

namespace {

char EscapedCharacter(char letter)
{
    switch (letter) {
    case '0':
        return '\0';
    case 'a':
        return '\a';
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'v':
        return '\v';
    default:
        return letter;
    }
}

// Length of the text up to its double NUL; all of it when there is none.
size_t LengthToDoubleNul(const char *text, size_t size)
{
    static constexpr char kDoubleNul[2] = {'\0', '\0'};
    const char *const end = text + size;
    return static_cast<size_t>(std::search(text, end, kDoubleNul, kDoubleNul + 2) - text);
}

// A back-slash that is the very last character is lost: there is nothing behind it to mean.
std::string Unescape(const char *text, size_t size)
{
    std::string result;
    result.reserve(size + 1);
    for (size_t at = 0; at < size; ++at) {
        if (text[at] != '\\') {
            result += text[at];
        } else if (++at < size) {
            result += EscapedCharacter(text[at]);
        }
    }
    return result;
}

} // namespace

std::string UnescapeValue(const char *text, size_t size)
{
    std::string result = Unescape(text, LengthToDoubleNul(text, size));
    result.resize(std::min(result.size(), result.find('\0')));
    return result;
}

std::string UnescapeSection(const char *text, size_t size)
{
    if (size == 0 || text[0] == '\0') {
        return std::string();
    }
    std::string result = Unescape(text, LengthToDoubleNul(text, size));
    result += '\0';
    return result;
}
