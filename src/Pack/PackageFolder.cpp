#include "Pack/PackageFolder.h"

#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include "Common/StringUtilities.h"
#include "Pack/CodePage.h"

namespace fs = std::filesystem;

namespace {

std::string Lowered(std::string text)
{
    for (char &c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    }
    return text;
}

// The entry of a folder by its name in UTF-8, in another case when there is none in this one; empty when there is none.
fs::path Entry(const fs::path &folder, const std::string &name, bool &otherCase_O)
{
    std::error_code ignored;
    fs::path found;
    const std::string lowered = Lowered(name);
    for (fs::directory_iterator at(folder, ignored), end; at != end; at.increment(ignored)) {
        const std::string entry = at->path().filename().u8string();
        if (entry == name) {
            otherCase_O = false;
            return at->path();
        }
        if (Lowered(entry) == lowered) {
            found = at->path();
            otherCase_O = true;
        }
    }
    return found;
}

} // namespace

CPackageFolder::CPackageFolder(fs::path folder, std::string windowsPath)
    : mFolder(std::move(folder)), mWindowsPath(std::move(windowsPath))
{
}

std::optional<PackageFile> CPackageFolder::Find(const std::string &path) const
{
    std::string rest = path;
    for (char &c : rest) {
        c = c == '/' ? '\\' : c;
    }
    const size_t root = mWindowsPath.size();
    if (root != 0 && Lowered(rest.substr(0, root)) == Lowered(mWindowsPath) &&
        (rest.size() == root || rest[root] == '\\')) {
        rest.erase(0, rest.size() == root ? root : root + 1);
    } else if (!rest.empty() && (rest[0] == '\\' || (rest.size() > 1 && rest[1] == ':'))) {
        return std::nullopt;
    }
    PackageFile file{mFolder, false};
    size_t depth = 0;
    std::istringstream names(gCodePage.ToUtf8(rest));
    for (std::string name; std::getline(names, name, '\\');) {
        // Windows takes points and blanks off the end of a name.
        if (name == "..") {
            if (depth == 0) {
                return std::nullopt;
            }
            --depth;
            file.mPath = file.mPath.parent_path();
            continue;
        }
        name.erase(name.find_last_not_of(". ") + 1);
        if (name.empty()) {
            continue;
        }
        bool otherCase = false;
        file.mPath = Entry(file.mPath, name, otherCase);
        if (file.mPath.empty()) {
            return std::nullopt;
        }
        file.mOtherCase = file.mOtherCase || otherCase;
        ++depth;
    }
    return file;
}

std::optional<std::string> CPackageFolder::ReadFile(const std::string &path)
{
    const std::optional<PackageFile> file = Find(path);
    std::error_code ignored;
    if (!file || !fs::is_regular_file(file->mPath, ignored)) {
        return std::nullopt;
    }
    std::ifstream stream(file->mPath, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    if (!stream) {
        // An empty file gives nothing to copy, which a stream takes for a failure.
        return fs::file_size(file->mPath, ignored) == 0 ? std::optional<std::string>("") : std::nullopt;
    }
    return bytes.str();
}
