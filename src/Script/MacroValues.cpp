#include "Script/MacroValues.h"

#include <windows.h>

#include <shlobj.h>

#include <iterator>
#include <string_view>

#include "Common/CSystemState.h"
#include "Common/importWin32API.h"
#include "Common/ModulePath.h"
#include "Common/Paths.h"
#include "Common/Trace.h"
#include "Registry/RegAccess.h"
#include "Script/CRunState.h"
#include "Script/MacroNames.h"

namespace {

constexpr char kCurrentVersionKey[] = "\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
constexpr char kProfileListKey[] = "\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";

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
    const FolderEntry entry = Kernel32().GetSystemWow64DirectoryA.Get();
    return entry != nullptr ? SystemFolder(entry, "GetSystemWow64Directory") : std::string();
}

// The shell library is loaded by the first macro that needs it and stays.
std::string SpecialFolder(int folderId)
{
    char folder[MAX_PATH] = {};
    if (!Shell32().SHGetSpecialFolderPathA(nullptr, folder, folderId, FALSE)) {
        trace(2, "SHGetSpecialFolderPath failed %i\n", static_cast<int>(GetLastError()));
        return std::string();
    }
    return folder;
}

// A text of the machine's own keys, read raw so that REG_EXPAND_SZ is expanded.
std::string MachineValue(const char *key, const char *name, const std::string &defaultValue, bool view64)
{
    const RegLocation location{kRootLocalMachine, key, std::string()};
    return ReadRegStringAt(location, view64 ? ERegView64 : ERegViewProcess, name, defaultValue, true);
}

std::string HidRouterName()
{
    const bool modern = IsOSTypeWin8(CSystemState::GetOSType());
    return std::string("tvxhidrouter_isd") + (modern ? "_win8" : "");
}

// A row of the macro table. `value` gets the run and the upper-cased name.
struct MacroRow {
    const char *mName;
    std::string (*mValue)(const CRunState &run, const std::string &name);
};

std::string ProgramFiles64(const CRunState &run, const std::string &name)
{
    return MachineValue(kCurrentVersionKey, "ProgramFilesDir", name, run.mWin64 != 0);
}

// clang-format off
constexpr MacroRow kMacros[] = {
    {".", [](const CRunState &, const std::string &) { return ModuleFolder(); }},
    {"WINDOWS", [](const CRunState &, const std::string &) {
        return SystemFolder(GetWindowsDirectoryA, "GetWindowsDirectory"); }},
    {"SYSTEM", [](const CRunState &, const std::string &) {
        return SystemFolder(GetSystemDirectoryA, "GetSystemDirectory"); }},
    {"WOW64", [](const CRunState &, const std::string &) { return Wow64Folder(); }},
    {"PROGRAM FILES", [](const CRunState &, const std::string &name) {
        return MachineValue(kCurrentVersionKey, "ProgramFilesDir", name, false); }},
    {"PROGRAM FILES64", ProgramFiles64},
    {"PROGFILES", ProgramFiles64},
    {"COMMON PROGRAMS", [](const CRunState &, const std::string &) { return SpecialFolder(CSIDL_COMMON_PROGRAMS); }},
    {"COMMON DESKTOP", [](const CRunState &, const std::string &) {
        return SpecialFolder(CSIDL_COMMON_DESKTOPDIRECTORY); }},
    {"APP DATA", [](const CRunState &, const std::string &) { return SpecialFolder(CSIDL_APPDATA); }},
    {"APP VERSION", [](const CRunState &, const std::string &) { return std::string(kAppVersion); }},
    {"PROFILES", [](const CRunState &run, const std::string &) {
        return MachineValue(kProfileListKey, "ProfilesDirectory", std::string(), run.mWin64 != 0); }},
    {"STARTUP FOLDER", [](const CRunState &, const std::string &) { return SpecialFolder(CSIDL_COMMON_STARTUP); }},
    {"TEMP", [](const CRunState &, const std::string &) { return TempFolder(); }},
    {"INSTALL_BASE", [](const CRunState &run, const std::string &) {
        return std::string(run.mWin64 != 0 ? ".\\System32\\64" : ".\\System32"); }},
    {"ISD_OEM", [](const CRunState &run, const std::string &) { return run.mOemDataFile; }},
    {"PRODUCT_NAME", [](const CRunState &run, const std::string &) { return run.mProductName; }},
    {"HIDROUTER_NAME_ISD", [](const CRunState &, const std::string &) { return HidRouterName(); }},
    {"ROUTERFILTER_NAME", [](const CRunState &, const std::string &) { return std::string("tavixrouterfilter"); }},
};
// clang-format on

// What looks at scripts without running them goes by the names.
constexpr bool HaveTheNames()
{
    if (std::size(kMacros) != std::size(kMacroNames)) {
        return false;
    }
    for (size_t at = 0; at < std::size(kMacros); ++at) {
        if (std::string_view(kMacros[at].mName) != kMacroNames[at]) {
            return false;
        }
    }
    return true;
}
static_assert(HaveTheNames());

} // namespace

std::optional<std::string> MacroValue(const CRunState &run, const std::string &upperName)
{
    for (const MacroRow &row : kMacros) {
        if (upperName == row.mName) {
            return row.mValue(run, upperName);
        }
    }
    return std::nullopt;
}
