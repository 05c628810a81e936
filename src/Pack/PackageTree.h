// What a package consists of, by the paths that its scripts name things with. Made once, so that thousands of steps can
// ask for their files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

// A file or folder of a package.
struct PackageEntry {
    std::string mPath; // as on the disk, below the package, with back-slashes
    bool mFolder = false;
};

class CPackageTree {
public:
    CPackageTree() = default;
    // All that lies in a folder of this machine. Folders that cannot be read have nothing in them.
    explicit CPackageTree(const std::filesystem::path &folder);

    // Adds a file and the folders above it; back-slashes or slashes part the names.
    void AddFile(const std::string &path);

    // What a path leads to, whatever its case. A path begins at the package's folder, with or without ".\". Nothing for
    // what is not there and for a path that leads out of the package.
    const PackageEntry *Find(const std::string &path) const;

    // A file whose path in capitals begins with `front` and ends in `behind`; null when there is none.
    const PackageEntry *FindLike(const std::string &front, const std::string &behind) const;

    // Whether the path is written as it stands on the disk.
    bool IsWrittenSo(const std::string &path, const PackageEntry &entry) const;

    // The paths of all files and folders, for a hint at what was meant.
    const std::vector<std::string> &Paths() const { return mPaths; }

private:
    void Add(const std::string &path, bool folder);

    std::unordered_map<std::string, PackageEntry> mEntries; // by the path in capitals
    std::vector<std::string> mPaths;
};

// A path of a package in its plain form: back-slashes, no "." and no doubled separators, the names in front of ".."
// taken off. Nothing when it leads out of the package or begins with a drive or a separator.
std::optional<std::string> PlainPackagePath(const std::string &path);
