#include "Files.h"

#include <algorithm>
#include <fstream>
#include <iterator>

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

std::string TempFolder()
{
    char buffer[MAX_PATH + 1] = {};
    GetTempPathA(sizeof buffer, buffer);
    char whole[MAX_PATH + 1] = {};
    return GetLongPathNameA(buffer, whole, sizeof whole) ? whole : buffer;
}

std::string FreeTempName(const std::string &stem)
{
    static unsigned number = 0;
    std::string name;
    do {
        name = TempFolder() + stem + "-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number);
    } while (GetFileAttributesA(name.c_str()) != INVALID_FILE_ATTRIBUTES);
    return name;
}

std::string Escaped(const std::string &path)
{
    std::string escaped;
    for (const char c : path) {
        escaped.append(c == '\\' ? 2 : 1, c);
    }
    return escaped;
}

LockedFile::LockedFile(const std::string &path)
    : mFile(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
{
}

LockedFile::~LockedFile()
{
    Release();
}

void LockedFile::Release()
{
    if (Held()) {
        CloseHandle(mFile);
        mFile = INVALID_HANDLE_VALUE;
    }
}

namespace {

template <typename TFunction>
TFunction KernelEntry(const char *name)
{
    return reinterpret_cast<TFunction>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("kernel32.dll"), name)));
}

} // namespace

RedirectionOff::RedirectionOff()
{
    const auto disable = KernelEntry<BOOL(WINAPI *)(PVOID *)>("Wow64DisableWow64FsRedirection");
    mOff = disable != nullptr && disable(&mFormer);
}

RedirectionOff::~RedirectionOff()
{
    const auto revert = KernelEntry<BOOL(WINAPI *)(PVOID)>("Wow64RevertWow64FsRedirection");
    if (mOff && revert != nullptr) {
        revert(mFormer);
    }
}
