// The values behind the macros: folders of the machine, fixed names, and what the run has found out.
#include <windows.h>

#include <shlobj.h>

#include <optional>
#include <string>

#include "Actions/RegAccess.h"
#include "Common/CSystemState.h"
#include "Common/importWin32API.h"
#include "Common/ModulePath.h"
#include "Common/Trace.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/Macros.h"
#include "Installer/ScriptAccess.h"

namespace {

constexpr char kCurrentVersionKey[] = "\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
constexpr char kProfileListKey[] = "\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";
constexpr DWORD kTempPathRoom = 1024;

using FolderEntry = UINT(WINAPI *)(LPSTR, UINT);

// One of the Get...Directory family of the platform; empty on failure.
std::string SystemFolder(FolderEntry entry, const char *name)
{
    char folder[MAX_PATH] = {};
    const UINT length = entry(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) {
        trace(2, "%s failed %i\n", name, static_cast<int>(GetLastError()));
        return std::string();
    }
    return folder;
}

// GetSystemWow64Directory came with Windows XP; it fails on 32-bit Windows.
std::string Wow64Folder()
{
    const HMODULE kernel = GetModuleHandleA("KERNEL32.DLL");
    const auto entry = BindEntry<FolderEntry>(kernel, "GetSystemWow64DirectoryA");
    return entry != nullptr ? SystemFolder(entry, "GetSystemWow64Directory") : std::string();
}

// The shell library is loaded by the first macro that needs it and stays.
std::string SpecialFolder(int folderId)
{
    using SpecialFolderEntry = BOOL(WINAPI *)(HWND, LPSTR, int, BOOL);
    static const HMODULE shell = LoadSystemLibrary("shell32.dll");
    static const auto entry =
        shell != nullptr ? BindEntry<SpecialFolderEntry>(shell, "SHGetSpecialFolderPathA") : nullptr;
    char folder[MAX_PATH] = {};
    if (entry == nullptr || !entry(nullptr, folder, folderId, FALSE)) {
        trace(2, "SHGetSpecialFolderPath failed %i\n", static_cast<int>(GetLastError()));
        return std::string();
    }
    return folder;
}

std::string TempFolder()
{
    char folder[kTempPathRoom] = {};
    const DWORD length = GetTempPathA(kTempPathRoom, folder);
    return length < kTempPathRoom ? folder : std::string();
}

// A text of the machine's own keys, read raw so that REG_EXPAND_SZ is expanded.
std::string MachineValue(const char *key, const char *name, const std::string &defaultValue, bool view64)
{
    const CRegLocationScope location(RegLocation{kRootLocalMachine, key, std::string()}, view64);
    return ReadString("", name, defaultValue, true);
}

std::string HidRouterName()
{
    const bool modern = IsOSTypeWin8(CSystemState::GetOSType());
    return std::string("tvxhidrouter_isd") + (modern ? "_win8" : "");
}

// The rows of the macro table, in its order; the first that matches counts.
std::optional<std::string> MacroValue(const CWinInstallMain &main, const std::string &name)
{
    const bool win64 = main.mWin64 != 0;
    if (name == ".") {
        return ModuleFolder();
    }
    if (name == "WINDOWS") {
        return SystemFolder(GetWindowsDirectoryA, "GetWindowsDirectory");
    }
    if (name == "SYSTEM") {
        return SystemFolder(GetSystemDirectoryA, "GetSystemDirectory");
    }
    if (name == "WOW64") {
        return Wow64Folder();
    }
    if (name == "PROGRAM FILES") {
        return MachineValue(kCurrentVersionKey, "ProgramFilesDir", name, false);
    }
    if (name == "PROGRAM FILES64" || name == "PROGFILES") {
        return MachineValue(kCurrentVersionKey, "ProgramFilesDir", name, win64);
    }
    if (name == "COMMON PROGRAMS") {
        return SpecialFolder(CSIDL_COMMON_PROGRAMS);
    }
    if (name == "COMMON DESKTOP") {
        return SpecialFolder(CSIDL_COMMON_DESKTOPDIRECTORY);
    }
    if (name == "APP DATA") {
        return SpecialFolder(CSIDL_APPDATA);
    }
    if (name == "APP VERSION") {
        return kAppVersion;
    }
    if (name == "PROFILES") {
        return MachineValue(kProfileListKey, "ProfilesDirectory", std::string(), win64);
    }
    if (name == "STARTUP FOLDER") {
        return SpecialFolder(CSIDL_COMMON_STARTUP);
    }
    if (name == "TEMP") {
        return TempFolder();
    }
    if (name == "INSTALL_BASE") {
        return win64 ? ".\\System32\\64" : ".\\System32";
    }
    if (name == "ISD_OEM") {
        return main.mOemDataFile;
    }
    if (name == "PRODUCT_NAME") {
        return main.mProductName;
    }
    if (name == "HIDROUTER_NAME_ISD") {
        return HidRouterName();
    }
    if (name == "ROUTERFILTER_NAME") {
        return "tavixrouterfilter";
    }
    return std::nullopt;
}

class CRunMacroValues : public IMacroValues {
public:
    explicit CRunMacroValues(const CWinInstallMain &main) : mMain(main) {}

    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override
    {
        return ReadLanguageString(mMain.mLanguage.GetName(), key, defaultValue);
    }
    std::optional<std::string> Value(const std::string &upperName) override { return MacroValue(mMain, upperName); }

private:
    const CWinInstallMain &mMain;
};

} // namespace

std::string CWinInstallMain::ExpandMacros(const std::string &text)
{
    CRunMacroValues values(*this);
    return ::ExpandMacros(text, values);
}
