#include "ScratchFolder.h"

#include <windows.h>

#include <fstream>
#include <iterator>

CScratchFolder::CScratchFolder()
{
    char temp[MAX_PATH];
    char name[MAX_PATH];
    GetTempPathA(sizeof temp, temp);
    GetTempFileNameA(temp, "tvx", 0, name); // makes a file of a name that was free
    DeleteFileA(name);
    CreateDirectoryA(name, nullptr);
    mFolder = name;
}

CScratchFolder::~CScratchFolder()
{
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(Path("*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            SetFileAttributesA(Path(found.cFileName).c_str(), FILE_ATTRIBUTE_NORMAL);
            DeleteFileA(Path(found.cFileName).c_str());
        } while (FindNextFileA(search, &found));
        FindClose(search);
    }
    RemoveDirectoryA(mFolder.c_str());
}

std::string CScratchFolder::Write(const std::string &name, const std::string &content) const
{
    std::ofstream file(Path(name), std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    return Path(name);
}

std::string ReadBytes(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string BuiltDouble(const std::string &name)
{
    char program[MAX_PATH];
    const std::string path(program, GetModuleFileNameA(nullptr, program, sizeof program));
    return path.substr(0, path.rfind('\\')) + "\\doubles\\" + name;
}
