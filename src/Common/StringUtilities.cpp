#include "Common/StringUtilities.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>

namespace {

// The classification functions take the value of an unsigned char; a plain char above 127 is negative here.
bool IsBlank(char byte)
{
    return std::isspace(static_cast<unsigned char>(byte)) != 0;
}

char ToLower(char byte)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
}

} // namespace

bool EqualsNoCase(const std::string &a, const std::string &b)
{
    return a == b || ToLowerCopy(a) == ToLowerCopy(b);
}

std::string ToLowerCopy(const std::string &text)
{
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(), ToLower);
    return lower;
}

std::string UpperAscii(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}

std::vector<std::string> SplitAny(const std::string &text, const std::string &delimiters, bool skipEmpty)
{
    std::vector<std::string> pieces;
    for (size_t from = 0; from < text.size();) {
        const size_t end = std::min(text.find_first_of(delimiters, from), text.size());
        if (end > from || !skipEmpty) {
            pieces.push_back(text.substr(from, end - from));
        }
        from = end + 1;
    }
    return pieces;
}

void TrimInPlace(std::string &text_I_O)
{
    text_I_O.erase(std::find_if_not(text_I_O.rbegin(), text_I_O.rend(), IsBlank).base(), text_I_O.end());
    text_I_O.erase(text_I_O.begin(), std::find_if_not(text_I_O.begin(), text_I_O.end(), IsBlank));
}

std::string TrimCopy(const std::string &text)
{
    std::string trimmed = text;
    TrimInPlace(trimmed);
    return trimmed;
}

uint32_t ParseUnsigned(const std::string &text, size_t *index_O, int base)
{
    const char *start = text.c_str();
    char *end = nullptr;
    errno = 0;
    const unsigned long number = std::strtoul(start, &end, base);
    const int error = errno;
    if (end == start) {
        throw std::invalid_argument("invalid stoul argument");
    }
    // Where unsigned long is wider than on Windows the 32-bit range is checked here, on the number that the sign was
    // applied to.
    const bool negative = std::find(start, static_cast<const char *>(end), '-') != end;
    const uint64_t magnitude = negative ? 0 - number : number;
    if (error == ERANGE || magnitude > UINT32_MAX) {
        throw std::out_of_range("stoul argument out of range");
    }
    if (index_O != nullptr) {
        *index_O = static_cast<size_t>(end - start);
    }
    return static_cast<uint32_t>(number);
}
