#include "Shell/XmlUtils.h"

#include <climits>
#include <stdexcept>

#include <libxml/parser.h>
#include <libxml/xmlsave.h>
#include <libxml/xpathInternals.h>

#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "Shell/XmlCodePages.h"

namespace XmlUtils {

const std::string kXmlNull = "\xff\xff";

namespace {

constexpr int kCheckedVersion = 20901;
constexpr int kFileOptions = XML_PARSE_NONET | XML_PARSE_PEDANTIC | XML_PARSE_NOWARNING;
constexpr int kMemoryOptions = XML_PARSE_NONET | XML_PARSE_PEDANTIC;
// Elements and entities around an entity whose text is still read; the parser lets neither nest as deep.
constexpr int kDeepestEntity = 1024;

const xmlChar *Xml(const std::string &text)
{
    return reinterpret_cast<const xmlChar *>(text.c_str());
}

std::string Text(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : std::string();
}

struct CXmlCharsCloser {
    void operator()(xmlChar *text) const { xmlFree(text); }
};
using XmlChars = std::unique_ptr<xmlChar, CXmlCharsCloser>;

struct CBufferCloser {
    void operator()(xmlBufferPtr buffer) const { xmlBufferFree(buffer); }
};
using XmlBuffer = std::unique_ptr<xmlBuffer, CBufferCloser>;

void IgnoreStructuredError(void *, xmlErrorPtr) {}

void IgnoreMessage(void *, const char *, ...) {}

bool gPrepared = false;

// Starts the library at its first use: most runs have none. It must not print; it keeps that for each thread.
void Prepare()
{
    if (!gPrepared) {
        gPrepared = true;
        xmlInitParser();
        RegisterXmlCodePages();
    }
    xmlSetStructuredErrorFunc(nullptr, IgnoreStructuredError);
    xmlSetGenericErrorFunc(nullptr, IgnoreMessage);
}

std::string LastErrorMessage()
{
    const xmlError *const error = xmlGetLastError();
    std::string message = error != nullptr && error->message != nullptr ? error->message : "";
    if (!message.empty() && message.back() == '\n') {
        message.pop_back();
    }
    return message;
}

void TraceXmlError()
{
    const xmlErrorPtr error = xmlGetLastError();
    if (error != nullptr) {
        trace(9, "TraceXmlError: %s\n", LastErrorMessage().c_str());
        xmlResetError(error);
    }
}

// The library takes names for UTF-8 first and for the code page after that.
XmlDoc ReadDocument(const std::string &path)
{
    Prepare();
    return XmlDoc(xmlReadFile(AnsiToUtf8(path).c_str(), nullptr, kFileOptions));
}

bool IsElement(const xmlNode *node)
{
    return node != nullptr && node->type == XML_ELEMENT_NODE;
}

// Puts the text of nodes together. What entities add is counted against a budget, and so are the steps through them,
// since entities that hold nothing can be as many.
class CTextCollector {
public:
    explicit CTextCollector(size_t budget) : mBudget(budget) {}

    void AddList(const xmlNode *first)
    {
        for (const xmlNode *node = first; node != nullptr && !mRefused; node = node->next) {
            Add(node);
        }
    }

    // `node` alone, without its siblings.
    void Add(const xmlNode *node)
    {
        if (mInEntity != 0) {
            Spend(1);
        }
        ++mDepth;
        switch (node->type) {
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
            AddContent(node->content);
            break;
        case XML_ENTITY_REF_NODE:
            AddEntity(xmlGetDocEntity(node->doc, node->name));
            break;
        case XML_DOCUMENT_NODE:
        case XML_ELEMENT_NODE:
        case XML_ATTRIBUTE_NODE:
            AddList(node->children);
            break;
        default:
            break;
        }
        --mDepth;
    }

    // What was put together, empty with a trace line when it was too much.
    std::string Take()
    {
        if (mRefused) {
            trace(9, "XmlUtils: a text is too long\n");
            return std::string();
        }
        return std::move(mText);
    }

    size_t Budget() const { return mBudget; }

private:
    void AddEntity(const xmlEntity *entity)
    {
        if (entity == nullptr) {
            return;
        }
        ++mInEntity;
        Spend(mDepth < kDeepestEntity ? 1 : mBudget + 1);
        AddList(entity->children);
        --mInEntity;
    }

