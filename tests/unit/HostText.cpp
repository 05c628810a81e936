// Stands in for what the platform does with texts: the tests' texts mean the same in every encoding, and the host's XML
// library knows code pages by itself.
#include "Common/TextConversions.h"
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
