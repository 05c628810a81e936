// What merging one large XML document into another costs beside what it cannot do without: libxml2 parsing both and
// saving one. The time of the installer is that of its whole process less that of one which runs no step; it ends with
// a copy of the file over the destination, which the bare calls do without.
#include <libxml/parser.h>
#include <libxml/xmlsave.h>

#include <string>
#include <vector>

#include "Bench.h"
#include "Files.h"

namespace {

constexpr int kRounds = 9;
constexpr size_t kSize = 5 * 1024 * 1024;

// Elements with an id and a few things in them, flat or in groups.
std::string Document(const std::string &value, size_t first, size_t perGroup)
{
    std::string text = "<settings>\n";
    for (size_t number = first; text.size() < kSize; ++number) {
        if (number == first || number % perGroup == 0) {
            text += number == first ? "" : "</group>\n";
            text += "<group id=\"" + std::to_string(number / perGroup) + "\">\n";
        }
        text += "  <pen id=\"" + std::to_string(number) + "\" kind=\"stylus\" value=\"" + value + "\">\n    <tip>" +
                value + "</tip>\n    <button n=\"1\">click</button>\n  </pen>\n";
    }
    return text + "</group>\n</settings>\n";
}

void Bare(const StagedPackage &package)
{
    const xmlDocPtr source = xmlReadFile(package.Path("new.xml").c_str(), nullptr, XML_PARSE_NONET);
    const xmlDocPtr destination = xmlReadFile(package.Path("old.xml").c_str(), nullptr, XML_PARSE_NONET);
    const xmlSaveCtxtPtr saver = xmlSaveToFilename(package.Path("bare.xml").c_str(), "UTF-8", 0);
    if (xmlSaveDoc(saver, destination) == -1) {
        Fail("saving a document");
    }
    xmlSaveClose(saver);
    xmlFreeDoc(source);
    xmlFreeDoc(destination);
}

void Measure(const StagedPackage &package, const std::string &name, size_t perGroup)
{
    // Half of the elements of the source are in the destination, with the same values; the others are appended.
    const std::string source = Document("one", 20000, perGroup), old = Document("one", 0, perGroup);
    WriteText(package.Path("new.xml"), source);
    std::vector<double> starts, installer, bare;
    for (int round = 0; round < kRounds; ++round) {
        package.Script("[Install]\r\nNULL\r\n");
        starts.push_back(package.Run().mMilliseconds);
        WriteText(package.Path("old.xml"), old);
        bare.push_back(Milliseconds([&] { Bare(package); }));
        package.Script("[Install]\r\nMergeXml;new.xml;old.xml\r\n");
        installer.push_back(package.Run().mMilliseconds);
    }
    const std::string merged = ReadText(package.Path("old.xml"));
    if (merged.size() < kSize * 5 / 4 || CountOf(merged, "id=\"20001\"") != 1) {
        Fail("the merged document of " + std::to_string(merged.size()) + " bytes");
    }
    Print(name + ", installer", Least(installer) - Least(starts), "ms");
    Print(name + ", libxml2", Least(bare), "ms");
    Print(name + ", ratio", (Least(installer) - Least(starts)) / Least(bare), "x", 2);
}

} // namespace

int main()
{
    const StagedPackage package;
    Measure(package, "5 MiB into 5 MiB, groups of 20", 20);
    Measure(package, "5 MiB into 5 MiB, one group", 1000000);
    return 0;
}