    void AddContent(const xmlChar *content)
    {
        const char *const text = reinterpret_cast<const char *>(content);
        const size_t length = text != nullptr ? std::char_traits<char>::length(text) : 0;
        mRefused = mRefused || length > kTextLimit - mText.size();
        if (!mRefused && (mInEntity == 0 || Spend(length))) {
            mText.append(text != nullptr ? text : "", length);
        }
    }

    bool Spend(size_t count)
    {
        mRefused = mRefused || count > mBudget;
        mBudget -= mRefused ? mBudget : count;
        return !mRefused;
    }

    std::string mText;
    size_t mBudget;
    int mDepth = 0;
    int mInEntity = 0;
    bool mRefused = false;
};

} // namespace

void CXmlCloser::operator()(xmlDocPtr doc) const
{
    xmlFreeDoc(doc);
}

void CXmlCloser::operator()(xmlNodePtr node) const
{
    xmlFreeNode(node);
}

void CXmlCloser::operator()(xmlXPathObjectPtr object) const
{
    xmlXPathFreeObject(object);
}

void CXmlCloser::operator()(xmlXPathContextPtr context) const
{
    xmlXPathFreeContext(context);
}

void CheckXmlVersion()
{
    Prepare();
    xmlCheckVersion(kCheckedVersion);
}

void CleanupXml()
{
    xmlCleanupParser();
    gPrepared = false;
}

XmlDoc LoadXmlFile(const std::string &path)
{
    XmlDoc doc = ReadDocument(path);
    TraceXmlError();
    return doc;
}

XmlDoc LoadXmlFileWithError(const std::string &path, std::string &errorText_O)
{
    XmlDoc doc = ReadDocument(path);
    const xmlError *const error = xmlGetLastError();
    errorText_O = error != nullptr ? LastErrorMessage() + " at line: " + std::to_string(error->line) : std::string();
    TraceXmlError();
    return doc;
}

XmlDoc LoadXmlMemory(const std::string &text)
{
    if (text.size() > INT_MAX) {
        return nullptr;
    }
    Prepare();
    XmlDoc doc(xmlReadMemory(text.data(), static_cast<int>(text.size()), "untitled.xml", nullptr, kMemoryOptions));
    TraceXmlError();
    return doc;
}

bool SaveXmlDocument(const std::string &path, xmlDocPtr doc, bool format)
{
    const char *const encoding = xmlGetCharEncodingName(XML_CHAR_ENCODING_UTF8);
    if (AssertsToDebugOut()) {
        traceAlways("XmlUtils::SaveXmlDocument - saving to file: %s...\n", path.c_str());
    }
    if (doc == nullptr) {
        return false;
    }
    Prepare();
    const xmlSaveCtxtPtr saver = xmlSaveToFilename(AnsiToUtf8(path).c_str(), encoding, format ? XML_SAVE_FORMAT : 0);
    TraceXmlError();
    const bool saved = xmlSaveDoc(saver, doc) != -1;
    xmlSaveClose(saver);
    return saved;
}

std::string SaveXmlToString(xmlDocPtr doc, bool format, bool withDeclaration)
{
    const XmlBuffer buffer(xmlBufferCreate());
    if (doc == nullptr || !buffer) {
        return std::string();
    }
    Prepare();
    const int options = (format ? XML_SAVE_FORMAT : 0) | (withDeclaration ? 0 : XML_SAVE_NO_DECL);
    const xmlSaveCtxtPtr saver = xmlSaveToBuffer(buffer.get(), xmlGetCharEncodingName(XML_CHAR_ENCODING_UTF8), options);
    TraceXmlError();
    const bool saved = xmlSaveDoc(saver, doc) != -1;
    xmlSaveClose(saver);
    return saved ? Text(xmlBufferContent(buffer.get())) : std::string();
}

XmlDoc NewDocument()
{
    Prepare();
    return XmlDoc(xmlNewDoc(Xml("1.0")));
}

XmlNode CreateNode(xmlNsPtr ns, const std::string &name)
{
    if (xmlValidateName(Xml(name), 0) != 0) {
        throw std::invalid_argument("XmlUtils::CreateNode passed invalid node name: \"" + name + "\"");
    }
    return XmlNode(xmlNewNode(ns, Xml(name)));
}

xmlNodePtr CreateRootNode(xmlDocPtr xmlDoc_I, xmlNsPtr ns, const std::string &name, const std::string &content)
{
    if (xmlDoc_I == nullptr) {
        return nullptr;
    }
    TVX_ASSERT(!xmlDocGetRootElement(xmlDoc_I));
    XmlNode root(xmlNewDocNode(xmlDoc_I, ns, Xml(name), Xml(content)));
    const xmlNodePtr made = root.get();
    return SetRootNode(xmlDoc_I, std::move(root)) ? made : nullptr;
}

bool SetRootNode(xmlDocPtr xmlDoc_I, XmlNode node)
{
    if (xmlDoc_I == nullptr || !node) {
        return false;
    }
    TVX_ASSERT(!xmlDocGetRootElement(xmlDoc_I));
    const XmlNode former(xmlDocSetRootElement(xmlDoc_I, node.release()));
    return true;
}

xmlNodePtr AddChild(xmlNodePtr parent, xmlNsPtr ns, const std::string &name, const std::string &text, bool escape)
{
    if (parent == nullptr) {
        return nullptr;
    }
    if (text == kXmlNull) {
        return xmlNewChild(parent, ns, Xml(name), nullptr);
    }
    const XmlChars escaped(escape ? xmlEncodeSpecialChars(parent->doc, Xml(text)) : nullptr);
    return xmlNewChild(parent, ns, Xml(name), escape ? escaped.get() : Xml(text));
}

xmlNodePtr AddNode(xmlNodePtr parent, XmlNode child)
{
    return parent != nullptr && child ? xmlAddChild(parent, child.release()) : nullptr;
}

xmlNsPtr AddNamespace(xmlNodePtr node, const std::string &href, const std::string &prefix)
{
    return node != nullptr ? xmlNewNs(node, Xml(href), prefix == kXmlNull ? nullptr : Xml(prefix)) : nullptr;
}

void AddText(xmlNodePtr node, const std::string &text)
{
    if (node != nullptr) {
        xmlNodeAddContent(node, Xml(text));
    }
}

void SetText(xmlNodePtr node, const std::string &text, bool escape)
{
    if (node != nullptr) {
        const XmlChars escaped(escape ? xmlEncodeSpecialChars(node->doc, Xml(text)) : nullptr);
        xmlNodeSetContent(node, escape ? escaped.get() : Xml(text));
    }
}

xmlNodePtr AddComment(xmlNodePtr parent, const std::string &text)
{
    return parent != nullptr ? AddNode(parent, XmlNode(xmlNewDocComment(parent->doc, Xml(text)))) : nullptr;
}

xmlNodePtr AddDocComment(xmlDocPtr doc, const std::string &text)
{
    return doc != nullptr ? AddNode(reinterpret_cast<xmlNodePtr>(doc), XmlNode(xmlNewDocComment(doc, Xml(text))))
                          : nullptr;
}

xmlNodePtr AddCData(xmlNodePtr parent, const std::string &text)
{
    if (parent == nullptr || text.size() > INT_MAX) {
        return nullptr;
    }
    return AddNode(parent, XmlNode(xmlNewCDataBlock(parent->doc, Xml(text), static_cast<int>(text.size()))));
}

void Rename(xmlNodePtr node, const std::string &name)
{
    if (node != nullptr) {
        xmlNodeSetName(node, Xml(name));
    }
}

void SetAttribute(xmlNodePtr node, const std::string &name, const std::string &value)
{
    xmlSetProp(node, Xml(name), Xml(value));
}

bool RemoveAttribute(xmlNodePtr node, const std::string &name)
{
    const xmlAttrPtr attribute = xmlHasProp(node, Xml(name));
    return attribute != nullptr && attribute->type == XML_ATTRIBUTE_NODE && xmlRemoveProp(attribute) == 0;
}

std::string GetNodeName(const xmlNode *node)
{
    return node != nullptr ? Text(node->name) : std::string();
}

std::string GetNodeText(const xmlNode *node)
{
    if (node == nullptr) {
        return std::string();
    }
    if (node->type == XML_COMMENT_NODE || node->type == XML_PI_NODE) {
        return Text(node->content);
    }
    CTextCollector text(kEntityTextLimit);
    text.Add(node);
    return text.Take();
}

std::string GetNodeString(const xmlNode *node)
{
    return GetNodeText(node);
}

std::string GetAttribute(const xmlNode *node, const std::string &name)
{
    size_t budget = kEntityTextLimit;
    return GetAttribute(node, name, budget);
}

std::string GetAttribute(const xmlNode *node, const std::string &name, size_t &budget_I_O)
{
    const xmlAttr *const attribute = xmlHasProp(node, Xml(name));
    if (attribute == nullptr) {
        return std::string();
    }
    if (attribute->type == XML_ATTRIBUTE_DECL) { // the default that a DTD gives
        return Text(reinterpret_cast<const xmlAttribute *>(attribute)->defaultValue);
    }
    CTextCollector text(budget_I_O);
    text.AddList(attribute->children);
    budget_I_O = text.Budget();
    return text.Take();
}

size_t CountElementChildren(xmlNodePtr node)
{
    size_t count = 0;
    for (xmlNodePtr child = FirstElementChild(node); child != nullptr; child = NextElementSibling(child)) {
        ++count;
    }
    return count;
}

xmlNodePtr ElementChildAt(xmlNodePtr node, size_t index)
{
    xmlNodePtr child = FirstElementChild(node);
    for (; child != nullptr && index > 0; --index) {
        child = NextElementSibling(child);
    }
    return child;
}

xmlNodePtr FirstElementChild(xmlNodePtr node)
{
    // Behind a reference to an entity stands the declaration and no child.
    xmlNodePtr child = IsElement(node) ? node->children : nullptr;
    return child == nullptr || IsElement(child) ? child : NextElementSibling(child);
}

xmlNodePtr NextElementSibling(xmlNodePtr node)
{
    xmlNodePtr sibling = node != nullptr ? node->next : nullptr;
    while (sibling != nullptr && !IsElement(sibling)) {
        sibling = sibling->next;
    }
    return sibling;
}

xmlNodePtr FindElementChild(xmlNodePtr node, const std::string &name)
{
    xmlNodePtr child = FirstElementChild(node);
    while (child != nullptr && GetNodeName(child) != name) {
        child = NextElementSibling(child);
    }
    return child;
}

long GetLineNumber(xmlNodePtr node)
{
    return xmlGetLineNo(node);
}

XmlContext NewXPathContext(xmlDocPtr doc)
{
    return XmlContext(doc != nullptr ? xmlXPathNewContext(doc) : nullptr);
}

XmlObject FindNodes(xmlDocPtr doc, const std::string &xpath)
{
    XmlObject object = XPathObject(NewXPathContext(doc), xpath);
    return CountNodes(object) > 0 ? std::move(object) : nullptr;
}

size_t CountNodes(const XmlObject &object)
{
    const bool holdsNodes = object && object->type == XPATH_NODESET && object->nodesetval != nullptr;
    return holdsNodes ? static_cast<size_t>(object->nodesetval->nodeNr) : 0;
}

XmlNode NodeAt(const XmlObject &object, size_t index)
{
    return XmlNode(index < CountNodes(object) ? xmlCopyNode(object->nodesetval->nodeTab[index], 1) : nullptr);
}

XmlNode FirstNode(xmlDocPtr doc, const std::string &xpath)
{
    return NodeAt(FindNodes(doc, xpath), 0);
}

XmlNode FindNodeWithAttribute(const XmlObject &object, const std::string &attribute, const std::string &value)
{
    for (size_t index = 0; index < CountNodes(object); ++index) {
        XmlNode node = NodeAt(object, index);
        if (GetAttribute(node.get(), attribute) == value) {
            return node;
        }
    }
    return nullptr;
}

XmlObject XPathObject(const XmlContext &context, const std::string &xpath)
{
    return XmlObject(context ? xmlXPathEvalExpression(Xml(xpath), context.get()) : nullptr);
}

XmlNode FirstNodeInContext(const XmlContext &context, const std::string &xpath)
{
    return NodeAt(XPathObject(context, xpath), 0);
}

double XPathNumber(const XmlContext &context, const std::string &xpath)
{
    const XmlObject object = XPathObject(context, xpath);
    if (CountNodes(object) > 0) {
        return xmlXPathCastStringToNumber(Xml(GetNodeText(object->nodesetval->nodeTab[0])));
    }
    return object ? xmlXPathCastToNumber(object.get()) : 0.0;
}

std::string XPathString(const XmlContext &context, const std::string &xpath)
{
    const XmlObject object = XPathObject(context, xpath);
    if (CountNodes(object) > 0) {
        return GetNodeText(object->nodesetval->nodeTab[0]); // not the library's way, which entities can make endless
    }
    const XmlChars text(object ? xmlXPathCastToString(object.get()) : nullptr);
    return Text(text.get());
}

} // namespace XmlUtils
