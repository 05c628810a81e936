// XML documents: how they are parsed, searched, built and saved. All work with libxml2 goes through here.
//
// Nothing here prints or stops: a document that cannot be read is null and leaves a trace line, and every function
// answers null, false or an empty text when it is given null. Text is UTF-8 as the library keeps it, paths are in the
// ANSI code page. One thread at a time; CleanupXml() only while no document is alive.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include <libxml/tree.h>
#include <libxml/xpath.h>

namespace XmlUtils {

struct CXmlCloser {
    void operator()(xmlDocPtr doc) const;
    void operator()(xmlNodePtr node) const;
    void operator()(xmlXPathObjectPtr object) const;
    void operator()(xmlXPathContextPtr context) const;
};

// Owners. An XmlNode stands by itself, outside every document: queries answer such copies, which live on when the
// document is freed. References to entities of a document stand for nothing in a copy.
using XmlDoc = std::unique_ptr<xmlDoc, CXmlCloser>;
using XmlNode = std::unique_ptr<xmlNode, CXmlCloser>;
using XmlObject = std::unique_ptr<xmlXPathObject, CXmlCloser>;
using XmlContext = std::unique_ptr<xmlXPathContext, CXmlCloser>;

// Stands for null where a text is asked for: as a prefix it makes a default namespace, as the text of a child an
// element without content.
extern const std::string kXmlNull;

// --- the library ---
void CheckXmlVersion();
void CleanupXml();

// --- documents ---
// Reads a document. Nothing is fetched from a network or, for a DTD, from a file; what nests deeper or holds longer
// texts than the library's limits is refused.
XmlDoc LoadXmlFile(const std::string &path);

// The same; `errorText_O` receives the last error and its line, as in "Extra content at line: 3", empty without one.
XmlDoc LoadXmlFileWithError(const std::string &path, std::string &errorText_O);

XmlDoc LoadXmlMemory(const std::string &text);

// Writes a document as UTF-8, indented when `format` says so and the document's own white space allows it. Answers
// whether it was written.
bool SaveXmlDocument(const std::string &path, xmlDocPtr doc, bool format);

// The same into a text; empty when it fails.
std::string SaveXmlToString(xmlDocPtr doc, bool format, bool withDeclaration);

XmlDoc NewDocument();

// --- building ---
// A node outside a document. Throws std::invalid_argument for a name that XML does not allow.
XmlNode CreateNode(xmlNsPtr ns, const std::string &name);

// Makes the root of a document, or makes a node the root, which the document then owns. A root that is there already is
// asserted and replaced. `content` may hold references.
xmlNodePtr CreateRootNode(xmlDocPtr xmlDoc_I, xmlNsPtr ns, const std::string &name, const std::string &content);
bool SetRootNode(xmlDocPtr xmlDoc_I, XmlNode node);

// Adds an element behind the other children; without a namespace it takes the parent's. `escape`: the text is plain
// text; otherwise "&" begins a reference in it. The answer belongs to the parent.
xmlNodePtr AddChild(xmlNodePtr parent, xmlNsPtr ns, const std::string &name, const std::string &text, bool escape);

// Adds a node behind the other children and hands it over to the parent. Answers the node, or the text before it that
// it was joined to.
xmlNodePtr AddNode(xmlNodePtr parent, XmlNode child);

xmlNsPtr AddNamespace(xmlNodePtr node, const std::string &href, const std::string &prefix);
void AddText(xmlNodePtr node, const std::string &text); // plain text, behind what is there
void SetText(xmlNodePtr node, const std::string &text, bool escape);
xmlNodePtr AddComment(xmlNodePtr parent, const std::string &text);
xmlNodePtr AddDocComment(xmlDocPtr doc, const std::string &text);
xmlNodePtr AddCData(xmlNodePtr parent, const std::string &text);
void Rename(xmlNodePtr node, const std::string &name);
void SetAttribute(xmlNodePtr node, const std::string &name, const std::string &value);
bool RemoveAttribute(xmlNodePtr node, const std::string &name); // whether there was one

// --- reading nodes ---
// The longest text in bytes, and how many of them the entities of a document may add. A longer one is refused with a
// trace line and reads as empty, so that neither a large file nor a few lines of declarations can use up the memory.
constexpr size_t kTextLimit = 64 << 20;
constexpr size_t kEntityTextLimit = 10000000;

std::string GetNodeName(const xmlNode *node);
std::string GetNodeText(const xmlNode *node);   // of a whole element, what markup parts put together
std::string GetNodeString(const xmlNode *node); // the same as XPath sees it

// The value of the first attribute with this name, in any namespace; empty without one.
std::string GetAttribute(const xmlNode *node, const std::string &name);

// The same, with the entities' bytes counted against what is left of `budget_I_O`.
std::string GetAttribute(const xmlNode *node, const std::string &name, size_t &budget_I_O);

size_t CountElementChildren(xmlNodePtr node);
xmlNodePtr ElementChildAt(xmlNodePtr node, size_t index);
xmlNodePtr FirstElementChild(xmlNodePtr node);
xmlNodePtr NextElementSibling(xmlNodePtr node);
xmlNodePtr FindElementChild(xmlNodePtr node, const std::string &name); // exactly this name, the first
long GetLineNumber(xmlNodePtr node);

// --- XPath ---

XmlContext NewXPathContext(xmlDocPtr doc);

// What an expression finds, null when that is no node.
XmlObject FindNodes(xmlDocPtr doc, const std::string &xpath);
size_t CountNodes(const XmlObject &object);

// A copy of one of the nodes; null past the end.
XmlNode NodeAt(const XmlObject &object, size_t index);

// A copy of the first node that an expression finds.
XmlNode FirstNode(xmlDocPtr doc, const std::string &xpath);

// A copy of the first node with this attribute value, compared exactly.
XmlNode FindNodeWithAttribute(const XmlObject &object, const std::string &attribute, const std::string &value);

// The same family over a context that the caller keeps.
XmlObject XPathObject(const XmlContext &context, const std::string &xpath);
XmlNode FirstNodeInContext(const XmlContext &context, const std::string &xpath);
double XPathNumber(const XmlContext &context, const std::string &xpath);      // 0 when there is no result
std::string XPathString(const XmlContext &context, const std::string &xpath); // empty likewise

} // namespace XmlUtils
