#include "Shell/DisplayNames.h"

#include <windows.h>

#include "Common/ComApartment.h"
#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/Paths.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"

namespace {

// An entry of the shell, null where it lacks it. The library stays: the shell may leave threads of its own behind.
template <typename TEntry>
TEntry ShellEntry(const char *name)
{
    static const HMODULE shell = LoadSystemLibrary("shell32.dll");
    EnterComApartment(); // the shell finds what a path names through objects
    return BindEntry<TEntry>(shell, name);
}

// Sets the last error from a result of the shell and answers whether that was success.
bool Succeeded(HRESULT result)
{
    SetLastError(static_cast<DWORD>(result) & 0xffff);
    return result == S_OK;
}

HRESULT DMSHSetLocalizedName(const std::wstring &path, const std::wstring &dll, int stringNumber)
{
    const auto setName = ShellEntry<HRESULT(WINAPI *)(LPCWSTR, LPCWSTR, int)>("SHSetLocalizedName");
    if (setName == nullptr) {
        return E_NOTIMPL;
    }
    trace(1, "DMSHSetLocalizedName - calling SHSetLocalizedName on %s ...\n", WideToAnsi(path).c_str());
    return setName(path.c_str(), dll.c_str(), stringNumber);
}

HRESULT DMSHRemoveLocalizedName(const std::wstring &path)
{
    const auto removeName = ShellEntry<HRESULT(WINAPI *)(LPCWSTR)>("SHRemoveLocalizedName");
    if (removeName == nullptr) {
        return E_NOTIMPL;
    }
    trace(1, "DMSHRemoveLocalizedName - calling SHRemoveLocalizedName on %s ...\n", WideToAnsi(path).c_str());
    return removeName(path.c_str());
}

// Everything in a folder that has none above it.
void RemoveNamesBelow(const std::string &path)
{
    WIN32_FIND_DATAA entry;
    const CFindHandle search(FindFirstFileA((path + "\\*.*").c_str(), &entry));
    if (!search) {
        return;
    }
    do {
        const std::string name = entry.cFileName;
        if (name == "." || name == "..") {
            continue;
        }
        const std::string whole = JoinPath(path, name);
        const bool isDirectory = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const DWORD errorBefore = GetLastError();
        const bool removed = isDirectory ? RemoveDisplayNameTree(whole) : RemoveDisplayName(whole);
        trace(7, "RemoveDisplayName - %s %s, %s %i\n", isDirectory ? "Directory" : "File", whole.c_str(),
              YesNo(removed), static_cast<int>(errorBefore));
    } while (FindNextFileA(search.Get(), &entry));
    SetLastError(ERROR_SUCCESS);
}

} // namespace

bool SetDisplayName(const std::string &path, const std::string &dll, int stringNumber)
{
    return Succeeded(DMSHSetLocalizedName(AnsiToWide(path), AnsiToWide(dll), stringNumber));
}

bool RemoveDisplayName(const std::string &path)
{
    trace(9, "RemoveDisplayName: file: %s\n", path.c_str());
    const HRESULT result = DMSHRemoveLocalizedName(AnsiToWide(path));
    if (result != S_OK) {
        trace(9, "RemoveDisplayName: error from DMSHRemoveLocalizedName: %i\n", static_cast<int>(result));
    }
    return Succeeded(result);
}

// The walk is for what has no part above it: whoever removes a folder names the folder alone.
bool RemoveDisplayNameTree(const std::string &path)
{
    trace(9, "RemoveDisplayNameRecursive: file: %s\n", path.c_str());
    if (DirectoryPart(path) == path) {
        RemoveNamesBelow(path);
    }
    return RemoveDisplayName(path);
}
