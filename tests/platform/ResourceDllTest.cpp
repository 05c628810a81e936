// The resource library on its way into a text and out of one.
#include "Shell/ResourceDll.h"

#include <gtest/gtest.h>

#include <windows.h>

#include "Common/Trace.h"
#include "ScratchFolder.h"
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
    gDiagnosticLevel = 1;
    EXPECT_EQ(FileToHex(file, file + ".txt"), 0);
    gDiagnosticLevel = kDefaultDiagnosticLevel;
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

} // namespace
