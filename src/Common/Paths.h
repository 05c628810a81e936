// Narrow paths as the shell library cuts and tests them. The library is bound at the first use of one of
// these functions. Paths of any length are taken; what Windows makes of a long one is its own matter.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Whether something stands at `path`, a file or a directory: what PathFileExistsA documents, asked of the kernel
// itself, because every run tests for files and the shell library costs as much as the start of the program. Sets the
// last error when there is nothing. A drive without a medium shows no box: the program asks for that at its start.
bool PathExists(const std::string &path);

// Whether `path` is the root of a drive or share, such as "C:\" or "\\server\share" (PathIsRootA).
bool IsRootPath(const std::string &path);

// The last component of `path` (PathFindFileNameA); the path itself when it has no separator.
std::string FindFileName(const std::string &path);

// The extension with its point (PathFindExtensionA), empty when there is none.
std::string FindExtension(const std::string &path);

// `path` less its last component (PathRemoveFileSpecA); empty for an empty path and for a bare name.
std::string DirectoryPart(const std::string &path);

// Two parts of a path put together. One back-slash stands between them, whether the parts brought it or not; an empty
// left part gets none.
std::string JoinPath(const std::string &left, const std::string &right);

// Positions of the back-slashes from left to right. The second byte of a double-byte character of the code page
// (a Windows number, 0 for that of the system) may have the same value and does not count.
std::vector<size_t> FindBackslashes(const std::string &path, unsigned codePage = 0);

// The folder for temporary files (GetTempPathA), with its closing back-slash; empty when the platform does not tell.
std::string TempFolder();

// `path` hung on the working directory where it is relative (GetFullPathNameA); empty with the last error set when the
// platform refuses it.
std::string FullPath(const std::string &path);
