// Files and folders as tests make and look at them.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// The whole content, bytes as they are; empty when the file cannot be read.
std::string ReadText(const std::string &path);

// Writes a file with this content, making its folder when that is missing. Answers whether it worked.
bool WriteText(const std::string &path, const std::string &content);

bool FileExists(const std::string &path);   // a file
bool FolderExists(const std::string &path); // a folder

// Makes the folder with all that leads to it.
void MakeFolders(const std::string &path);

// Removes a file or a folder with everything in it, read-only or not.
void RemoveTree(const std::string &path);

// What a folder holds, at any depth: paths below it, folders with a "\" behind, in alphabetical order.
std::vector<std::string> Tree(const std::string &folder);

// The folder for temporary files of this test program, with a "\" behind; a file name in it that is free.
std::string TempFolder();
std::string FreeTempName(const std::string &stem);

// The path with every "\" doubled, as a value in a script has it.
std::string Escaped(const std::string &path);

// A file that is held open, shared with nobody, for as long as the object lives.
class LockedFile {
public:
    explicit LockedFile(const std::string &path);
    ~LockedFile();
    LockedFile(const LockedFile &) = delete;
    LockedFile &operator=(const LockedFile &) = delete;
    bool Held() const { return mFile != INVALID_HANDLE_VALUE; }
    void Release();

private:
    HANDLE mFile;
};

// A file or folder outside the package that goes away with the object.
class Scratch {
public:
    explicit Scratch(std::string path) : mPath(std::move(path)) { RemoveTree(mPath); }
    ~Scratch() { RemoveTree(mPath); }
    Scratch(const Scratch &) = delete;
    Scratch &operator=(const Scratch &) = delete;
    const std::string &Path() const { return mPath; }

private:
    std::string mPath;
};

// Shows this 32-bit test program the folders of 64-bit Windows as they are, for as long as the object lives.
class RedirectionOff {
public:
    RedirectionOff();
    ~RedirectionOff();
    RedirectionOff(const RedirectionOff &) = delete;
    RedirectionOff &operator=(const RedirectionOff &) = delete;

private:
    PVOID mFormer = nullptr;
    bool mOff = false;
};
