#include "Files/Directories.h"

#include <vector>

#include "Common/Paths.h"
#include "Common/StringUtilities.h"

BOOL CreateDirTree(const std::string &path)
{
    // Up to the first directory that exists, then down again. Not by recursion: a path may have thousands of parts.
    const std::vector<size_t> separators = FindBackslashes(path);
    std::string part = path;
    size_t known = separators.size();
    while (!PathExists(part) && !IsRootPath(part)) {
        if (known == 0) {
            return FALSE;
        }
        part.resize(separators[--known]);
    }
    SetLastError(ERROR_SUCCESS);
    while (part.size() < path.size()) {
        ++known;
        part.assign(path, 0, known < separators.size() ? separators[known] : path.size());
        if (!CreateDirectoryA(part.c_str(), nullptr)) {
            return FALSE;
        }
    }
    return TRUE;
}

bool RemoveDirectoryForced(const std::string &path)
{
    constexpr DWORD kUnwanted = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN;
    if (path.empty()) {
        SetLastError(ERROR_INVALID_PARAMETER);
    } else {
        const DWORD attributes = GetFileAttributesA(path.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kUnwanted) != 0) {
            SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            SetLastError(ERROR_SUCCESS);
        }
    }
    return RemoveDirectoryA(path.c_str()) != FALSE;
}

bool LeadsToRoot(const std::string &path)
{
    std::string full = FullPath(path);
    const bool verbatim = full.compare(0, 4, "\\\\?\\") == 0 || full.compare(0, 4, "\\\\.\\") == 0;
    if (verbatim && EqualsNoCase(full.substr(4, 4), "UNC\\")) {
        full.replace(0, 7, "\\");
    } else if (verbatim) {
        full.erase(0, 4);
    }
    while (full.size() > 1 && full.back() == '\\') {
        full.pop_back();
    }
    const bool volume = verbatim && FindBackslashes(full).empty(); // by its letter or its own name
    return volume || IsRootPath(full) || IsRootPath(full + "\\");
}
