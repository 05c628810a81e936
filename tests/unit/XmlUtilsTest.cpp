#include "Shell/XmlUtils.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "Common/Trace.h"
#include "Shell/HexText.h"
#include "Tables.h"
#include "TraceRecorder.h"

using namespace XmlUtils;

namespace {

// What comes of a document, or the last thing that was said about it.
std::string Loaded(const std::string &text)
{
    TakeTraceRecords();
    const XmlDoc doc = LoadXmlMemory(text);
    const std::vector<std::string> records = TakeTraceRecords();
    std::string shown = doc ? GetNodeText(xmlDocGetRootElement(doc.get())) : "none";
    return records.empty() ? shown : shown + ", " + records.back();
}

std::string Utf16(const std::string &ascii)
{
    std::string text = "\xff\xfe";
    for (const char letter : ascii) {
        text.append(1, letter).append(1, '\0');
    }
    return text;
}

TEST(XmlUtils, DocumentsAreReadOrRefused)
{
    ExpectTable("xml-load", Loaded);
    EXPECT_EQ(Loaded(Utf16("<?xml version='1.0' encoding='UTF-16'?><r>&#233;</r>")), "é");
    EXPECT_EQ(Loaded("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xe9</r>"), "é");
    std::string nested;
    for (int count = 0; count < 1000000; ++count) {
        nested += "<a>";
    }
    EXPECT_EQ(Loaded(nested).substr(0, 50), "none, TraceXmlError: Excessive depth in document: ");
    const XmlDoc doc = NewDocument();
    AddText(CreateRootNode(doc.get(), nullptr, "r", ""), std::string(kTextLimit + 1, 't'));
    EXPECT_EQ(GetNodeText(xmlDocGetRootElement(doc.get())), "");
    EXPECT_EQ(TakeTraceRecords().back(), "XmlUtils: a text is too long");
}

TEST(XmlUtils, FilesAreReadAndNothingElse)
{
    const std::string path = "XmlUtilsTest.xml", dtd = "XmlUtilsTest.dtd";
    std::ofstream(dtd) << "<!ATTLIST r x CDATA 'fetched'><!ENTITY e 'fetched'>";
    std::ofstream(path) << "<!DOCTYPE r SYSTEM '" + dtd + "' [<!ENTITY f SYSTEM '" + dtd + "'>]>\n<r>&e;&f;</r>";
    XmlDoc doc = LoadXmlFile(path);
    ASSERT_TRUE(doc);
    EXPECT_EQ(GetNodeText(xmlDocGetRootElement(doc.get())) + GetAttribute(xmlDocGetRootElement(doc.get()), "x"), "");
    std::ofstream(path) << "<r>\n<a></r>";
    TakeTraceRecords();
    std::string error;
    EXPECT_FALSE(LoadXmlFileWithError(path, error));
    EXPECT_EQ(error.substr(error.find(" at line: ")), " at line: 2");
    EXPECT_EQ(TakeTraceRecords(),
              std::vector<std::string>{"TraceXmlError: " + error.substr(0, error.find(" at line"))});
    EXPECT_FALSE(LoadXmlFile("nosuch.xml"));
    EXPECT_EQ(TakeTraceRecords(),
              std::vector<std::string>{"TraceXmlError: failed to load external entity \"nosuch.xml\""});
    doc = LoadXmlMemory("<r>\n <a>é</a></r>");
    EXPECT_TRUE(SaveXmlDocument(path, doc.get(), false));
    std::string saved;
    std::getline(std::ifstream(path), saved, '\0');
    EXPECT_EQ(saved, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\n <a>é</a></r>\n");
    EXPECT_EQ(TakeTraceRecords(),
              std::vector<std::string>{"XmlUtils::SaveXmlDocument - saving to file: XmlUtilsTest.xml..."});
    SetAssertsToDebugOut(false);
    EXPECT_FALSE(SaveXmlDocument("nosuch/folder/x.xml", doc.get(), false));
    SetAssertsToDebugOut(true);
    EXPECT_EQ(TakeTraceRecords().size(), 1u);
    CleanupXml();
    EXPECT_EQ(Loaded("<r>again</r>"), "again");
    remove(path.c_str()), remove(dtd.c_str());
}

TEST(XmlUtils, DocumentsAreBuilt)
{
    const XmlDoc doc = NewDocument();
    const xmlNodePtr root = CreateRootNode(doc.get(), nullptr, "r", "&amp;");
    const xmlNsPtr prefixed = AddNamespace(root, "urn:p", "p");
    AddNamespace(root, "urn:d", kXmlNull);
    const xmlNodePtr child = AddChild(root, prefixed, "a", "<&", true);
    SetAttribute(child, "x", "1");
    SetAttribute(child, "y", "2");
    EXPECT_TRUE(RemoveAttribute(child, "y"));
    EXPECT_FALSE(RemoveAttribute(child, "y"));
    AddChild(root, nullptr, "b", kXmlNull, true);
    AddChild(root, nullptr, "c", "&lt;", false);
    SetText(AddNode(root, CreateNode(nullptr, "d")), "&", true);
    AddText(root, "&");
    AddComment(root, "k");
    AddCData(root, "<");
    AddDocComment(doc.get(), "m");
    Rename(child, "e");
    EXPECT_EQ(SaveXmlToString(doc.get(), false, false),
              "<r xmlns:p=\"urn:p\" xmlns=\"urn:d\">&amp;<p:e x=\"1\">&lt;&amp;</p:e><b/><c>&lt;</c><d>&amp;</d>&amp;"
              "<!--k--><![CDATA[<]]></r>\n<!--m-->\n");
    EXPECT_EQ(SaveXmlToString(LoadXmlMemory("<r><a/></r>").get(), true, true),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>\n  <a/>\n</r>\n");
    TakeTraceRecords();
    EXPECT_TRUE(SetRootNode(doc.get(), CreateNode(nullptr, "s")));
    EXPECT_EQ(TakeAssertions(), "!xmlDocGetRootElement(xmlDoc_I)");
    EXPECT_FALSE(SetRootNode(doc.get(), nullptr) || CreateRootNode(nullptr, nullptr, "r", "") ||
                 AddNode(root, nullptr));
    try {
        CreateNode(nullptr, "a b");
        ADD_FAILURE();
    } catch (const std::invalid_argument &refusal) {
        EXPECT_STREQ(refusal.what(), "XmlUtils::CreateNode passed invalid node name: \"a b\"");
    }
}

TEST(XmlUtils, NodesAreFoundAndOutliveTheirDocument)
{
    XmlDoc doc =
        LoadXmlMemory("<!DOCTYPE r [<!ENTITY e '5'>]><r>\n<a i='1'>x<b>y<!--z--></b></a><A/>t<a i='2'>7&e;</a></r>");
    const xmlNodePtr root = xmlDocGetRootElement(doc.get());
    EXPECT_EQ(GetNodeText(root), "\nxyt75");
    EXPECT_EQ(CountElementChildren(root), 3u);
    EXPECT_EQ(GetNodeName(ElementChildAt(root, 1)), "A");
    EXPECT_EQ(FindElementChild(root, "A"), NextElementSibling(FirstElementChild(root)));
    EXPECT_EQ(ElementChildAt(root, 3), nullptr);
    EXPECT_EQ(GetLineNumber(FirstElementChild(root)), 2);
    XmlContext context = NewXPathContext(doc.get());
    EXPECT_EQ(XPathNumber(context, "/r/a[2]") + XPathNumber(context, "count(/r/*)"), 78);
    EXPECT_EQ(XPathString(context, "/r/a/@i") + XPathString(context, "'s'") + XPathString(context, "//none"), "1s");
    EXPECT_EQ(GetAttribute(FirstNodeInContext(context, "/r/a[2]").get(), "i"), "2");
    TakeTraceRecords();
    EXPECT_EQ(FindNodes(doc.get(), "/r/none"), nullptr);
    EXPECT_EQ(FindNodes(doc.get(), "/r/["), nullptr);
    const XmlObject found = FindNodes(doc.get(), "/r/a");
    const XmlNode first = FirstNode(doc.get(), "/r/a"), second = FindNodeWithAttribute(found, "i", "2");
    EXPECT_EQ(CountNodes(found), 2u);
    EXPECT_FALSE(NodeAt(found, 2) || FindNodeWithAttribute(found, "i", "3"));
    context.reset();
    doc.reset();
    EXPECT_EQ(GetNodeText(first.get()), "xy");
    EXPECT_EQ(GetNodeString(FindElementChild(first.get(), "b")), "y");
    EXPECT_EQ(GetNodeText(second.get()), "7"); // the entity went with its document
}

std::string Hex(const std::string &text)
{
    const std::string bytes = BytesFromHex(text);
    std::string line = HexLine(reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size());
    line.resize(line.empty() ? 0 : line.size() - 2);
    return line;
}

TEST(HexText, IsReadInPairsUpToTheFirstOtherCharacter)
{
    ExpectTable("hex", Hex);
    EXPECT_EQ(Hex("1\t2\n3\v4\f5\r6 7\xc2\xa0"
                  "8"),
              "01 02 03 04 05 06 07");
    EXPECT_EQ(HexLine(reinterpret_cast<const unsigned char *>("0123456789abcdef"), 16).size(), 49u);
}

} // namespace
