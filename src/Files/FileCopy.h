// The copying commands. Paths are script text in the ANSI code page; failures are told by the trace and the last error.
// `rebootRequired_I_O` is set when a file waits for the next start of Windows, and is never cleared.
#pragma once

#include <string>

// Puts a copy of `source` at `target`, replacing what stands there, as the 64-bit system sees the two with
// `disableRedirect`. Where the target is in use the copy is parked beside it and changes its name at the next start of
// Windows. Copied files are neither read-only nor hidden. Answers whether the copy stands at the target now.
// `likelyNew`: nothing is expected at the target, whose directory exists; saves looking.
bool CopyFileCore(const std::string &source, const std::string &target, bool disableRedirect, bool &rebootRequired_I_O,
                  bool likelyNew = false);

// Copies `source` when it is newer than `target`; answers whether it was. The comparison always sees the
// files as the 64-bit system does, the copy only with `disableRedirect`: they may be two files.
bool CopyIfNewer(const std::string &source, const std::string &target, bool disableRedirect, bool &rebootRequired_I_O);

// Hands an INF file to Windows (SetupCopyOEMInfA, Windows 2000), which gives it a name of its own, or puts
// it into the folder of INF files under its present name. Answers whether there was a file to hand over.
bool CopyOemInf(const std::string &source, bool &rebootRequired_I_O);

// Copies what is in the directory `source` into `target`, subdirectories included; answers whether there was a source.
bool CopyDirectory(const std::string &source, const std::string &target, bool &rebootRequired_I_O);

// Makes a read-only or hidden file or directory a normal one. Answers false for an empty path (error 87) and
// when the attributes cannot be read or set; sets the last error to 0 otherwise.
bool ClearFileAttributes(const std::string &path);
