// Files that a test makes, in a folder that goes away with the object; and the stand-ins that the build made.
#pragma once

#include <string>

#include "../system/Files.h"

class CScratchFolder {
public:
    CScratchFolder() { MakeFolders(mFolder); }
    ~CScratchFolder() { RemoveTree(mFolder); }
    CScratchFolder(const CScratchFolder &) = delete;
    CScratchFolder &operator=(const CScratchFolder &) = delete;

    std::string Path(const std::string &name) const { return mFolder + "\\" + name; }

    // Writes a file with this content, bytes as they are, and answers its path.
    std::string Write(const std::string &name, const std::string &content) const
    {
        WriteText(Path(name), content);
        return Path(name);
    }

private:
    const std::string mFolder = FreeTempName("scratch");
};

// The whole content of a file, bytes as they are; empty when it cannot be read.
inline std::string ReadBytes(const std::string &path)
{
    return ReadText(path);
}

// Path of a stand-in by its name in the folder doubles beside the test program.
inline std::string BuiltDouble(const std::string &name)
{
    char program[MAX_PATH];
    const std::string path(program, GetModuleFileNameA(nullptr, program, sizeof program));
    return path.substr(0, path.rfind('\\')) + "\\doubles\\" + name;
}
