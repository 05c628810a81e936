// Merges two documents, parted by a line of "===": the contents of two roots, repeated until the indexes work, and,
// when these are none, documents as they are.
#include <algorithm>

#include "Require.h"
#include "Shell/XmlMerge.h"
#include "Shell/XmlUtils.h"

namespace {

// The merge as it is told, without indexes, for comparison with the real one.
bool Same(const xmlChar *left, const void *right)
{
    return xmlStrcasecmp(left, static_cast<const xmlChar *>(right)) == 0;
}

const xmlAttr *Attributes(const xmlNode *node)
{
    return node->type == XML_ELEMENT_NODE ? node->properties : nullptr;
}

bool Matches(const xmlNode *source, const xmlNode *child, bool byName)
{
    if (!Same(source->name, child->name)) {
        return false;
    }
    for (const xmlAttr *own = byName ? nullptr : Attributes(source); own != nullptr; own = own->next) {
        const xmlAttr *const other = xmlHasProp(child, own->name);
        const xmlChar *const content = own->children != nullptr ? own->children->content : nullptr;
        if (other == nullptr || (!Same(own->name, "matchUsingAttributes") &&
                                 !Same(content, other->children != nullptr ? other->children->content : nullptr))) {
            return false;
        }
    }
    return true;
}

void SlowMerge(xmlNodePtr dest, xmlNodePtr source)
{
    if (dest->type == XML_ENTITY_REF_NODE || source->type == XML_ENTITY_REF_NODE) {
        return;
    }
    const bool named = !Same(dest->name, "text") && Same(dest->name, source->name);
    for (const xmlAttr *own = named ? Attributes(source) : nullptr; own != nullptr; own = own->next) {
        const std::string name = reinterpret_cast<const char *>(own->name);
        const std::string value = XmlUtils::GetAttribute(source, name);
        if (!value.empty()) {
            XmlUtils::SetAttribute(dest, name, value);
        }
    }
    for (xmlNodePtr child = source->children; child != nullptr; child = child->next) {
        const bool byName = XmlUtils::GetAttribute(child, "matchUsingAttributes") == "0" || Same(child->name, "text");
        xmlNodePtr match = dest->children;
        while (match != nullptr && !Matches(child, match, byName)) {
            match = match->next;
        }
        if (match != nullptr) {
            SlowMerge(match, child);
        } else if (dest->type != XML_COMMENT_NODE && dest->type != XML_PI_NODE) {
            xmlAddChild(dest, xmlCopyNode(child, 1));
        }
    }
    if (source->type != XML_ELEMENT_NODE && source->content != nullptr && *source->content != 0) {
        xmlNodeSetContent(dest, source->content);
    }
}

void CheckMerge(const std::string &dest, const std::string &source)
{
    const XmlUtils::XmlDoc merged = XmlUtils::LoadXmlMemory(dest);
    const XmlUtils::XmlDoc slow = XmlUtils::LoadXmlMemory(dest);
    const XmlUtils::XmlDoc from = XmlUtils::LoadXmlMemory(source);
    const std::string before = XmlUtils::SaveXmlToString(from.get(), false, true);
    MergeXmlDocuments(merged.get(), from.get());
    if (merged && from) {
        SlowMerge(xmlDocGetRootElement(slow.get()), xmlDocGetRootElement(from.get()));
        Require(XmlUtils::SaveXmlToString(merged.get(), false, true) ==
                XmlUtils::SaveXmlToString(slow.get(), false, true));
    }
    Require(XmlUtils::SaveXmlToString(from.get(), false, true) == before);
    XmlUtils::GetNodeText(xmlDocGetRootElement(merged.get()));
}

std::string Many(const std::string &content, size_t copies)
{
    std::string many = "<r>";
    while (copies-- > 0) {
        many += content;
    }
    return many + "</r>";
}

// How often two contents are repeated: often enough for the comparisons after which the indexes work, some times over.
size_t CopiesOf(const std::string &dest, const std::string &source)
{
    const size_t pairs =
        (1 + std::count(dest.begin(), dest.end(), '<')) * (1 + std::count(source.begin(), source.end(), '<'));
    size_t copies = 25;
    while (copies > 4 && copies * copies * pairs > 4000) {
        --copies;
    }
    return copies;
}

} // namespace

void CheckInput(const std::string &text)
{
    const size_t line = text.find("\n===\n");
    const std::string dest = text.substr(0, line);
    const std::string source = line != std::string::npos ? text.substr(line + 5) : std::string();
    if (XmlUtils::LoadXmlMemory("<r>" + dest + "</r>") && XmlUtils::LoadXmlMemory("<r>" + source + "</r>")) {
        const size_t copies = CopiesOf(dest, source);
        CheckMerge(Many(dest, copies), Many(source, copies));
    } else {
        CheckMerge(dest, source);
    }
}
