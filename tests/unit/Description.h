// Descriptions of the unit tests and fuzzers, and the texts of the run that reads them.
#pragma once

#include <string>

#include "Script/Macros.h"
#include "Shell/Description.h"
#include "Shell/XmlUtils.h"

// A code page like that of Western Windows, a language with one string, one folder, and GUIDs by number.
class CTestTexts : public IDescriptionTexts, private IMacroValues {
public:
    std::string Utf8ToAnsi(const std::string &text) override
    {
        std::string ansi;
        for (size_t at = 0; at < text.size(); ++at) {
            const bool pair = (text[at] == '\xC2' || text[at] == '\xC3') && at + 1 < text.size();
            ansi += pair ? static_cast<char>(text[at + 1] | (text[at] == '\xC3' ? 0x40 : 0)) : text[at];
            at += pair;
        }
        return ansi;
    }
    std::string AnsiToUtf8(const std::string &text) override
    {
        std::string utf8;
        for (const char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            utf8 += byte < 0x80 ? "" : std::string(1, static_cast<char>(0xC0 | byte >> 6));
            utf8 += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
        }
        return utf8;
    }
    std::string ExpandHats(const std::string &text) override { return ::ExpandHats(text, *this); }
    std::string ExpandMacros(const std::string &text) override { return ::ExpandMacros(text, *this); }
    std::string NewGuid() override { return "{" + std::to_string(++mGuids) + "}"; }

private:
    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override
    {
        return key == "KEY" ? "words" : defaultValue;
    }
    std::optional<std::string> Value(const std::string &upperName) override
    {
        return upperName == "DIR" ? std::optional<std::string>("C:\\dir") : std::nullopt;
    }

    int mGuids = 0;
};

// A document with these elements in its root; no document for an empty text.
inline XmlUtils::XmlDoc TestDocument(const std::string &elements)
{
    return elements.empty() ? XmlUtils::XmlDoc() : XmlUtils::LoadXmlMemory("<root>" + elements + "</root>");
}
