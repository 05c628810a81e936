// Making and removing single directories. Paths are script text in the ANSI code page; failures are told by the last
// error.
#pragma once

#include <windows.h>

#include <string>

// Makes `path` and every directory above it that is missing. Success sets the last error to 0 where nothing
// was to be made. A path without a back-slash is never made; one that ends in a back-slash is made and
// answered with FALSE, because its last, empty component exists by then.
BOOL CreateDirTree(const std::string &path);

// Removes an empty directory, read-only or hidden ones too. Answers what RemoveDirectoryA answers.
bool RemoveDirectoryForced(const std::string &path);

// Whether `path` is, or leads by way of dots and the working directory to, the root of a drive or a share.
bool LeadsToRoot(const std::string &path);
