#include "Common/importWin32API.h"

#include <cstring>

#include "Common/ModulePath.h"
#include "Common/Paths.h"
#include "Common/Trace.h"

namespace {

// From the update of 2011 on; the headers of XP do not have it.
constexpr DWORD kSearchSystem32 = 0x800; // LOAD_LIBRARY_SEARCH_SYSTEM32

// The folder of the libraries that this process can load, without a back-slash at its end; empty when
// Windows does not tell. On 64-bit Windows that is the folder behind the redirection, by its own name.
std::string SystemLibraryFolder()
{
    using FolderEntry = UINT(WINAPI *)(LPSTR, UINT);
    const auto getWow64Directory = BindEntry<FolderEntry>(GetModuleHandleA("kernel32.dll"), "GetSystemWow64DirectoryA");
    char folder[MAX_PATH];
    UINT length = getWow64Directory != nullptr ? getWow64Directory(folder, sizeof folder) : 0;
    if (length == 0) {
        length = GetSystemDirectoryA(folder, sizeof folder); // 32-bit Windows
    }
    return length != 0 && length < sizeof folder ? std::string(folder, length) : std::string();
}

// The altered search begins in the library's own folder, so that its dependencies are found there.
HMODULE LoadByFullPath(const std::string &path, DWORD flags)
{
    return LoadLibraryExA(path.c_str(), nullptr, flags | LOAD_WITH_ALTERED_SEARCH_PATH);
}

} // namespace

void HardenLibrarySearch()
{
    const HMODULE kernel32 = GetModuleHandleA("kernel32.dll");
    const auto setDllDirectory = BindEntry<BOOL(WINAPI *)(LPCSTR)>(kernel32, "SetDllDirectoryA");
    if (setDllDirectory != nullptr) {
        setDllDirectory("");
    }
    const auto setDefaultDirectories = BindEntry<BOOL(WINAPI *)(DWORD)>(kernel32, "SetDefaultDllDirectories");
    if (setDefaultDirectories != nullptr) {
        setDefaultDirectories(kSearchSystem32);
    }
}

HMODULE LoadSystemLibrary(const char *name)
{
    if (std::strpbrk(name, "\\/:") != nullptr) {
        SetLastError(ERROR_BAD_PATHNAME);
        return nullptr;
    }
    const std::string folder = SystemLibraryFolder();
    if (folder.empty()) {
        return nullptr;
    }
    return LoadByFullPath(JoinPath(folder, name), 0);
}

HMODULE LoadPackageLibrary(const std::string &name, DWORD flags)
{
    if (name.find_first_of("\\/:") == std::string::npos) {
        for (const std::string &folder : {ModuleFolder(), SystemLibraryFolder()}) {
            if (folder.empty()) {
                continue;
            }
            const HMODULE module = LoadByFullPath(JoinPath(folder, name), flags);
            const DWORD error = GetLastError();
            // A library that is there and cannot be loaded is an answer too.
            if (module != nullptr || (error != ERROR_MOD_NOT_FOUND && error != ERROR_FILE_NOT_FOUND)) {
                return module;
            }
        }
    }
    const std::string path = FullPath(name);
    return !path.empty() ? LoadByFullPath(path, flags) : nullptr;
}

CImportWin32API::CImportWin32API(const char *library, bool load, bool report)
    : mLibrary(library), mLoad(load), mReport(report)
{
}

CImportWin32API::~CImportWin32API()
{
    if (m_hDll != nullptr && mLoad) {
        const DWORD error = GetLastError();
        FreeLibrary(m_hDll);
        SetLastError(error);
    }
    m_hDll = nullptr;
}

bool CImportWin32API::LoadDll()
{
    if (m_hDll != nullptr) {
        return true;
    }
    m_hDll = mLoad ? LoadSystemLibrary(mLibrary.c_str()) : GetModuleHandleA(mLibrary.c_str());
    const DWORD error = GetLastError();
    if (m_hDll == nullptr && mReport) {
        if (gTraceToDebugOut) {
            traceAlways("Import Init: Could not load %s (%d)\n", mLibrary.c_str(), static_cast<int>(error));
        }
        TVX_ASSERT(m_hDll);
    }
    return m_hDll != nullptr;
}

FARPROC CImportWin32API::GetProc(const char *name)
{
    if (!LoadDll()) {
        return nullptr;
    }
    const FARPROC procAddr = GetProcAddress(m_hDll, name);
    if (procAddr == nullptr && mReport) {
        if (gTraceToDebugOut) {
            traceAlways("GetProcAddress: %s not found in %s\n", name, mLibrary.c_str());
        }
        TVX_ASSERT(procAddr);
    }
    return procAddr;
}

CKernel32::CKernel32() : CImportWin32API("kernel32.dll", false, true) {}

CUser32::CUser32() : CImportWin32API("user32.dll", false, true) {}

CAdvApi32::CAdvApi32() : CImportWin32API("advapi32.dll", true, true) {}

CPSApi::CPSApi() : CImportWin32API("psapi.dll", true, true) {}

CSHLWApi::CSHLWApi() : CImportWin32API("shlwapi.dll", true, true) {}

CWtsApi32::CWtsApi32() : CImportWin32API("wtsapi32.dll", true, true) {}

CSetupApi::CSetupApi() : CImportWin32API("setupapi.dll", true, true) {}

CCfgMgr32::CCfgMgr32() : CImportWin32API("cfgmgr32.dll", true, true) {}

CSetupApi &SetupApi()
{
    static CSetupApi instance;
    return instance;
}

CCfgMgr32 &CfgMgr32()
{
    static CCfgMgr32 instance;
    return instance;
}
