// Copying of whole directories. The listing is that of this process, the files are those that the 64-bit
// system sees: inside a redirected folder the two differ.
#include <windows.h>

#include "Actions/Directories.h"
#include "Actions/FileCopy.h"
#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Common/Trace.h"
#include "Installer/CWinInstallMain.h"

// Copies what is in `source` into `target`, subdirectories included; answers whether there was a source.
bool CWinInstallMain::CopyDirectory(const std::string &source, const std::string &target)
{
    trace(7, "Source %s, Destination %s\n", source.c_str(), target.c_str());
    if (!PathExists(source)) {
        trace(7, ", Source missing\n");
        return false;
    }
    const DWORD errorBefore = GetLastError();
    const bool copied = CopyDirectoryTree(source, target);
    trace(7, ", DirCopied %s %i\n", YesNo(copied), static_cast<int>(errorBefore));
    ClearFileAttributes(target);
    return true;
}

// Answers whether the whole of `source` was listed; the files that could not be copied stand in the trace alone.
// A directory that cannot be listed leaves nothing at `target`.
bool CWinInstallMain::CopyDirectoryTree(const std::string &source, const std::string &target)
{
    WIN32_FIND_DATAA entry;
    CFindHandle search(FindFirstFileA(JoinPath(source, "\\*.*").c_str(), &entry));
    if (!search) {
        return false;
    }
    const bool targetIsNew = !PathExists(target);
    CreateDirTree(target);
    do {
        const std::string name = entry.cFileName;
        if (name == "." || name == "..") {
            continue;
        }
        const std::string from = JoinPath(source, name);
        const std::string to = JoinPath(target, name);
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            CopyFileCore(from, to, true, targetIsNew);
            continue;
        }
        const DWORD errorBefore = GetLastError();
        const bool copied = CopyDirectoryTree(from, to);
        trace(7, "Directory '%s', Copied %s => %i\n", from.c_str(), YesNo(copied), static_cast<int>(errorBefore));
    } while (FindNextFileA(search.Get(), &entry) != FALSE);
    const DWORD error = GetLastError();
    search.Reset();
    SetLastError(error == ERROR_NO_MORE_FILES ? ERROR_SUCCESS : error);
    return error == ERROR_NO_MORE_FILES;
}
