#include "Common/importWin32API.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Common/Handles.h"
#include "Common/Trace.h"
#include "TraceCapture.h"

namespace {

using Records = std::vector<std::string>;

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

// Where an assertion record stands in the source does not matter here.
Records WithoutPlaces(Records records)
{
    for (std::string &record : records) {
        record = record.substr(0, record.find(" in src"));
        record = record.substr(0, record.find(" in /"));
    }
    return records;
}

void ExpectNotImplemented(CAnyLibrary &library)
{
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(library.TvxNoSuchEntry(nullptr), FALSE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CALL_NOT_IMPLEMENTED));
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(library.TvxNoSuchOpen(1), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CALL_NOT_IMPLEMENTED));
}

std::string ModulePath(HMODULE module)
{
    char path[MAX_PATH];
    return std::string(path, GetModuleFileNameA(module, path, sizeof path));
}

// Redirection is off while this lives; on 32-bit Windows there is none.
class CRedirectionOff {
public:
    CRedirectionOff() { mOff = mKernel32.Wow64DisableWow64FsRedirection(&mBefore) != FALSE; }
    ~CRedirectionOff()
    {
        if (mOff) {
            mKernel32.Wow64RevertWow64FsRedirection(mBefore);
        }
    }
    CKernel32 mKernel32;
    bool mOff = false;

private:
    PVOID mBefore = nullptr;
};

TEST(LazyBinding, MissingLibraryFailsEachCallAndIsReportedEachTime)
{
    CTraceCapture capture;
    CAnyLibrary library(kAbsent, true, true);
    ExpectNotImplemented(library);
    ExpectNotImplemented(library);
    const Records once = {"Import Init: Could not load tvx-absent.dll (126)", "Assert:(m_hDll)"};
    Records expected;
    for (int call = 0; call < 4; ++call) {
        expected.insert(expected.end(), once.begin(), once.end());
    }
    EXPECT_EQ(WithoutPlaces(capture.Take()), expected);
}

TEST(LazyBinding, MissingEntryFailsEachCallAndIsReportedEachTime)
{
    CTraceCapture capture;
    CAnyLibrary library("kernel32.dll", false, true);
    ExpectNotImplemented(library);
    ExpectNotImplemented(library);
    const Records once = {"GetProcAddress: TvxNoSuchEntry not found in kernel32.dll", "Assert:(procAddr)",
                          "GetProcAddress: TvxNoSuchOpen not found in kernel32.dll", "Assert:(procAddr)"};
    Records expected = once;
    expected.insert(expected.end(), once.begin(), once.end());
    EXPECT_EQ(WithoutPlaces(capture.Take()), expected);
}

TEST(LazyBinding, SwitchesAndTheReportFlagSilenceTheirPart)
{
    CTraceCapture capture;
    gTraceToDebugOut = false;
    CAnyLibrary(kAbsent, true, true).TvxNoSuchEntry(nullptr);
    CAnyLibrary("kernel32.dll", false, true).TvxNoSuchEntry(nullptr);
    EXPECT_EQ(WithoutPlaces(capture.Take()), (Records{"Assert:(m_hDll)", "Assert:(procAddr)"}));
    gTraceToDebugOut = true;
    gAssertsToDebugOut = false;
    CAnyLibrary(kAbsent, true, true).TvxNoSuchEntry(nullptr);
    EXPECT_EQ(capture.Take(), Records{"Import Init: Could not load tvx-absent.dll (126)"});
    gAssertsToDebugOut = true;
    CAnyLibrary quiet(kAbsent, true, false);
    ExpectNotImplemented(quiet);
    EXPECT_EQ(capture.Take(), Records{});
}

TEST(LazyBinding, LoadedLibraryLivesAsLongAsItsObject)
{
    ASSERT_EQ(GetModuleHandleA(kUnused), nullptr) << "this test needs a library that nothing has loaded";
    {
        CAnyLibrary library(kUnused, true, true);
        EXPECT_EQ(GetModuleHandleA(kUnused), nullptr) << "loaded before it was needed";
        HANDLE token = nullptr;
        library.WTSQueryUserToken(0, &token);
        EXPECT_NE(GetModuleHandleA(kUnused), nullptr);
        SetLastError(ERROR_FILE_NOT_FOUND);
    }
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(GetModuleHandleA(kUnused), nullptr);
}

