// Files and folders as tests make and look at them.
#pragma once

#include <windows.h>

#include <memory>
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

// A name that is free in the folder for temporary files of this test program.
std::string FreeTempName(const std::string &stem);

// A file that is held open for as long as the object lives, shared with nobody, or with others that read.
class LockedFile {
public:
    explicit LockedFile(const std::string &path, bool shareReading = false);
    bool Held() const { return mFile.get() != INVALID_HANDLE_VALUE; }

private:
    std::shared_ptr<void> mFile;
};

// Shows this 32-bit test program the folders of 64-bit Windows as they are, for as long as the object lives.
class RedirectionOff {
public:
    RedirectionOff();

private:
    std::shared_ptr<void> mFormer;
};
