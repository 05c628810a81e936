// Shell links and display names as the shell has them: what the commands of the script cannot set, and failures.
#include "Shell/ShellLink.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <windows.h>

#include "../system/ShellLinks.h"
#include "Common/ComApartment.h"
#include "Common/TextConversions.h"
#include "EntryDetour.h"
#include "ScratchFolder.h"
#include "Shell/DisplayNames.h"
#include "TraceCapture.h"

namespace {

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
