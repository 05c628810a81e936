// What the shell is given: resource libraries on their way into a text and out of one, their strings, links, display
// names.
#include <windows.h>

#include <algorithm>

#include <gtest/gtest.h>

#include "../system/ShellLinks.h"
#include "Common/ComApartment.h"
#include "Common/ResourceUtils.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "EntryDetour.h"
#include "ScratchFolder.h"
#include "Shell/DisplayNames.h"
#include "Shell/ResourceDll.h"
#include "Shell/ShellLink.h"
#include "Shell/XmlUtils.h"
#include "TraceCapture.h"

namespace {

// Extracts what a document holds; 0, or the result and the last error.
std::string Extract(const std::string &content, const std::string &path, bool disableRedirect = true)
{
    const XmlUtils::XmlDoc doc = XmlUtils::LoadXmlMemory("<root>" + content + "</root>");
    const int result = ExtractResourceDll(doc.get(), path, disableRedirect);
    const DWORD error = GetLastError();
    return result == 0 ? "0" : std::to_string(result) + " " + std::to_string(error);
}

std::string Table(const std::string &text)
{
    return "<LocalizationTable>" + text + "</LocalizationTable>";
}

TEST(ResourceDll, TravelsAsText)
{
    const CScratchFolder folder;
    CTraceCapture trace;
    std::string bytes;
    for (unsigned seed = 7; bytes.size() < 1000003; seed = seed * 1103515245 + 12345) {
        bytes += static_cast<char>(seed >> 16);
    }
    const std::string file = folder.Write("r.dll", bytes), out = folder.Path("out.dll");
    SetDiagnosticLevel(1);
    EXPECT_EQ(FileToHex(file, file + ".txt"), 0);
    SetDiagnosticLevel(kDefaultDiagnosticLevel);
    const DWORD start = GetTickCount();
    EXPECT_EQ(Extract(Table(ReadBytes(file + ".txt")), out), "0");
    EXPECT_LT(GetTickCount() - start, 5000u); // half a second; a reader that erases what it has read takes minutes
    EXPECT_EQ(ReadBytes(out), bytes);
    const std::vector<std::string> records = trace.Take();
    EXPECT_EQ(records.front() + ", " + records.back(), "ExtractResourceDll " + out + ", Wrote 1000003 bytes");
}

TEST(ResourceDll, IsWhatTheDocumentHolds)
{
    const CScratchFolder folder;
    CTraceCapture trace;
    const std::string out = folder.Write("out", "old"), held = folder.Write("held", "");
    EXPECT_EQ(ExtractResourceDll(nullptr, out, true), 0);
    EXPECT_EQ(Extract("", out), "0");
    EXPECT_EQ(ReadBytes(out), "old");
    Extract(Table("4D5a<!-- 00 --><b>41 </b><![CDATA[4]]>&#50;, 43") + Table("44"), out);
    EXPECT_EQ(ReadBytes(out), "MZAB"); // up to the bad character
    trace.Take();
    Extract(Table("x"), out);
    EXPECT_EQ(ReadBytes(out), "");
    EXPECT_EQ(trace.Take().at(1).substr(0, 24), "Assert:(qBuffer.size()) ");
    const LockedFile lock(held);
    EXPECT_EQ(Extract(Table("41"), held), "1543 32");
    EXPECT_EQ(FileToHex(out, held) + FileToHex(held, out), 2 * 1543);
}

// A 32-bit process and the 64-bit system have two folders of this name.
TEST(ResourceDll, GoesToTheSystemThatIsMeant)
{
    char system[MAX_PATH];
    const std::string path = std::string(system, GetSystemDirectoryA(system, MAX_PATH)) + "\\TavixResource.dll";
    for (const bool disableRedirect : {true, false}) {
        Extract(Table("41"), path, disableRedirect);
        EXPECT_EQ(FileExists(path), !disableRedirect);
        DeleteFileA(path.c_str());
        const RedirectionOff off;
        EXPECT_EQ(FileExists(path), disableRedirect);
        DeleteFileA(path.c_str());
    }
}

LANGID gUILanguage = 0x409;

LANGID WINAPI UILanguage()
{
    return gUILanguage;
}

// The bytes of a table block with one string.
std::wstring BlockWith(unsigned index, const std::wstring &text)
{
    return std::wstring(index, L'\0') + static_cast<wchar_t>(text.size()) + text;
}

class ResourceUtils : public testing::Test {
protected:
    ResourceUtils()
    {
        const HANDLE update = BeginUpdateResourceA(mLibrary.c_str(), FALSE);
        const auto put = [update](unsigned id, LANGID lang, std::wstring block) {
            EXPECT_TRUE(UpdateResourceA(update, RT_STRING, MAKEINTRESOURCEA(id / 16 + 1), lang, block.data(),
                                        static_cast<DWORD>(block.size() * sizeof(wchar_t))))
                << id;
        };
        put(3, 0x804, BlockWith(3, L"\x7B14"));
        put(3, 0x409, BlockWith(3, L"pen") + BlockWith(0, L"\x0298UGVuIMO8"));
        put(20, 9, BlockWith(4, L"English"));
        put(33, 9, std::wstring(1, L'\0') + L"\tcut"); // a length of nine, and three characters
        put(50, 9, BlockWith(2, L"\x0298!!!!"));
        EXPECT_TRUE(EndUpdateResourceA(update, FALSE));
    }

