#include "Services/Preferences.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "Common/DriverNames.h"
#include "Common/Handles.h"
#include "Common/Redirection.h"
#include "Common/TextConversions.h"
#include "Common/importWin32API.h"
#include "Services/DirectTrace.h"
#include "Services/PreferencePaths.h"
#include "Services/ProcessActions.h"

namespace {

constexpr char kProfileList[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";
constexpr DWORD kSettleTime = 5000; // until a stopped driver has let go of its files
constexpr DWORD kRestartTime = 2000;
constexpr DWORD kSubKeyRoom = 1024;
constexpr size_t kPathRoom = 1024;

CRegKey OpenKey(HKEY parent, const char *path)
{
    CRegKey key;
    RegOpenKeyExA(parent, path, 0, KEY_READ | KEY_WOW64_64KEY, key.Receive());
    return key;
}

std::string ExpandEnvironment(const std::string &text)
{
    const DWORD size = ExpandEnvironmentStringsA(text.c_str(), nullptr, 0);
    std::vector<char> expanded(size + 1);
    ExpandEnvironmentStringsA(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
    return expanded.data();
}

// A value that holds the path of a folder; none when it is missing or no text.
std::optional<std::wstring> ReadFolder(const CRegKey &key, const char *name)
{
    DWORD type = 0;
    DWORD size = 0;
    if (RegQueryValueExA(key.Get(), name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ)) {
        return std::nullopt;
    }
    std::vector<char> text(size + 1); // the data need not end in a NUL
    if (RegQueryValueExA(key.Get(), name, nullptr, &type, reinterpret_cast<BYTE *>(text.data()), &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return AnsiToWide(ExpandEnvironment(text.data()));
}

// The folders in the folder of profiles, by their wide names, which the code page need not have.
void CollectFolders(const std::wstring &folder, std::vector<std::wstring> &profiles_I_O)
{
    WIN32_FIND_DATAW entry;
    const CFindHandle search(FindFirstFileW(JoinWide({folder, L"\\*"}).c_str(), &entry));
    if (!search) {
        return;
    }
    do {
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && entry.cFileName[0] != L'.') {
            profiles_I_O.push_back(JoinWide({folder, entry.cFileName}));
        }
    } while (FindNextFileW(search.Get(), &entry));
}

// The profiles that the machine has a key for.
void CollectListed(const CRegKey &list, std::vector<std::wstring> &profiles_I_O)
{
    for (DWORD index = 0;; ++index) {
        char name[kSubKeyRoom];
        DWORD length = kSubKeyRoom;
        if (RegEnumKeyExA(list.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            return;
        }
        if (const auto profile = ReadFolder(OpenKey(list.Get(), name), "ProfileImagePath")) {
            profiles_I_O.push_back(*profile);
        }
    }
}

// None at all without the folder of profiles. One that is found in both ways stands there twice.
std::vector<std::wstring> CollectProfiles()
{
    std::vector<std::wstring> profiles;
    const CRegKey list = OpenKey(HKEY_LOCAL_MACHINE, kProfileList);
    const auto folder = list ? ReadFolder(list, "ProfilesDirectory") : std::nullopt;
    if (folder) {
        CollectFolders(*folder, profiles);
        CollectListed(list, profiles);
    }
    return profiles;
}

// The file's path below a root.
std::wstring PrefFilePath(int32_t driverType)
{
    return JoinWide({L"\\VTablet", GetDriverSplitNameW(EDS_DatName, driverType)});
}

// The folder of a file that went, when nothing else is in it; never one above.
void RemoveFolderIfEmpty(const std::wstring &path)
{
    std::vector<wchar_t> folder(std::max(path.size() + 1, kPathRoom));
    std::copy(path.begin(), path.end(), folder.begin());
    ShlwApi().PathRemoveFileSpecW(folder.data());
    const bool removed =
        ShlwApi().PathIsDirectoryEmptyW(folder.data()) != FALSE && RemoveDirectoryW(folder.data()) != FALSE;
    TVX_TRACE_DIRECT("Directory '%s', deleted %d\n", WideToAnsi(folder.data()).c_str(), removed ? 1 : 0);
}

} // namespace

void RemoveAll(int32_t driverType, bool restartDriver)
{
    const STDisableRedirect redirect(true);
    if (restartDriver && StopDrivers(true, driverType)) {
        Sleep(kSettleTime);
    }
    for (const std::wstring &profile : CollectProfiles()) {
        RemovePrefsForProfile(driverType, profile);
    }
    if (restartDriver) {
        Sleep(kRestartTime);
        StartDrivers(true, driverType);
    }
}

bool RemovePrefsForProfile(int32_t driverType, const std::wstring &profile)
{
    const int32_t line = driverType & kDriverLineMask;
    RemovePrefFile(profile, PrefFilePath(line + kDriverPenHalf));
    RemovePrefFile(profile, PrefFilePath(line + kDriverTouchHalf));
    if (line == (EDriverConPen & kDriverLineMask)) {
        RemovePrefFile(profile, L"\\VTouch\\VTouch.xml");
    }
    RemovePrefFile(profile, PrefFilePath(0)); // that of the versions before the lines
    return true;
}

bool RemovePrefFile(const std::wstring &profile, const std::wstring &file)
{
    for (const std::wstring &path : PreferencePlaces(profile, file)) {
        const std::string shown = WideToAnsi(path);
        TVX_TRACE_DIRECT("Looking for preferences at %s\n", shown.c_str());
        if (!ShlwApi().PathFileExistsW(path.c_str())) {
            continue;
        }
        const bool deleted = DeleteFileW(path.c_str()) != FALSE;
        TVX_TRACE_DIRECT("File '%s', deleted %d\n", shown.c_str(), deleted ? 1 : 0);
        RemoveFolderIfEmpty(path);
    }
    return true;
}
