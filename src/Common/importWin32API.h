// System libraries that are bound at run time: one class a library, one line an entry. What the
// oldest supported Windows lacks, or what a run may not need, is not imported, so that the program
// starts everywhere and quickly.
#pragma once

#include <string>

#include <windows.h>

#include <cfgmgr32.h>
#include <commctrl.h>
#include <objbase.h>
#include <psapi.h>
#include <setupapi.h>
#include <shellapi.h>
#include <shlwapi.h>

// Makes the system folder the only place that libraries are searched in: neither the working directory nor the
// program's own folder nor PATH, as far as the running Windows can (the working directory from XP SP1 on, the rest on 8
// and where the update of 2011 is installed). Call it first thing in the process. From then on LoadLibraryA takes full
// paths and names of system libraries only; what a package brings along goes through LoadPackageLibrary(), and what it
// brings along in turn needs a CPackageLibrarySearch.
void HardenLibrarySearch();

// Loads `name`, a bare file name such as "setupapi.dll", from the folder of the 32-bit system
// libraries and from nowhere else; its own dependencies come from there too. Works with file-system
// redirection switched off, when the plain name of the system folder shows the 64-bit libraries.
// Answers the module, to be freed with FreeLibrary, or null with the last error set;
// ERROR_BAD_PATHNAME for a name that holds a path.
HMODULE LoadSystemLibrary(const char *name);

// Loads a library that a script names. A path, also a relative one, names the file; a bare name is looked for in the
// program's folder, the system folder and the working directory, in this order, as LoadLibraryA would without
// HardenLibrarySearch(). What the library depends on is found beside it. `flags` are those of LoadLibraryExA, such as
// LOAD_LIBRARY_AS_DATAFILE. Answers the module, to be freed with FreeLibrary, or null with the last error set.
HMODULE LoadPackageLibrary(const std::string &name, DWORD flags = 0);

// Lets the libraries of a package find each other, as they would without HardenLibrarySearch(): while an object of this
// class lives, the program's folder is searched for the libraries that they depend on and for those that they load by
// name. The last error stays. On a Windows without that kind of search the folder is searched at all times.
class CPackageLibrarySearch {
public:
    CPackageLibrarySearch();
    ~CPackageLibrarySearch();
    CPackageLibrarySearch(const CPackageLibrarySearch &) = delete;
    CPackageLibrarySearch &operator=(const CPackageLibrarySearch &) = delete;
};

// Address of `entry` in `module` as the pointer type TEntry, or null with the last error set. A null
// module, which Windows would take for the program itself, answers null and leaves the error of its load.
// For libraries that a package brings along; those of the system have a class each below.
template <typename TEntry>
TEntry BindEntry(HMODULE module, const char *entry)
{
    if (module == nullptr) {
        return nullptr;
    }
    // By way of void*: the compiler takes a direct conversion between function types for a mistake.
    return reinterpret_cast<TEntry>(reinterpret_cast<void *>(GetProcAddress(module, entry)));
}

// One system library, loaded when its first entry is asked for.
class CImportWin32API {
public:
    virtual ~CImportWin32API();
    CImportWin32API(const CImportWin32API &) = delete;
    CImportWin32API &operator=(const CImportWin32API &) = delete;

    // Whether the library is available, loading it if need be. A failure is tried again at the next call.
    bool LoadDll();

    // Address of an entry, null when the library or the entry is missing. Not remembered here.
    FARPROC GetProc(const char *name);

protected:
    // `load`: the library is loaded from the system folder and freed in the destructor; otherwise only
    // a library that the process has anyway is used, and never freed. `report`: failures are traced.
    CImportWin32API(const char *library, bool load, bool report);

private:
    HMODULE m_hDll = nullptr;
    std::string mLibrary;
    bool mLoad;
    bool mReport;
};

template <typename TEntry>
class CLazyEntry;

// An entry of a system library, called like the function whose name it bears. It is looked up at the
// first call; a call that finds no entry sets the last error to ERROR_CALL_NOT_IMPLEMENTED, answers
// the failure value, and looks again the next time.
template <typename TResult, typename... TArgs>
class CLazyEntry<TResult(WINAPI *)(TArgs...)> {
public:
    CLazyEntry(CImportWin32API &library, const char *name, TResult failure = TResult())
        : mLibrary(library), mName(name), mFailure(failure)
    {
    }
    CLazyEntry(const CLazyEntry &) = delete;
    CLazyEntry &operator=(const CLazyEntry &) = delete;

    using Entry = TResult(WINAPI *)(TArgs...);

    // The entry itself, null when there is none.
    Entry Get()
    {
        if (mEntry == nullptr) {
            mEntry = reinterpret_cast<Entry>(reinterpret_cast<void *>(mLibrary.GetProc(mName)));
        }
        return mEntry;
    }

