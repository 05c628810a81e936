#include "Shell/XmlMerge.h"

#include <gtest/gtest.h>

#include "Shell/XmlUtils.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

// The document on one line, without declaration.
std::string Shown(const XmlUtils::XmlDoc &doc)
{
    std::string text = XmlUtils::SaveXmlToString(doc.get(), false, false);
    for (size_t at; (at = text.find('\n')) != std::string::npos;) {
        text.erase(at, 1);
    }
    return text;
}

std::string Merged(const std::string &pair)
{
    const size_t plus = pair.find(" + ");
    const XmlUtils::XmlDoc dest = XmlUtils::LoadXmlMemory(pair.substr(0, plus));
    const XmlUtils::XmlDoc source = XmlUtils::LoadXmlMemory(pair.substr(plus + 3));
    MergeXmlDocuments(dest.get(), source.get());
    const std::string once = Shown(dest);
    MergeXmlDocuments(dest.get(), source.get());
    const std::string twice = Shown(dest);
    return once == twice ? once : once + " then " + twice;
}

TEST(XmlMerge, Documents)
{
    for (const char *table : {"xml-merge", "xml-merge-namespaces", "xml-merge-references"}) {
        ExpectTable(table, Merged);
    }
    const XmlUtils::XmlDoc doc = XmlUtils::LoadXmlMemory("<r/>");
    MergeXmlDocuments(doc.get(), nullptr);
    MergeXmlDocuments(nullptr, doc.get());
    MergeXmlDocuments(XmlUtils::NewDocument().get(), doc.get());
    EXPECT_EQ(Shown(doc), "<r/>");
}

// By comparing each child with each this would take minutes.
TEST(XmlMerge, ManyChildrenAreFoundQuickly)
{
    std::string half = "<r>", other = "<r>";
    for (int number = 0; number < 20000; ++number) {
        half += "<a k='same' id='" + std::to_string(number) + "'/>";
        other += "<a k='SAME' id='" + std::to_string(number + 10000) + "' v='1'/>";
    }
    const XmlUtils::XmlDoc dest = XmlUtils::LoadXmlMemory(half + "</r>"),
                           source = XmlUtils::LoadXmlMemory(other + "</r>");
    MergeXmlDocuments(dest.get(), source.get());
    EXPECT_EQ(XmlUtils::CountElementChildren(xmlDocGetRootElement(dest.get())), 40000u);
    MergeXmlDocuments(dest.get(), source.get());
    EXPECT_EQ(XmlUtils::CountElementChildren(xmlDocGetRootElement(dest.get())), 40000u);
}

// A megabyte in two thousand attributes; all entities of one merge together are held to a limit.
TEST(XmlMerge, EntitiesDoNotFillTheMemory)
{
    std::string source = "<!DOCTYPE r [<!ENTITY m '" + std::string(1000000, 'm') + "'>]><r";
    for (int number = 0; number < 2000; ++number) {
        source += " a" + std::to_string(number) + "='&m;'";
    }
    const XmlUtils::XmlDoc doc = XmlUtils::LoadXmlMemory(source + "/>"), dest = XmlUtils::LoadXmlMemory("<r x='0'/>");
    TakeTraceRecords();
    MergeXmlDocuments(dest.get(), doc.get());
    EXPECT_EQ(TakeTraceRecords().back(), "XmlUtils: a text is too long");
    const size_t size = Shown(dest).size();
    EXPECT_TRUE(size > 9000000 && size < 11000000) << size;
}

} // namespace
