#include "Common/ModulePath.h"

#include <windows.h>

#include <vector>

#include "Common/Paths.h"

std::string ModulePath()
{
    // A path that does not fit is cut and fills the buffer; \\?\ paths end at 32767 characters.
    std::vector<char> path(MAX_PATH);
    for (;;) {
        const DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            return std::string(path.data(), length);
        }
        if (path.size() > 0x8000) {
            return std::string();
        }
        path.resize(path.size() * 2);
    }
}

std::string ModuleFolder()
{
    // As PathRemoveFileSpecA cuts a full path. Every run asks for this folder, and the shell library would cost as much
    // as the start of the program.
    const std::string path = ModulePath();
    const std::vector<size_t> backslashes = FindBackslashes(path);
    if (backslashes.empty()) {
        return path;
    }
    const size_t last = backslashes.back();
    const bool root = last == 2 && path[1] == ':';
    return path.substr(0, root ? last + 1 : last);
}
