#include "Files.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "Machine.h"

std::string ReadText(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool WriteText(const std::string &path, const std::string &content)
{
    MakeFolders(path.substr(0, path.find_last_of('\\')));
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    return static_cast<bool>(file.flush());
}

bool FileExists(const std::string &path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool FolderExists(const std::string &path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void MakeFolders(const std::string &path)
{
    if (FolderExists(path)) {
        return;
    }
    for (size_t at = path.find('\\', 3); at != std::string::npos; at = path.find('\\', at + 1)) {
        CreateDirectoryA(path.substr(0, at).c_str(), nullptr);
    }
    CreateDirectoryA(path.c_str(), nullptr);
}

void RemoveTree(const std::string &path)
{
    std::vector<std::string> names = Tree(path);
    for (names.insert(names.begin(), ""); !names.empty(); names.pop_back()) { // what is in a folder comes behind it
        const std::string whole = path + (names.back().empty() ? "" : "\\" + names.back());
        SetFileAttributesA(whole.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (!DeleteFileA(whole.c_str())) {
            RemoveDirectoryA(whole.c_str());
        }
    }
}

std::vector<std::string> Tree(const std::string &folder)
{
    std::vector<std::string> list;
    WIN32_FIND_DATAA entry = {};
    // Of an empty name not the whole drive.
    const HANDLE search = folder.empty() ? INVALID_HANDLE_VALUE : FindFirstFileA((folder + "\\*").c_str(), &entry);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileA(search, &entry)) {
        const std::string name = entry.cFileName;
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (name == "." || name == "..") {
            continue;
        }
        list.push_back(name + (isFolder ? "\\" : ""));
        for (const std::string &below : isFolder ? Tree(folder + "\\" + name) : std::vector<std::string>()) {
            list.push_back(name + "\\" + below);
        }
    }
    FindClose(search);
    std::sort(list.begin(), list.end());
    return list;
}

std::string FreeTempName(const std::string &stem)
{
    static unsigned number = 0;
    char buffer[MAX_PATH + 1] = {};
    GetTempPathA(sizeof buffer, buffer);
    char whole[MAX_PATH + 1] = {};
    const std::string folder = GetLongPathNameA(buffer, whole, sizeof whole) ? whole : buffer;
    std::string name;
    do {
        name = folder + stem + "-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number);
    } while (GetFileAttributesA(name.c_str()) != INVALID_FILE_ATTRIBUTES);
    return name;
}

LockedFile::LockedFile(const std::string &path, bool shareReading)
    : mFile(CreateFileA(path.c_str(), GENERIC_READ, shareReading ? FILE_SHARE_READ : 0, nullptr, OPEN_EXISTING,
                        FILE_ATTRIBUTE_NORMAL, nullptr),
            CloseHandle)
{
}

RedirectionOff::RedirectionOff()
{
    const auto disable = Entry<BOOL(WINAPI *)(PVOID *)>("kernel32.dll", "Wow64DisableWow64FsRedirection");
    const auto revert = Entry<BOOL(WINAPI *)(PVOID)>("kernel32.dll", "Wow64RevertWow64FsRedirection");
    PVOID former = nullptr;
    if (disable != nullptr && revert != nullptr && disable(&former)) {
        mFormer.reset(former, revert);
    }
}
