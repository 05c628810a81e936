#include "Shell/XmlMerge.h"

#include <cstring>
#include <string>
#include <unordered_map>

#include "Shell/XmlUtils.h"

namespace {

const std::string kMatchUsingAttributes = "matchUsingAttributes";
constexpr char kTextName[] = "text";
// Comparisons of children that are made before an index of them is; most elements never have as many.
constexpr size_t kComparisonsBeforeIndex = 512;
// Indexes of one element's children, each for one set of attributes. Children with further sets are compared one by
// one.
constexpr size_t kMostShapes = 16;

bool SameName(const xmlChar *left, const char *right)
{
    return xmlStrcasecmp(left, reinterpret_cast<const xmlChar *>(right)) == 0;
}

// Only elements have attributes; in other nodes the library keeps text at that place.
xmlAttrPtr FirstAttribute(const xmlNode *node)
{
    return node->type == XML_ELEMENT_NODE ? node->properties : nullptr;
}

// What is compared of an attribute.
const xmlChar *FirstContent(const xmlAttr *attribute)
{
    return attribute != nullptr && attribute->children != nullptr ? attribute->children->content : nullptr;
}

// A colon in a name is that of a prefix without a namespace, which may have one in the destination.
bool HasColon(const xmlAttr *attribute)
{
    return xmlStrchr(attribute->name, ':') != nullptr;
}

// Whether to set an attribute to `content` would change nothing; most are what they were when a package is updated.
bool HoldsAlready(const xmlAttr *attribute, const xmlChar *content)
{
    return attribute != nullptr && attribute->type == XML_ATTRIBUTE_NODE && attribute->ns == nullptr &&
           !HasColon(attribute) && attribute->children != nullptr && attribute->children->next == nullptr &&
           attribute->children->type == XML_TEXT_NODE && xmlStrEqual(attribute->children->content, content) != 0;
}

bool IsUncompared(const xmlAttr *attribute)
{
    return SameName(attribute->name, kMatchUsingAttributes.c_str());
}

void AppendLower(std::string &text_I_O, const xmlChar *letters)
{
    for (; letters != nullptr && *letters != 0; ++letters) {
        const char letter = static_cast<char>(*letters);
        text_I_O += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    text_I_O += '\0';
}

// Whether nothing but the name of a source's node decides.
bool MatchesByName(const xmlNode *source, bool useAttributes)
{
    return !useAttributes || SameName(source->name, kTextName) || FirstAttribute(source) == nullptr;
}

bool NodesMatch(const xmlNode *source, const xmlNode *child, bool useAttributes)
{
    if (xmlStrcasecmp(source->name, child->name) != 0) {
        return false;
    }
    if (MatchesByName(source, useAttributes)) {
        return true;
    }
    for (const xmlAttr *attribute = source->properties; attribute != nullptr; attribute = attribute->next) {
        const xmlAttr *const other = xmlHasProp(child, attribute->name);
        if (other == nullptr ||
            (!IsUncompared(attribute) && xmlStrcasecmp(FirstContent(attribute), FirstContent(other)) != 0)) {
            return false;
        }
    }
    return true;
}

// Finds children of one element of the destination. The first child that matches is meant, so the children are looked
// through in order; when that has taken long, by indexes that give the same answers.
class CChildFinder {
public:
    explicit CChildFinder(xmlNodePtr parent) : mParent(parent) {}

    xmlNodePtr Find(const xmlNode *source, bool useAttributes)
    {
        if (mComparisons > mLimit) {
            const std::string *const key = MatchesByName(source, useAttributes) ? ByName(source) : ByShape(source);
            if (key != nullptr) {
                const auto found = mFound->find(*key);
                return found != mFound->end() ? found->second : nullptr;
            }
        }
        for (xmlNodePtr child = mParent->children; child != nullptr; child = child->next) {
            ++mComparisons;
            if (NodesMatch(source, child, useAttributes)) {
                return child;
            }
        }
        return nullptr;
    }

    // A child was put behind the others.
    void Added(const xmlNodePtr child)
    {
        if (!mNames.empty()) {
            EnterName(child);
        }
        for (auto &[names, shape] : mShapes) {
            EnterShape(shape, child);
        }
    }

    // The attributes of a child changed so that it may match what it did not match before, or the other way round.
    void AttributesChanged()
    {
        if (!mShapes.empty()) {
            mShapes.clear();
            mComparisons = 0; // indexing anew has to be earned anew
        }
    }

private:
    using Children = std::unordered_map<std::string, xmlNodePtr>;
    struct CShape {
        const xmlNode *mExample = nullptr; // an element of the source with this name and these attributes
        Children mChildren;
    };

    const std::string *ByName(const xmlNode *source)
    {
        if (mNames.empty()) {
            for (xmlNodePtr child = mParent->children; child != nullptr; child = child->next) {
                EnterName(child);
            }
        }
        mFound = &mNames;
        mKey.clear();
        AppendLower(mKey, source->name);
        return &mKey;
    }

    // Null when there are too many shapes.
    const std::string *ByShape(const xmlNode *source)
    {
        mKey.clear();
        AppendLower(mKey, source->name);
        for (const xmlAttr *attribute = source->properties; attribute != nullptr; attribute = attribute->next) {
            mKey.append(reinterpret_cast<const char *>(attribute->name)) += '\0';
        }
        auto shape = mShapes.find(mKey);
        if (shape == mShapes.end()) {
            if (mShapes.size() == kMostShapes) {
                return nullptr;
            }
            shape = mShapes.emplace(mKey, CShape()).first;
            shape->second.mExample = source;
            mLimit = kComparisonsBeforeIndex;
            for (xmlNodePtr child = mParent->children; child != nullptr; child = child->next) {
                EnterShape(shape->second, child);
                mLimit += 4;
            }
        }
        mFound = &shape->second.mChildren;
        MakeValues(source, source);
        return &mKey;
    }

    void EnterName(xmlNodePtr child)
    {
        mKey.clear();
        AppendLower(mKey, child->name);
        mNames.emplace(mKey, child);
    }

    void EnterShape(CShape &shape, xmlNodePtr child)
    {
        if (xmlStrcasecmp(shape.mExample->name, child->name) == 0 && MakeValues(shape.mExample, child)) {
            shape.mChildren.emplace(mKey, child);
        }
    }

    // Makes mKey of the values that `node` has for the attributes of `example`; false when it lacks one.
    bool MakeValues(const xmlNode *example, const xmlNode *node)
    {
        mKey.clear();
        for (const xmlAttr *attribute = example->properties; attribute != nullptr; attribute = attribute->next) {
            const xmlAttr *const own = example == node ? attribute : xmlHasProp(node, attribute->name);
            if (own == nullptr) {
                return false;
            }
            if (!IsUncompared(attribute)) {
                mKey += FirstContent(own) != nullptr ? '=' : '-';
                AppendLower(mKey, FirstContent(own));
            }
        }
        return true;
    }

    xmlNodePtr mParent;
    Children mNames;
    std::unordered_map<std::string, CShape> mShapes;
    const Children *mFound = nullptr; // what the key just made is for
    std::string mKey;
    size_t mComparisons = 0;
    size_t mLimit = kComparisonsBeforeIndex;
};

class CMerge {
public:
    // Answers whether attributes of `dest` changed in a way that matters to who looks for it among its siblings.
    bool MergeNodes(xmlNodePtr dest, const xmlNode *src)
    {
        // What a reference to an entity stands for belongs to the declaration, and it may be anything.
        if (dest == nullptr || src == nullptr || dest->type == XML_ENTITY_REF_NODE ||
            src->type == XML_ENTITY_REF_NODE) {
            return false;
        }
        const bool named = !SameName(dest->name, kTextName) && xmlStrcasecmp(dest->name, src->name) == 0;
        const bool changed = named && MergeAttributes(dest, src);
        MergeChildren(dest, src);
        const bool hasContent = src->type != XML_ELEMENT_NODE && src->content != nullptr && *src->content != 0;
        if (hasContent && (dest->type != src->type || xmlStrEqual(dest->content, src->content) == 0)) {
            xmlNodeSetContent(dest, src->content);
        }
        return changed;
    }

private:
    bool MergeAttributes(xmlNodePtr dest, const xmlNode *src)
    {
        bool changed = false;
        for (const xmlAttr *attribute = FirstAttribute(src); attribute != nullptr; attribute = attribute->next) {
            // By its name alone: of attributes with one name in several namespaces this is the first one's value.
            const std::string name = reinterpret_cast<const char *>(attribute->name);
            const std::string value = XmlUtils::GetAttribute(src, name, mBudget);
            if (value.empty()) {
                continue;
            }
            const xmlAttr *const former = xmlHasProp(dest, attribute->name);
            const xmlChar *const content = reinterpret_cast<const xmlChar *>(value.c_str());
            if (HoldsAlready(former, content)) {
                continue;
            }
            changed = changed || former == nullptr || xmlStrcasecmp(FirstContent(former), content) != 0 ||
                      HasColon(attribute);
            xmlSetProp(dest, attribute->name, content);
        }
        return changed;
    }

    void MergeChildren(xmlNodePtr dest, const xmlNode *src)
    {
        if (src->type != XML_ELEMENT_NODE) {
            return;
        }
        CChildFinder children(dest);
        for (xmlNodePtr child = src->children; child != nullptr; child = child->next) {
            const std::string steer = XmlUtils::GetAttribute(child, kMatchUsingAttributes, mBudget);
            const xmlNodePtr match = children.Find(child, steer != "0");
            if (match != nullptr) {
                if (MergeNodes(match, child)) {
                    children.AttributesChanged();
                }
            } else if (dest->type == XML_ELEMENT_NODE || dest->type == XML_TEXT_NODE) { // others show no children
                const xmlNodePtr last = dest->last;
                xmlAddChild(dest, xmlCopyNode(child, 1));
                if (dest->last != last) { // a text may have been joined to another one
                    children.Added(dest->last);
                }
            }
        }
    }

    size_t mBudget = XmlUtils::kEntityTextLimit; // of all attributes together
};

} // namespace

void MergeXmlDocuments(xmlDocPtr destDoc, xmlDocPtr srcDoc)
{
    if (destDoc != nullptr && srcDoc != nullptr) {
        CMerge().MergeNodes(xmlDocGetRootElement(destDoc), xmlDocGetRootElement(srcDoc));
    }
}
