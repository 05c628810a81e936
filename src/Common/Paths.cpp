#include "Common/Paths.h"

#include <algorithm>
#include <vector>

#include "Common/importWin32API.h"

namespace {

// The entries of the shell library that work on paths.
class CPathLibrary : public CImportWin32API {
public:
    CPathLibrary() : CImportWin32API("shlwapi.dll", true, true) {}
    CLazyEntry<decltype(&::PathFindExtensionA)> PathFindExtensionA{*this, "PathFindExtensionA"};
    CLazyEntry<decltype(&::PathFindFileNameA)> PathFindFileNameA{*this, "PathFindFileNameA"};
    CLazyEntry<decltype(&::PathIsRootA)> PathIsRootA{*this, "PathIsRootA"};
    CLazyEntry<decltype(&::PathRemoveFileSpecA)> PathRemoveFileSpecA{*this, "PathRemoveFileSpecA"};
};

CPathLibrary &PathLibrary()
{
    // Never destroyed: paths are cut until the very end of the process.
    static CPathLibrary &library = *new CPathLibrary;
    return library;
}

bool EndsInBackslash(const std::string &path)
{
    if (path.empty() || path.back() != '\\') {
        return false;
    }
    const std::vector<size_t> positions = FindBackslashes(path);
    return !positions.empty() && positions.back() == path.size() - 1;
}

} // namespace

bool PathExists(const std::string &path)
{
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsRootPath(const std::string &path)
{
    return PathLibrary().PathIsRootA(path.c_str()) != FALSE;
}

std::string FindFileName(const std::string &path)
{
    const char *name = PathLibrary().PathFindFileNameA(path.c_str());
    return name != nullptr ? name : path;
}

std::string FindExtension(const std::string &path)
{
    const char *extension = PathLibrary().PathFindExtensionA(path.c_str());
    return extension != nullptr ? extension : std::string();
}

std::string DirectoryPart(const std::string &path)
{
    if (path.empty()) {
        return std::string();
    }
    // The entry works in place and is promised MAX_PATH characters of room whatever the text.
    std::vector<char> buffer(std::max<size_t>(path.size() + 1, MAX_PATH));
    std::copy(path.begin(), path.end(), buffer.begin());
    PathLibrary().PathRemoveFileSpecA(buffer.data());
    return buffer.data();
}

std::string JoinPath(const std::string &left, const std::string &right)
{
    std::string path = left;
    if (!left.empty() && !EndsInBackslash(left)) {
        path += '\\';
    }
    path.append(right, !right.empty() && right.front() == '\\' ? 1 : 0, std::string::npos);
    return path;
}

std::vector<size_t> FindBackslashes(const std::string &path, unsigned codePage)
{
    std::vector<size_t> positions;
    for (size_t at = 0; at < path.size(); ++at) {
        if (path[at] == '\\') {
            positions.push_back(at);
        } else if (IsDBCSLeadByteEx(codePage, static_cast<BYTE>(path[at])) != FALSE) {
            ++at; // the second byte belongs to the character
        }
    }
    return positions;
}

std::string TempFolder()
{
    char folder[1024] = {};
    const DWORD length = GetTempPathA(sizeof folder, folder);
    return length < sizeof folder ? folder : std::string();
}

std::string FullPath(const std::string &path)
{
    std::string full(MAX_PATH, '\0');
    DWORD length = GetFullPathNameA(path.c_str(), MAX_PATH, full.data(), nullptr);
    if (length > full.size()) { // then it is the room needed, the end included
        full.resize(length);
        length = GetFullPathNameA(path.c_str(), length, full.data(), nullptr);
    }
    full.resize(length < full.size() ? length : 0);
    return full;
}
