// Foreign values and sections through the escape processing.
#include "Require.h"
#include "Common/Escapes.h"

void CheckInput(const std::string &input)
{
    // On the heap with its exact size, so that a read behind it is found.
    const size_t size = input.size();
    const std::vector<char> text(input.begin(), input.end());
    const std::string value = UnescapeValue(text.data(), size);
    Require(value.size() <= size && value.find('\0') == std::string::npos);
    std::string escaped;
    for (const char c : value) {
        escaped += c == '\\' || c == '"' || c == '\'' ? std::string(1, '\\') + c : std::string(1, c);
    }
    Require(UnescapeValue(escaped.data(), escaped.size()) == value);

    const std::string section = UnescapeSection(text.data(), size);
    Require(section.empty() || section.back() == '\0');
    Require(section.empty() == (size == 0 || text[0] == '\0'));
    Require(section.size() <= size + 1);
    Require(section.substr(0, section.find('\0')) == value); // the value is its text up to the first line end
}
