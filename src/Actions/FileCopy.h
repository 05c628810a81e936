// What the copying commands do beside the central object. Paths are script text in the ANSI code page;
// failures are told by the last error.
#pragma once

#include <windows.h>

#include <string>

// Makes a read-only or hidden file or directory a normal one. Answers false for an empty path (error 87) and
// when the attributes cannot be read or set; sets the last error to 0 otherwise.
bool ClearFileAttributes(const std::string &path);
