#include "Common/ModulePath.h"

#include <windows.h>

#include <vector>

#include "Common/Paths.h"
#include "Common/TextConversions.h"

namespace {

std::wstring WideModulePath()
{
    // A path that does not fit is cut and fills the buffer; \\?\ paths end at 32767 characters.
    std::vector<wchar_t> path(MAX_PATH);
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            return std::wstring(path.data(), length);
        }
        if (path.size() > 0x8000) {
            return std::wstring();
        }
        path.resize(path.size() * 2);
    }
}

// The folder by its short form, as far as it has one.
std::wstring ShortPath(const std::wstring &path)
{
    std::vector<wchar_t> shorter(path.size() + MAX_PATH);
    const DWORD length = GetShortPathNameW(path.c_str(), shorter.data(), static_cast<DWORD>(shorter.size()));
    return length != 0 && length < shorter.size() ? std::wstring(shorter.data(), length) : path;
}

} // namespace

// Paths are narrow all through the run: a folder whose name the code page lacks would be lost.
std::string ModulePath()
{
    const std::wstring path = WideModulePath();
    const size_t name = path.rfind(L'\\') + 1;
    const std::wstring folder = path.substr(0, name);
    return WideToAnsi(FitsAnsi(folder) ? folder : ShortPath(folder)) + WideToAnsi(path.substr(name));
}

std::string ModuleFolder()
{
    // As PathRemoveFileSpecA cuts a full path. Every run asks for this folder, and the shell library would cost as much
    // as the start of the program.
    std::string path = ModulePath();
    const std::vector<size_t> backslashes = FindBackslashes(path);
    if (backslashes.empty()) {
        return path;
    }
    const size_t last = backslashes.back();
    const bool root = last == 2 && path[1] == ':';
    return path.substr(0, root ? last + 1 : last);
}