TEST(LazyBinding, LibraryOfTheProcessIsUsedWhenPresentAndNeverFreed)
{
    {
        CKernel32 kernel32;
        BOOL wow64 = FALSE;
        EXPECT_TRUE(kernel32.IsWow64Process(GetCurrentProcess(), &wow64));
    }
    EXPECT_NE(GetModuleHandleA("kernel32.dll"), nullptr);

    CAnyLibrary library(kUnused, false, false);
    EXPECT_FALSE(library.LoadDll());
    EXPECT_EQ(GetModuleHandleA(kUnused), nullptr) << "a library of the process is not loaded for it";
    const CLibrary loaded(LoadSystemLibrary(kUnused));
    EXPECT_TRUE(library.LoadDll()) << "a failed look-up is tried again";
    {
        CAnyLibrary second(kUnused, false, false);
        EXPECT_TRUE(second.LoadDll());
    }
    EXPECT_NE(GetModuleHandleA(kUnused), nullptr);
}

TEST(LazyBinding, EntriesInUseAnswerAsTheFunctionsTheyWrap)
{
    CAdvApi32 advapi32;
    HANDLE token = nullptr;
    ASSERT_TRUE(advapi32.OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY | TOKEN_ADJUST_PRIVILEGES, &token));
    const CHandle ownedToken(token);
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    ASSERT_TRUE(advapi32.LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &privileges.Privileges[0].Luid));
    EXPECT_TRUE(advapi32.AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr));
    BYTE groups[8192];
    DWORD size = 0;
    EXPECT_TRUE(advapi32.GetTokenInformation(token, TokenGroups, groups, sizeof groups, &size)) << GetLastError();
    SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
    PSID administrators = nullptr;
    ASSERT_TRUE(advapi32.AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS,
                                                  0, 0, 0, 0, 0, 0, &administrators));
    EXPECT_TRUE(advapi32.EqualSid(administrators, administrators));
    EXPECT_EQ(advapi32.FreeSid(administrators), nullptr);

    CPSApi psapi;
    DWORD ids[1024];
    HMODULE modules[1];
    wchar_t path[MAX_PATH];
    EXPECT_TRUE(psapi.EnumProcesses(ids, sizeof ids, &size));
    ASSERT_TRUE(psapi.EnumProcessModules(GetCurrentProcess(), modules, sizeof modules, &size));
    EXPECT_NE(psapi.GetModuleFileNameExW(GetCurrentProcess(), modules[0], path, MAX_PATH), 0u);
    EXPECT_TRUE(CSHLWApi().PathFileExistsW(path));
    EXPECT_FALSE(CSHLWApi().PathFileExistsW(L"C:\\tvx-absent.txt"));

    CSetupApi &setupApi = SetupApi();
    const HDEVINFO devices =
        setupApi.SetupDiGetClassDevsExA(nullptr, "USB", nullptr, DIGCF_ALLCLASSES, nullptr, nullptr, nullptr);
    ASSERT_NE(devices, INVALID_HANDLE_VALUE);
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    EXPECT_FALSE(setupApi.SetupDiEnumDeviceInfo(devices, 100000, &device));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_ITEMS));
    EXPECT_EQ(setupApi.SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ),
              INVALID_HANDLE_VALUE);
    EXPECT_TRUE(setupApi.SetupDiDestroyDeviceInfoList(devices));
    // Wine answers every device number with success, so what the two say cannot be tested there.
    EXPECT_NE(CfgMgr32().GetProc("CM_Get_DevNode_Status"), nullptr);
    EXPECT_NE(CfgMgr32().GetProc("CM_Get_Device_ID_ExA"), nullptr);
}

