// Files that a test makes, in a folder that goes away with the object; and the stand-ins that the build made.
#pragma once

#include <string>

class CScratchFolder {
public:
    CScratchFolder();
    ~CScratchFolder();
    CScratchFolder(const CScratchFolder &) = delete;
    CScratchFolder &operator=(const CScratchFolder &) = delete;

    std::string Path(const std::string &name) const { return mFolder + "\\" + name; }

    // Writes a file with this content, bytes as they are, and answers its path.
    std::string Write(const std::string &name, const std::string &content) const;

private:
    std::string mFolder;
};

// The whole content of a file, bytes as they are; empty when it cannot be read.
std::string ReadBytes(const std::string &path);

// Path of a stand-in by its name in the folder doubles beside the test program.
std::string BuiltDouble(const std::string &name);
