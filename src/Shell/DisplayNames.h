// Localized names that the shell shows in place of those of files and folders. Paths are in the ANSI code page; the
// last error is the low half of the shell's result, 0x4001 where the shell has no such names (before Windows Vista).
#pragma once

#include <string>

// Has the shell show a string of a resource library for a file or folder.
bool SetDisplayName(const std::string &path, const std::string &dll, int stringNumber);

// Takes the shown name of one file or folder away.
bool RemoveDisplayName(const std::string &path);

// Takes the shown name of a file or folder away; for a path without a part above it, such as the root of a drive, those
// of everything directly below it as well. Answers for the path itself.
bool RemoveDisplayNameTree(const std::string &path);
