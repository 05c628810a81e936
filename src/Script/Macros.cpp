#include "Script/Macros.h"

#include "Common/StringUtilities.h"
#include "Common/Trace.h"

namespace {

// Stands for a missing key in the language's section; a localised string with this very text counts as missing.
constexpr char kMissing[] = "Thisis_anEmptySTRING";

// How much longer than the text its expansion may get. A folder that is named like a macro, such as "!.!", brings that
// macro in again and again, and would never end.
constexpr size_t kMostGrowth = 0x10000;

std::string HatValue(const std::string &name, IMacroValues &values)
{
    if (name.empty()) {
        return "^";
    }
    const std::string value = values.LocalisedString(name, kMissing);
    return value == kMissing ? name : value;
}

std::string BangValue(const std::string &name, IMacroValues &values)
{
    if (name.empty()) {
        return "!";
    }
    return values.Value(UpperAscii(name)).value_or(name);
}

} // namespace

std::string ExpandHats(const std::string &text, IMacroValues &values)
{
    std::string result = text;
    size_t hat = result.find('^');
    while (hat != std::string::npos) {
        const size_t endHat = result.find('^', hat + 1);
        if (endHat == std::string::npos) {
            traceExpectation("endHat != std::string::npos");
            values.Unpaired('^');
            break;
        }
        const std::string value = HatValue(result.substr(hat + 1, endHat - hat - 1), values);
        result.replace(hat, endHat + 1 - hat, value);
        hat = result.find('^', hat + value.size());
    }
    return result;
}

std::string ExpandMacros(const std::string &text, IMacroValues &values)
{
    std::string result = ExpandHats(text, values);
    size_t bang = result.find('!');
    while (bang != std::string::npos) {
        const size_t endBang = result.find('!', bang + 1);
        if (endBang == std::string::npos) {
            traceExpectation("endBang != std::string::npos");
            values.Unpaired('!');
            break;
        }
        const std::string value = BangValue(result.substr(bang + 1, endBang - bang - 1), values);
        result.replace(bang, endBang + 1 - bang, value);
        if (result.size() > text.size() + kMostGrowth) {
            trace(0, "The macros of %s do not end\n", text.c_str());
            break;
        }
        bang = result.find('!', bang + 1);
    }
    return result;
}

std::string ExtractBangName(const std::string &text)
{
    if (text.empty() || text.front() != '!') {
        return std::string();
    }
    const size_t endBang = text.find('!', 1);
    if (endBang == std::string::npos) {
        traceExpectation("endBang != std::string::npos");
        return std::string();
    }
    return text.substr(1, endBang - 1);
}
