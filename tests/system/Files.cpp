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

namespace {

template <typename TVisitor>
void EachEntry(const std::string &folder, TVisitor visit)
{
    WIN32_FIND_DATAA entry = {};
    const HANDLE search = FindFirstFileA((folder + "\\*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        const std::string name = entry.cFileName;
        if (name != "." && name != "..") {
            visit(name, (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
        }
    } while (FindNextFileA(search, &entry));
    FindClose(search);
}

void ListBelow(const std::string &folder, const std::string &prefix, std::vector<std::string> *list_O)
{
    EachEntry(folder, [&](const std::string &name, bool isFolder) {
        list_O->push_back(prefix + name + (isFolder ? "\\" : ""));
        if (isFolder) {
            ListBelow(folder + "\\" + name, prefix + name + "\\", list_O);
        }
    });
}

} // namespace

void RemoveTree(const std::string &path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return;
    }
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        DeleteFileA(path.c_str());
        return;
    }
    std::vector<std::string> names;
    EachEntry(path, [&](const std::string &name, bool) { names.push_back(name); });
    for (const std::string &name : names) {
        RemoveTree(path + "\\" + name);
    }
    RemoveDirectoryA(path.c_str());
}

std::vector<std::string> Tree(const std::string &folder)
{
    std::vector<std::string> list;
    if (folder.empty()) {
        return list; // not the whole drive
    }
    ListBelow(folder, "", &list);
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
