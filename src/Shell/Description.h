// How the descriptions of a package are read: the maker's, and the one that the maker of a computer (OEM) may add. Both
// are XML documents with the root element "root"; what stands in them is told in docs/package-description.md. The texts
// of a document are UTF-8, those of the program in the ANSI code page.
#pragma once

#include <libxml/tree.h>

#include <functional>
#include <string>
#include <vector>

#include "Shell/XmlUtils.h"

// What reading and writing descriptions asks of the run and of Windows.
class IDescriptionTexts {
public:
    virtual ~IDescriptionTexts() = default;

    virtual std::string Utf8ToAnsi(const std::string &text) = 0;
    virtual std::string AnsiToUtf8(const std::string &text) = 0;

    // ^NAME^ alone, the strings of the run's language; !NAME! stays.
    virtual std::string ExpandHats(const std::string &text) = 0;

    // ^NAME^ and then !NAME!.
    virtual std::string ExpandMacros(const std::string &text) = 0;

    // A GUID that no one else has, in braces and lower case; empty when Windows gives none.
    virtual std::string NewGuid() = 0;
};

// What is done to the text of an element once it is in the ANSI code page.
enum ETextForm {
    ETextPlain,
    ETextHats,
    ETextMacros,
};

std::string ElementText(xmlNode *element, ETextForm form, IDescriptionTexts &texts);

// The same, unless the attribute useDll is set: then a reference to a string of the document's resource DLL, "@", the
// DLL, the separator and the element's text as it stands. The separator ends in "-" where Windows resolves it.
std::string TextOrReference(xmlNode *element, ETextForm form, const std::string &dllFile, const char *separator,
                            IDescriptionTexts &texts);

// Whether a text refers to a resource DLL.
bool IsReference(const std::string &text);

// The attribute in the ANSI code page, empty when it is absent.
std::string Attribute(xmlNode *element, const char *name, IDescriptionTexts &texts);

// An attribute that is on when it is there and not "0", and one that is on unless it is "0".
bool IsSet(xmlNode *element, const char *attribute);
bool IsNotZero(xmlNode *element, const char *attribute);

// Hands each element that the expression finds in a document, a copy of it, to `work`, in the order of the document.
void ForEachElement(const XmlUtils::XmlContext &context, const std::string &xpath,
                    const std::function<void(xmlNode *)> &work);

// Splits a list of ids at every comma; blanks belong to the ids. An empty text gives one empty id.
std::vector<std::string> SplitIds(const std::string &list);

// What the maker's description adds to the names of four values of the registry, so that packages on one machine do not
// share them; empty when it says nothing.
std::string HelperSuffix(xmlDoc *doc, IDescriptionTexts &texts);

// The words of the trace for what is visible and what is not.
const char *ShowOrHide(bool visible);
