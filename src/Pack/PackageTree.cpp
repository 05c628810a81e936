#include "Pack/PackageTree.h"

#include <algorithm>
#include <system_error>

#include "Common/StringUtilities.h"
#include "Pack/CodePage.h"

namespace fs = std::filesystem;

std::optional<std::string> PlainPackagePath(const std::string &path)
{
    if (path.empty() || path.front() == '\\' || path.front() == '/' || path.find(':') != std::string::npos) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    for (std::string &name : SplitAny(path, "\\/", true)) {
        if (name == "..") {
            if (names.empty()) {
                return std::nullopt;
            }
            names.pop_back();
            continue;
        }
        name.erase(name.find_last_not_of(". ") + 1); // Windows takes points and blanks off the end of a name
        if (!name.empty()) {
            names.push_back(std::move(name));
        }
    }
    std::string plain;
    for (const std::string &name : names) {
        plain += (plain.empty() ? "" : "\\") + name;
    }
    return plain;
}

CPackageTree::CPackageTree(const fs::path &folder)
{
    Add(std::string(), true);
    std::error_code failure;
    fs::recursive_directory_iterator at(folder, fs::directory_options::skip_permission_denied, failure);
    for (const fs::recursive_directory_iterator end; !failure && at != end; at.increment(failure)) {
        std::error_code ignored;
        std::string path = gCodePage.FromUtf8(at->path().lexically_relative(folder).generic_u8string());
        std::replace(path.begin(), path.end(), '/', '\\');
        Add(path, at->is_directory(ignored));
    }
}

void CPackageTree::AddFile(const std::string &path)
{
    const std::string plain = PlainPackagePath(path).value_or(std::string());
    Add(std::string(), true);
    for (size_t slash = plain.find('\\'); slash != std::string::npos; slash = plain.find('\\', slash + 1)) {
        Add(plain.substr(0, slash), true);
    }
    if (!plain.empty()) {
        Add(plain, false);
    }
}

void CPackageTree::Add(const std::string &path, bool folder)
{
    if (mEntries.insert({UpperAscii(path), {path, folder}}).second && !path.empty()) {
        mPaths.push_back(path);
    }
}

const PackageEntry *CPackageTree::Find(const std::string &path) const
{
    const std::optional<std::string> plain = PlainPackagePath(path);
    const auto found = plain ? mEntries.find(UpperAscii(*plain)) : mEntries.end();
    return found != mEntries.end() ? &found->second : nullptr;
}

bool CPackageTree::IsWrittenSo(const std::string &path, const PackageEntry &entry) const
{
    return PlainPackagePath(path) == entry.mPath;
}

const PackageEntry *CPackageTree::FindLike(const std::string &front, const std::string &behind) const
{
    const auto fits = [&](const std::string &upper) {
        return upper.size() >= front.size() + behind.size() && upper.compare(0, front.size(), front) == 0 &&
               upper.compare(upper.size() - behind.size(), behind.size(), behind) == 0;
    };
    const auto found =
        std::find_if(mPaths.begin(), mPaths.end(), [&](const std::string &path) { return fits(UpperAscii(path)); });
    return found != mPaths.end() ? Find(*found) : nullptr;
}
