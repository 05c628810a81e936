#include "Shell/Description.h"

#include "Common/Trace.h"
#include "Shell/XmlUtils.h"

using namespace XmlUtils;

std::string ElementText(xmlNode *element, ETextForm form, IDescriptionTexts &texts)
{
    std::string text = texts.Utf8ToAnsi(GetNodeText(element));
    switch (form) {
    case ETextHats:
        return texts.ExpandHats(text);
    case ETextMacros:
        return texts.ExpandMacros(text);
    default:
        return text;
    }
}

std::string TextOrReference(xmlNode *element, ETextForm form, const std::string &dllFile, const char *separator,
                            IDescriptionTexts &texts)
{
    if (IsSet(element, "useDll")) {
        return "@" + dllFile + separator + GetNodeText(element);
    }
    return ElementText(element, form, texts);
}

bool IsReference(const std::string &text)
{
    return text.compare(0, 1, "@") == 0;
}

std::string Attribute(xmlNode *element, const char *name, IDescriptionTexts &texts)
{
    return texts.Utf8ToAnsi(GetAttribute(element, name));
}

bool IsSet(xmlNode *element, const char *attribute)
{
    const std::string value = GetAttribute(element, attribute);
    return !value.empty() && value != "0";
}

bool IsNotZero(xmlNode *element, const char *attribute)
{
    return GetAttribute(element, attribute) != "0";
}

void ForEachElement(const XmlContext &context, const std::string &xpath, const std::function<void(xmlNode *)> &work)
{
    const XmlObject found = XPathObject(context, xpath);
    const size_t count = CountNodes(found);
    for (size_t index = 0; index < count; ++index) {
        const XmlNode element = NodeAt(found, index);
        work(element.get());
    }
}

std::vector<std::string> SplitIds(const std::string &list)
{
    std::vector<std::string> ids;
    size_t begin = 0;
    for (size_t comma = list.find(','); comma != std::string::npos; comma = list.find(',', begin)) {
        ids.push_back(list.substr(begin, comma - begin));
        begin = comma + 1;
    }
    ids.push_back(list.substr(begin));
    return ids;
}

std::string HelperSuffix(xmlDoc *doc, IDescriptionTexts &texts)
{
    const XmlNode element = FirstNode(doc, "/root/HelperSuffix");
    if (!element) {
        return std::string();
    }
    std::string suffix = ElementText(element.get(), ETextPlain, texts);
    trace(9, "HelperSuffix %s\n", suffix.c_str());
    return suffix;
}

const char *ShowOrHide(bool visible)
{
    return visible ? "show" : "hide";
}
