// What registering a package with many shortcuts costs beside making as many shortcuts by bare calls: a link object,
// its texts, and its file, once for each.
#include <windows.h>

#include <shlobj.h>

#include <string>
#include <vector>

#include "Bench.h"
#include "Files.h"
#include "Registry.h"

namespace {

constexpr int kRounds = 7;
constexpr int kLinks = 200;

const std::string kDriverKey = "SOFTWARE\\Tavix\\Tavix Tablet Driver";

std::string StartFolder()
{
    char programs[MAX_PATH];
    if (!SHGetSpecialFolderPathA(nullptr, programs, CSIDL_COMMON_PROGRAMS, FALSE)) {
        Fail("finding the Programs menu");
    }
    return std::string(programs) + "\\Tavix Bench";
}

std::string Description()
{
    std::string links;
    for (int link = 0; link < kLinks; ++link) {
        const std::string number = std::to_string(link);
        links += "<StartLink id=\"" + number + "\"><Name>Link " + number + "</Name><Command>!.!\\TavixSetup.exe" +
                 "</Command><Parameters>/page " + number + "</Parameters><Description>The page number " + number +
                 "</Description></StartLink>\n";
    }
    return "<root><SkipTaskData/><StartFolder>Tavix Bench</StartFolder>\n" + links + "</root>\n";
}

void MakeBareLink(const std::string &folder, const std::string &target, const std::string &number)
{
    IShellLinkA *link = nullptr;
    IPersistFile *file = nullptr;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                reinterpret_cast<void **>(&link))) ||
        FAILED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&file)))) {
        Fail("making a link object");
    }
    link->SetPath(target.c_str());
    link->SetArguments(("/page " + number).c_str());
    link->SetDescription(("The page number " + number).c_str());
    link->SetWorkingDirectory(target.substr(0, target.rfind('\\')).c_str());
    link->SetIconLocation(target.c_str(), -1);
    const std::string path = folder + "\\Link " + number + ".lnk";
    if (FAILED(file->Save(std::wstring(path.begin(), path.end()).c_str(), TRUE))) {
        Fail("saving " + path);
    }
    file->Release();
    link->Release();
}

void CheckAndRemove(const std::string &folder, const char *whose)
{
    for (int link = 0; link < kLinks; ++link) {
        if (FileSize(folder + "\\Link " + std::to_string(link) + ".lnk") == 0) {
            Fail(std::string("no link ") + std::to_string(link) + " from " + whose);
        }
    }
    RemoveTree(folder);
}

} // namespace

int main()
{
    const StagedPackage package;
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, kDriverKey);
    const std::string folder = StartFolder();
    WriteText(package.Path("links.xml"), Description());
    CoInitialize(nullptr);
    std::vector<double> starts;
    std::vector<double> runs;
    std::vector<double> bare;
    for (int round = 0; round < kRounds; ++round) {
        package.Script("[Install]\r\n");
        starts.push_back(package.Run().mMilliseconds);
        MakeFolders(folder);
        bare.push_back(Milliseconds([&] {
            for (int link = 0; link < kLinks; ++link) {
                MakeBareLink(folder, package.Installer(), std::to_string(link));
            }
        }));
        CheckAndRemove(folder, "the bare calls");
        package.Script("[Install]\r\nProcessXMLData;.\\\\links.xml;;;;;\r\n");
        runs.push_back(package.Run().mMilliseconds);
        CheckAndRemove(folder, "the installer");
    }
    const double net = Least(runs) - Least(starts);
    Print("shortcuts made", kLinks, "links", 0);
    Print("shortcuts through ProcessXMLData", net, "ms");
    Print("shortcuts by bare calls", Least(bare), "ms");
    Print("shortcuts ratio", net / Least(bare), "x", 2);
    CoUninitialize();
    return 0;
}