    // Text, library and number for the link behind "@" and the library.
    std::string Of(const std::string &id, bool searchIdOnFailure = false, LANGID lang = 0x409)
    {
        gUILanguage = lang;
        std::string text = "former", library = "former";
        const int number = LoadDLLStringResource("@" + mLibrary + "," + id, text, library, searchIdOnFailure);
        EXPECT_EQ(library, mLibrary);
        return text + "/" + std::to_string(number);
    }

    const CEntryDetour mLanguage{"kernel32.dll", "GetUserDefaultUILanguage", UILanguage};
    const CScratchFolder mScratch;
    const std::string mLibrary = mScratch.Write("strings.dll", ReadBytes(BuiltDouble("versions\\Version32.dll")));
};

TEST_F(ResourceUtils, StringsComeInTheNearestLanguage)
{
    EXPECT_EQ(Of("3"), "pen/3");
    EXPECT_EQ(Of("-3"), "pen/-3"); // the sign is no part of the number looked for
    EXPECT_EQ(Of(" 4 more"), "Pen \xFC/4");
    EXPECT_EQ(Of("20"), "English/20");
    EXPECT_EQ(Of("20", false, 0x40C), "English/20"); // French: by way of English
    EXPECT_EQ(Of("3", false, 0x1004), "?/3");        // Singapore reads the Chinese of the mainland
}

TEST_F(ResourceUtils, WhatIsNotThereIsEmptyOrTheNumberAndIsTraced)
{
    CTraceCapture trace;
    for (const char *const missing : {"5", "33", "50", "1000000", "-2147483648", "2147483647", "text", ""}) {
        EXPECT_EQ(Of(missing).substr(0, 1), "/") << missing;
        EXPECT_EQ(Of(missing, true), missing + Of(missing)) << missing;
    }
    std::string text, library;
    trace.Take();
    EXPECT_EQ(LoadDLLStringResource("@no such.dll,7", text, library, true), 7);
    EXPECT_EQ(text + "|" + library, "7|no such.dll");
    const std::vector<std::string> records = trace.Take();
    ASSERT_EQ(records.size(), 7u); // once for English of the States, English, and no language
    EXPECT_EQ(records[1].substr(0, 49), "Couldn't get table string 7 (lang 0409, mod 00000");
    EXPECT_EQ(records[4] + records[6], "LoadDLLStringResource: resStr_O: 7LoadDLLStringResource: resID: 7");
    EXPECT_EQ(LoadDLLStringResource("plain, text", text, library, true), 0);
    EXPECT_EQ(text + "|" + library, "plain, text|");
    EXPECT_EQ(LoadDLLStringResource("@only", text, library, true), 0);
    EXPECT_EQ(text + "|" + library, "only|");
}

TEST(ShellLinks, HoldAllTheirFields)
{
    const CComApartmentScope apartment;
    const CScratchFolder folder;
    CTraceCapture trace;
    const std::string path = folder.Path("l\xe9.lnk"), target = folder.Write("a b.exe", "");
    EXPECT_TRUE(CreateLinkEx(AnsiToWide(path), {target, "/x \"y\"", "d\xe9", "C:\\w", 0x641, 7, "%W%\\i.dll", -101}));
    EXPECT_EQ(ShownLink(path), target + "; /x \"y\"; d\xe9; C:\\w; 641; %W%\\i.dll, -101");
    EXPECT_EQ(ReadBytes(path).at(60), 7); // the show command; this shell reads every one as 1
    EXPECT_EQ(trace.Take(),
              (std::vector<std::string>{"CreateLinkEx: linkFile: " + path, "CreateLinkEx: Args: /x \"y\"",
                                        "CreateLinkEx: Descr: d\xe9", "CreateLinkEx: WorkingDir: C:\\w"}));
    // Replaced; a target that begins with a point is stored as it is.
    LinkFields relative;
    relative.mTarget = "..\\x.exe";
    EXPECT_TRUE(CreateLinkEx(AnsiToWide(path), relative));
    EXPECT_EQ(ReadBytes(path).at(20) & 1, 0); // no list of items: there is no target by itself
    EXPECT_NE(ReadBytes(path).find(std::string("x\0.\0e\0x\0e\0", 10)), std::string::npos);
}

TEST(ShellLinks, FailureLeavesTheCodeOfCom)
{
    const CScratchFolder folder;
    EXPECT_FALSE(CreateLinkEx(AnsiToWide(folder.Path("l.lnk")), {}));
    EXPECT_EQ(GetLastError(), DWORD{CO_E_NOTINITIALIZED & 0xffff});
    const CComApartmentScope apartment;
    CTraceCapture trace;
    LinkFields longOnes;
    longOnes.mArguments = std::string(300, 'a');
    EXPECT_FALSE(CreateLinkEx(AnsiToWide(folder.Path("none\\l.lnk")), longOnes));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(trace.Take().at(1), "CreateLinkEx: Args: " + std::string(259, 'a')); // what fits in 260 characters
}

std::vector<std::string> gNamed;
HRESULT gAnswer;

HRESULT WINAPI RecordName(LPCWSTR path, LPCWSTR dll, int number)
{
    gNamed.push_back(WideToAnsi(path) + ", " + WideToAnsi(dll) + ", " + std::to_string(number));
    return gAnswer;
}

HRESULT WINAPI RecordRemoval(LPCWSTR path)
{
    gNamed.push_back(WideToAnsi(path));
    return gAnswer;
}

// Of the root of a drive those of everything directly in it go, too.
TEST(DisplayNames, AreSetAndRemovedByTheShell)
{
    CTraceCapture trace;
    const CEntryDetour set("shell32.dll", "SHSetLocalizedName", RecordName);
    const CEntryDetour remove("shell32.dll", "SHRemoveLocalizedName", RecordRemoval);
    for (const HRESULT answer : {HRESULT{S_OK}, HRESULT{S_FALSE}, HRESULT{E_ACCESSDENIED}}) {
        gNamed.clear();
        gAnswer = answer;
        EXPECT_EQ(SetDisplayName("C:\\f\xe9", "d.dll", -7), answer == S_OK);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(answer) & 0xffff);
        EXPECT_EQ(RemoveDisplayNameTree("C:\\windows"), answer == S_OK);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(answer) & 0xffff);
        EXPECT_EQ(gNamed, (std::vector<std::string>{"C:\\f\xe9, d.dll, -7", "C:\\windows"}));
    }
    gNamed.clear();
    EXPECT_FALSE(RemoveDisplayNameTree("C:\\"));
    EXPECT_EQ(std::count(gNamed.begin(), gNamed.end(), "C:\\windows"), 1);
    EXPECT_EQ(gNamed.back(), "C:\\");
    for (const std::string &path : gNamed) {
        EXPECT_EQ(path.rfind('\\'), 2u) << path;
    }
    EXPECT_EQ(trace.Take().back(), "RemoveDisplayName: error from DMSHRemoveLocalizedName: -2147024891");
}

} // namespace
