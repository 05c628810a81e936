// Foreign values and sections through the escape processing.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "Common/Escapes.h"

namespace {

void Require(bool condition)
{
    if (!condition) {
        abort();
    }
}

// The text that the escape processing turns back into `text`.
std::string Escape(const std::string &text)
{
    std::string escaped;
    for (const char c : text) {
        escaped += c == '\\' || c == '"' || c == '\'' ? std::string(1, '\\') + c : std::string(1, c);
    }
    return escaped;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // On the heap with its exact size, so that a read behind it is found.
    const std::vector<char> text(data, data + size);
    const std::string value = UnescapeValue(text.data(), size);
    Require(value.size() <= size && value.find('\0') == std::string::npos);
    const std::string escaped = Escape(value);
    Require(UnescapeValue(escaped.data(), escaped.size()) == value);

    const std::string section = UnescapeSection(text.data(), size);
    Require(section.empty() || section.back() == '\0');
    Require(section.empty() == (size == 0 || text[0] == '\0'));
    Require(section.size() <= size + 1);
    // The value is the section's text up to its first line end.
    Require(section.substr(0, section.find('\0')) == value);
    return 0;
}
