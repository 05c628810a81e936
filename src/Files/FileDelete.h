// The deleting commands. Paths are script text in the ANSI code page; failures are told by the last error.
#pragma once

#include <string>

// Deletes the file at `path` for good, read-only or hidden ones too. Answers true when nothing stands there
// any more, or never did, with the last error 0; error 80 when something stands there in spite of a success.
bool DeleteOrFail(const std::string &path);

// The same, and tells in found_O whether there was something to delete.
bool DeleteOrFail(const std::string &path, bool &found_O);

// Has Windows delete `path` at its next start, and traces it. Answers whether there was a file. The run does
// not come to need a restart by it: the script that asks for this decides.
bool DeleteAtReboot(const std::string &path);

// Deletes a file, now or, when it is in use, at the next start of Windows, for which rebootRequired_I_O is set then.
// Answers true only when it was there and is gone.
bool DeleteFileStep(const std::string &path, bool disableRedirect, bool &rebootRequired_I_O);

// Deletes the files and directories in `path`, which itself stays; what cannot be deleted stays, too, and so do the
// program under its name Remove.exe and, during an uninstallation, the scripts. Answers whether the walk came to its
// end; false with error 87 for an empty path, with error 5 for the root of a drive or share, which is left alone, and
// with error 1113 when there was an entry without a name that the ANSI code page can hold.
bool EmptyDirectory(const std::string &path, bool uninstall);
