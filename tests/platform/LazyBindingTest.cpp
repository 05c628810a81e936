#include "Common/importWin32API.h"

#include <string>

#include <gtest/gtest.h>

#include "Common/Handles.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

// A library class of any name, with an entry that exists nowhere and one of wtsapi32.
class CAnyLibrary : public CImportWin32API {
public:
    CAnyLibrary(const char *library, bool load, bool report) : CImportWin32API(library, load, report) {}
    CLazyEntry<BOOL(WINAPI *)(HANDLE)> TvxNoSuchEntry{*this, "TvxNoSuchEntry"};
    CLazyEntry<HANDLE(WINAPI *)(DWORD)> TvxNoSuchOpen{*this, "TvxNoSuchOpen", INVALID_HANDLE_VALUE};
    CLazyEntry<BOOL(WINAPI *)(ULONG, PHANDLE)> WTSQueryUserToken{*this, "WTSQueryUserToken"};
};

constexpr char kAbsent[] = "tvx-absent.dll";
// A system library that nothing here links and nothing else loads.
constexpr char kUnused[] = "wtsapi32.dll";

// The records of calls that each bring the same ones, and how many of them there are; places in the source are cut off.
std::string Reports(CTraceCapture &capture)
{
    std::string reports;
    for (const std::string &record : capture.Take()) {
        const bool assertion = record.compare(0, 6, "Assert") == 0;
        reports += record.substr(0, assertion ? record.find(" in ") : std::string::npos) + "\n";
    }
    return reports;
}

TEST(LazyBinding, WhatIsMissingFailsEachCallAndIsReportedEachTime)
{
    CTraceCapture capture;
    CAnyLibrary absent(kAbsent, true, true), present("kernel32.dll", false, true), quiet(kAbsent, true, false);
    const std::string once = "Import Init: Could not load tvx-absent.dll (126)\nAssert:(m_hDll)\n";
    const std::string entry = "GetProcAddress: TvxNoSuchEntry not found in kernel32.dll\nAssert:(procAddr)\n"
                              "GetProcAddress: TvxNoSuchOpen not found in kernel32.dll\nAssert:(procAddr)\n";
    for (const auto &[library, reports] : {std::pair(&absent, once + once), {&present, entry}, {&quiet, ""}}) {
        for (int round = 0; round < 2; ++round) {
            SetLastError(ERROR_SUCCESS);
            EXPECT_EQ(library->TvxNoSuchEntry(nullptr), FALSE);
            EXPECT_EQ(GetLastError(), 120u);
            SetLastError(ERROR_SUCCESS);
            EXPECT_EQ(library->TvxNoSuchOpen(1), INVALID_HANDLE_VALUE);
            EXPECT_EQ(GetLastError(), 120u);
            EXPECT_EQ(Reports(capture), reports);
        }
    }
}

TEST(LazyBinding, LibraryIsLoadedWhenNeededAndFreedByWhoLoadedIt)
{
    ASSERT_EQ(GetModuleHandleA(kUnused), nullptr) << "this test needs a library that nothing has loaded";
    CAnyLibrary ofProcess(kUnused, false, false);
    EXPECT_FALSE(ofProcess.LoadDll());
    {
        CAnyLibrary library(kUnused, true, true);
        EXPECT_EQ(GetModuleHandleA(kUnused), nullptr) << "loaded before it was needed";
        HANDLE token = nullptr;
        library.WTSQueryUserToken(0, &token);
        EXPECT_TRUE(ofProcess.LoadDll()) << "a failed look-up is tried again";
        SetLastError(ERROR_FILE_NOT_FOUND);
    }
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(GetModuleHandleA(kUnused), nullptr);
}

TEST(PlantedLibrary, LoadsByPathButNotByNameOnceTheSearchIsHardened)
{
    const CScratchFolder folder;
    char former[MAX_PATH], program[MAX_PATH];
    GetCurrentDirectoryA(sizeof former, former);
    GetModuleFileNameA(nullptr, program, sizeof program);
    CopyFileA(program, folder.Path("tvx-planted.dll").c_str(), FALSE); // can be loaded as well as any other image
    SetCurrentDirectoryA(folder.Path("").c_str());
    HardenLibrarySearch();
    EXPECT_FALSE(CLibrary(LoadLibraryA("tvx-planted.dll")));
    // What the package names is found wherever a script may have put it.
    for (const char *name : {"tvx-planted.dll", ".\\tvx-planted.dll", "./tvx-planted.dll", kUnused}) {
        EXPECT_TRUE(CLibrary(LoadPackageLibrary(name))) << name << " " << GetLastError();
    }
    EXPECT_FALSE(CLibrary(LoadSystemLibrary("tvx-planted.dll")) || CLibrary(LoadSystemLibrary(".\\tvx-planted.dll")));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_BAD_PATHNAME));
    EXPECT_FALSE(CLibrary(LoadPackageLibrary(kAbsent)) || CLibrary(LoadPackageLibrary("")));
    SetCurrentDirectoryA(former);
}

} // namespace
