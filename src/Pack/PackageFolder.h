// The files of a package, by the paths that its scripts name them with. Upper and lower case do not differ, as on the
// machine that the package is for, whatever the host says.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

// Where the reader of scripts gets its files from.
class IScriptSource {
public:
    virtual ~IScriptSource() = default;

    // The bytes of a file; nothing when it is not there or cannot be read.
    virtual std::optional<std::string> ReadFile(const std::string &path) = 0;
};

// A file as a package's path leads to it.
struct PackageFile {
    std::filesystem::path mPath; // on the host
    bool mOtherCase = false;     // a part of the path is written in another case than on the disk
};

class CPackageFolder : public IScriptSource {
public:
    // `folder` stands for the run's working folder and the folder of its program. A path of its own for it, such as
    // "C:\\Package", makes absolute paths that begin so lead into it, too.
    explicit CPackageFolder(std::filesystem::path folder, std::string windowsPath = std::string());

    // The file or folder that a path names. Back-slashes and slashes part names; a relative path hangs on the folder.
    // Nothing when it is not there or lies outside of the folder.
    std::optional<PackageFile> Find(const std::string &path) const;

    std::optional<std::string> ReadFile(const std::string &path) override;

    const std::filesystem::path &Folder() const { return mFolder; }

private:
    std::filesystem::path mFolder;
    std::string mWindowsPath;
};