    TResult operator()(TArgs... args)
    {
        if (Get() == nullptr) {
            SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
            return mFailure;
        }
        return mEntry(args...);
    }

private:
    CImportWin32API &mLibrary;
    const char *mName;
    TResult mFailure;
    Entry mEntry = nullptr;
};

// The same for an entry without a result: a call that finds no entry does nothing.
template <typename... TArgs>
class CLazyEntry<void(WINAPI *)(TArgs...)> {
public:
    CLazyEntry(CImportWin32API &library, const char *name) : mLibrary(library), mName(name) {}
    CLazyEntry(const CLazyEntry &) = delete;
    CLazyEntry &operator=(const CLazyEntry &) = delete;

    void operator()(TArgs... args)
    {
        if (mEntry == nullptr) {
            mEntry = reinterpret_cast<Entry>(reinterpret_cast<void *>(mLibrary.GetProc(mName)));
        }
        if (mEntry != nullptr) {
            mEntry(args...);
        } else {
            SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
        }
    }

private:
    using Entry = void(WINAPI *)(TArgs...);
    CImportWin32API &mLibrary;
    const char *mName;
    Entry mEntry = nullptr;
};

// Declares the entry `name` of the library class around it; what follows the name, if anything, is the
// failure value where that is not 0.
#define TVX_ENTRY(name, ...)                                                                                           \
    CLazyEntry<decltype(&::name)> name                                                                                 \
    {                                                                                                                  \
        *this, #name, ##__VA_ARGS__                                                                                    \
    }

// `report` of the two constructors below: entries that a Windows may lack are asked for in silence.
class CKernel32 : public CImportWin32API {
public:
    explicit CKernel32(bool report = true);
    // Windows 8. It answers an error number, so 0 would mean success.
    CLazyEntry<LONG(WINAPI *)(HANDLE, UINT32 *, BYTE *)> GetPackageId{*this, "GetPackageId",
                                                                      ERROR_CALL_NOT_IMPLEMENTED};
    CLazyEntry<BOOL(WINAPI *)(DWORD, DWORD, DWORD, DWORD, PDWORD)> GetProductInfo{*this, "GetProductInfo"}; // Vista
    CLazyEntry<UINT(WINAPI *)(LPSTR, UINT)> GetSystemWow64DirectoryA{*this, "GetSystemWow64DirectoryA"};
    CLazyEntry<LANGID(WINAPI *)()> GetUserDefaultUILanguage{*this, "GetUserDefaultUILanguage"};
    TVX_ENTRY(IsWow64Process); // XP SP2
    TVX_ENTRY(MoveFileExA);
    CLazyEntry<BOOL(WINAPI *)(DWORD)> SetDefaultDllDirectories{*this, "SetDefaultDllDirectories"}; // 8, update of 2011
    CLazyEntry<BOOL(WINAPI *)(LPCSTR)> SetDllDirectoryA{*this, "SetDllDirectoryA"};                // XP SP1
    TVX_ENTRY(Wow64DisableWow64FsRedirection);                                                     // XP 64-bit, Vista
    CLazyEntry<BOOLEAN(WINAPI *)(BOOLEAN)> Wow64EnableWow64FsRedirection{*this, "Wow64EnableWow64FsRedirection"};
    TVX_ENTRY(Wow64RevertWow64FsRedirection);
};

class CUser32 : public CImportWin32API {
public:
    CUser32();
    TVX_ENTRY(CallWindowProcA);
    TVX_ENTRY(CreateWindowExA);
    TVX_ENTRY(DefWindowProcA);
    TVX_ENTRY(DestroyWindow);
    TVX_ENTRY(DispatchMessageA);
    TVX_ENTRY(ExitWindowsEx);
    TVX_ENTRY(GetDC);
    TVX_ENTRY(GetDesktopWindow);
    TVX_ENTRY(GetMessageA);
    TVX_ENTRY(GetParent);
    TVX_ENTRY(GetSystemMetrics);
    TVX_ENTRY(GetWindowRect);
    TVX_ENTRY(InvalidateRect);
    TVX_ENTRY(IsDialogMessageA);
    CLazyEntry<BOOL(WINAPI *)(HANDLE)> IsImmersiveProcess{*this, "IsImmersiveProcess"}; // Windows 8
    TVX_ENTRY(KillTimer);
    TVX_ENTRY(LoadCursorA);
    TVX_ENTRY(LoadIconA);
    TVX_ENTRY(MessageBoxA);
    TVX_ENTRY(MoveWindow);
    TVX_ENTRY(PostMessageA);
    TVX_ENTRY(PostQuitMessage);
    TVX_ENTRY(RegisterClassExA);
    TVX_ENTRY(ReleaseDC);
    TVX_ENTRY(SendMessageA);
    TVX_ENTRY(SetCursor);
    TVX_ENTRY(SetFocus);
    TVX_ENTRY(SetTimer);
    TVX_ENTRY(SetWindowLongA);
    TVX_ENTRY(SetWindowPos);
    TVX_ENTRY(SetWindowTextA);
    TVX_ENTRY(ShowWindow);
    TVX_ENTRY(TranslateMessage);
    TVX_ENTRY(UpdateWindow);
};