TEST(LazyBinding, SystemLibraryComesFromTheSystemFolderWhateverTheRedirection)
{
    const CRedirectionOff redirection;
    BOOL wow64 = FALSE;
    CKernel32().IsWow64Process(GetCurrentProcess(), &wow64);
    EXPECT_EQ(redirection.mOff, wow64 != FALSE);
    // With redirection off the name of the system folder shows the 64-bit libraries. These bring others along.
    for (const char *name : {kUnused, "setupapi.dll", "winhttp.dll"}) {
        const CLibrary library(LoadSystemLibrary(name));
        ASSERT_TRUE(library) << name << " " << GetLastError();
        const std::string path = ModulePath(library.Get());
        char folder[MAX_PATH];
        GetWindowsDirectoryA(folder, sizeof folder);
        const std::string wow64Path = std::string(folder) + "\\syswow64\\" + name;
        const std::string plainPath = std::string(folder) + "\\system32\\" + name;
        EXPECT_TRUE(_stricmp(path.c_str(), wow64Path.c_str()) == 0 || _stricmp(path.c_str(), plainPath.c_str()) == 0)
            << path;
    }
}

// A folder that is the working directory, with a library in it that the system does not have. The library
// is a copy of this very program, which can be loaded as well as any other image.
class PlantedLibrary : public testing::Test {
protected:
    void SetUp() override
    {
        char text[MAX_PATH + 1];
        GetCurrentDirectoryA(sizeof text, text);
        mFormerDirectory = text;
        GetTempPathA(sizeof text, text);
        mFolder = std::string(text) + "TvxPlanted" + std::to_string(GetCurrentProcessId());
        ASSERT_TRUE(CreateDirectoryA(mFolder.c_str(), nullptr));
        ASSERT_TRUE(CopyFileA(ModulePath(nullptr).c_str(), Path().c_str(), FALSE));
        ASSERT_TRUE(SetCurrentDirectoryA(mFolder.c_str()));
    }
    void TearDown() override
    {
        SetCurrentDirectoryA(mFormerDirectory.c_str());
        DeleteFileA(Path().c_str());
        RemoveDirectoryA(mFolder.c_str());
    }
    std::string Path() const { return mFolder + "\\" + kPlanted; }

    static constexpr char kPlanted[] = "tvx-planted.dll";
    std::string mFolder;
    std::string mFormerDirectory;
};

TEST_F(PlantedLibrary, IsNoSystemLibrary)
{
    EXPECT_FALSE(CLibrary(LoadSystemLibrary(kPlanted)));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    for (const std::string &name : {Path(), ".\\" + std::string(kPlanted), "./" + std::string(kPlanted)}) {
        EXPECT_FALSE(CLibrary(LoadSystemLibrary(name.c_str()))) << name;
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_BAD_PATHNAME)) << name;
    }
}

TEST_F(PlantedLibrary, LoadsByPathButNoLongerByNameOnceTheSearchIsHardened)
{
    EXPECT_TRUE(CLibrary(LoadLibraryA(kPlanted))) << "the planted library has to be one that could be loaded";
    HardenLibrarySearch();
    EXPECT_FALSE(CLibrary(LoadLibraryA(kPlanted)));
    EXPECT_TRUE(CLibrary(LoadLibraryA(kUnused))) << "system libraries are still found by name";
    // What the package names is found wherever a script may have put it.
    const std::string relative = std::string(".\\") + kPlanted;
    for (const std::string &name : {std::string(kPlanted), relative, "./" + std::string(kPlanted), Path()}) {
        EXPECT_TRUE(CLibrary(LoadPackageLibrary(name))) << name << " " << GetLastError();
        EXPECT_TRUE(CLibrary(LoadPackageLibrary(name, LOAD_LIBRARY_AS_DATAFILE))) << name << " " << GetLastError();
    }
    const std::string self = ModulePath(nullptr);
    EXPECT_EQ(CLibrary(LoadPackageLibrary(self.substr(self.rfind('\\') + 1))).Get(), GetModuleHandleA(nullptr));
    EXPECT_TRUE(CLibrary(LoadPackageLibrary(kUnused)));
    for (const char *name : {kAbsent, ".\\tvx-absent.dll", ""}) {
        EXPECT_FALSE(CLibrary(LoadPackageLibrary(name))) << name;
        EXPECT_NE(GetLastError(), static_cast<DWORD>(ERROR_SUCCESS)) << name;
    }
}

} // namespace
