// Stands in for what the platform does with texts: the tests' texts mean the same in every encoding, and the host's XML
// library knows code pages by itself.
#include "Common/TextConversions.h"
#include "Common/UserLanguage.h"
#include "Shell/XmlCodePages.h"

std::string AnsiToUtf8(const std::string &text)
{
    return text;
}

std::string Utf8ToAnsi(const std::string &text)
{
    return text;
}

void RegisterXmlCodePages() {}

// Nor has it a part in what the user's languages are.
uint32_t GetUserLocaleId()
{
    return 0x20804; // PRC, sorted by strokes
}

uint16_t GetUserUILanguageId()
{
    return 1033;
}