class CGdi32 : public CImportWin32API {
public:
    CGdi32();
    TVX_ENTRY(CreateFontIndirectA);
    TVX_ENTRY(DeleteObject);
    TVX_ENTRY(GetDeviceCaps);
};

class CComCtl32 : public CImportWin32API {
public:
    CComCtl32();
    TVX_ENTRY(InitCommonControls);
};

class CAdvApi32 : public CImportWin32API {
public:
    explicit CAdvApi32(bool report = true);
    TVX_ENTRY(AdjustTokenPrivileges);
    TVX_ENTRY(AllocateAndInitializeSid);
    TVX_ENTRY(EqualSid);
    TVX_ENTRY(FreeSid);
    TVX_ENTRY(GetTokenInformation);
    TVX_ENTRY(LookupPrivilegeValueA);
    TVX_ENTRY(OpenProcessToken);
    TVX_ENTRY(RegDeleteKeyA);
    CLazyEntry<LONG(WINAPI *)(HKEY, LPCSTR, REGSAM, DWORD)> RegDeleteKeyExA{*this,
                                                                            "RegDeleteKeyExA"}; // 64-bit XP, Vista
};

class CPSApi : public CImportWin32API {
public:
    CPSApi();
    TVX_ENTRY(EnumProcesses);
    TVX_ENTRY(EnumProcessModules);
    TVX_ENTRY(GetModuleFileNameExW);
};

class CSHLWApi : public CImportWin32API {
public:
    CSHLWApi();
    TVX_ENTRY(PathFileExistsW);
    TVX_ENTRY(PathIsDirectoryEmptyW);
    TVX_ENTRY(PathRemoveFileSpecW);
};

// No entry is in use yet.
class CWtsApi32 : public CImportWin32API {
public:
    CWtsApi32();
};

class CSetupApi : public CImportWin32API {
public:
    explicit CSetupApi(bool report = true);
    TVX_ENTRY(SetupDiDestroyDeviceInfoList);
    TVX_ENTRY(SetupDiEnumDeviceInfo);
    TVX_ENTRY(SetupDiGetClassDevsExA, INVALID_HANDLE_VALUE);
    TVX_ENTRY(SetupDiGetDeviceRegistryPropertyA);
    TVX_ENTRY(SetupDiOpenDevRegKey, static_cast<HKEY>(INVALID_HANDLE_VALUE));
    TVX_ENTRY(SetupDiRemoveDevice);
    TVX_ENTRY(SetupCopyOEMInfA); // Windows 2000
};

class CRpcRt4 : public CImportWin32API {
public:
    CRpcRt4();
    TVX_ENTRY(RpcStringFreeA, RPC_S_CALL_FAILED);
    TVX_ENTRY(UuidCreateSequential, RPC_S_CALL_FAILED);
    TVX_ENTRY(UuidToStringA, RPC_S_CALL_FAILED);
};

class CShell32 : public CImportWin32API {
public:
    CShell32();
    CLazyEntry<BOOL(WINAPI *)(HWND, LPSTR, int, BOOL)> SHGetSpecialFolderPathA{*this, "SHGetSpecialFolderPathA"};
    TVX_ENTRY(ShellExecuteExA);
    TVX_ENTRY(ShellExecuteExW);
    TVX_ENTRY(ShellExecuteW);
};

class COle32 : public CImportWin32API {
public:
    COle32();
    TVX_ENTRY(CoCreateInstance, E_FAIL);
    TVX_ENTRY(CoInitialize, E_FAIL);
    TVX_ENTRY(CoInitializeEx, E_FAIL);
    TVX_ENTRY(CoUninitialize);
};

// The configuration manager answers CR_ numbers, of which 0 is success; a missing entry is CR_FAILURE.
class CCfgMgr32 : public CImportWin32API {
public:
    CCfgMgr32();
    TVX_ENTRY(CM_Get_DevNode_Status, CR_FAILURE);
    TVX_ENTRY(CM_Get_Device_ID_ExA, CR_FAILURE);
};

#undef TVX_ENTRY

// One object a library for the whole process. A library is loaded by the first call of one of its entries and stays;
// User32() is the one that loads user32 too. Those of kernel32 and advapi32 do not report an entry that is missing.
CKernel32 &Kernel32();
CUser32 &User32();
CGdi32 &Gdi32();
CComCtl32 &ComCtl32();
CAdvApi32 &AdvApi32();
CShell32 &Shell32();
COle32 &Ole32();
CRpcRt4 &RpcRt4();
CSetupApi &SetupApi();
CCfgMgr32 &CfgMgr32();
CSHLWApi &ShlwApi();
