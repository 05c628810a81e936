#include "Common/importWin32API.h"

#include <cstring>

#include "Common/ModulePath.h"
#include "Common/Paths.h"
#include "Common/Trace.h"

namespace {

// From the update of 2011 on; the headers of XP do not have it.
constexpr DWORD kSearchApplicationDir = 0x200; // LOAD_LIBRARY_SEARCH_APPLICATION_DIR
constexpr DWORD kSearchSystem32 = 0x800;       // LOAD_LIBRARY_SEARCH_SYSTEM32

bool gSearchIsHardened = false;

void SearchIn(DWORD folders)
{
    const DWORD error = GetLastError(); // an older Windows lacks the entry
    Kernel32().SetDefaultDllDirectories(folders);
    SetLastError(error);
}

// The folder of the libraries that this process can load, without a back-slash at its end; empty when
// Windows does not tell. On 64-bit Windows that is the folder behind the redirection, by its own name.
std::string SystemLibraryFolder()
{
    char folder[MAX_PATH];
    UINT length = Kernel32().GetSystemWow64DirectoryA(folder, sizeof folder);
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
    Kernel32().SetDllDirectoryA("");
    SearchIn(kSearchSystem32);
    gSearchIsHardened = true;
}

CPackageLibrarySearch::CPackageLibrarySearch()
{
    if (gSearchIsHardened) {
        SearchIn(kSearchApplicationDir | kSearchSystem32);
    }
}

CPackageLibrarySearch::~CPackageLibrarySearch()
{
    if (gSearchIsHardened) {
        SearchIn(kSearchSystem32);
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
        if (TracesToDebugOut()) {
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
        if (TracesToDebugOut()) {
            traceAlways("GetProcAddress: %s not found in %s\n", name, mLibrary.c_str());
        }
        TVX_ASSERT(procAddr);
    }
    return procAddr;
}

CKernel32::CKernel32(bool report) : CImportWin32API("kernel32.dll", false, report) {}

CUser32::CUser32() : CImportWin32API("user32.dll", false, true) {}

CGdi32::CGdi32() : CImportWin32API("gdi32.dll", true, true) {}

CComCtl32::CComCtl32() : CImportWin32API("comctl32.dll", true, true) {}

CAdvApi32::CAdvApi32(bool report) : CImportWin32API("advapi32.dll", true, report) {}

CPSApi::CPSApi() : CImportWin32API("psapi.dll", true, true) {}

CSHLWApi::CSHLWApi() : CImportWin32API("shlwapi.dll", true, true) {}

CWtsApi32::CWtsApi32() : CImportWin32API("wtsapi32.dll", true, true) {}

CSetupApi::CSetupApi(bool report) : CImportWin32API("setupapi.dll", true, report) {}

CCfgMgr32::CCfgMgr32() : CImportWin32API("cfgmgr32.dll", true, true) {}

CShell32::CShell32() : CImportWin32API("shell32.dll", true, true) {}

CRpcRt4::CRpcRt4() : CImportWin32API("rpcrt4.dll", true, true) {}

COle32::COle32() : CImportWin32API("ole32.dll", true, true) {}

namespace {

// Never destroyed: a thread of the run, or of the library itself, may be inside it while the process ends.
template <typename TLibrary, typename... TArgs>
TLibrary &Lasting(TArgs... args)
{
    static TLibrary &library = *new TLibrary(args...);
    return library;
}

} // namespace

CKernel32 &Kernel32()
{
    return Lasting<CKernel32>(false);
}

CUser32 &User32()
{
    // The class only finds what is loaded. user32 cannot be unloaded sensibly once a thread has used it.
    static const HMODULE loaded = LoadSystemLibrary("user32.dll");
    static_cast<void>(loaded);
    return Lasting<CUser32>();
}

CGdi32 &Gdi32()
{
    return Lasting<CGdi32>();
}

CComCtl32 &ComCtl32()
{
    return Lasting<CComCtl32>();
}

CAdvApi32 &AdvApi32()
{
    return Lasting<CAdvApi32>(false);
}

CShell32 &Shell32()
{
    return Lasting<CShell32>();
}

COle32 &Ole32()
{
    return Lasting<COle32>();
}

CRpcRt4 &RpcRt4()
{
    return Lasting<CRpcRt4>();
}

CSetupApi &SetupApi()
{
    return Lasting<CSetupApi>();
}

CCfgMgr32 &CfgMgr32()
{
    return Lasting<CCfgMgr32>();
}

CSHLWApi &ShlwApi()
{
    return Lasting<CSHLWApi>();
}
