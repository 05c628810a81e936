// Taking away what is in a directory.
#include <windows.h>

#include "Actions/Directories.h"
#include "Actions/FileDelete.h"
#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Installer/CWinInstallMain.h"

namespace {

// Whether the walk leaves the entry where it is. The uninstaller runs from the folder that it empties.
bool IsSpared(const std::string &name, bool uninstall)
{
    return (uninstall && EqualsNoCase(FindExtension(name), ".dat")) || EqualsNoCase(name, "remove.exe") ||
           name == "." || name == "..";
}

// Whether a listed folder stands for another one. Reparse points that Microsoft hands out without the surrogate bit,
// such as those of files kept elsewhere, are folders like others (reparse tags, winnt.h).
bool IsLink(const WIN32_FIND_DATAA &entry)
{
    constexpr DWORD kMicrosoft = 0x80000000;
    constexpr DWORD kSurrogate = 0x20000000;
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (entry.dwReserved0 & (kMicrosoft | kSurrogate)) != kMicrosoft;
}

// Deletes the file that a listing has just shown. A name that leads to nothing does not count as deleted: a
// name of characters that the code page lacks never leads to its file, and a deletion that waits for another
// program's handle stays in the listing. Taken for successes these would have the walk start over for ever.
bool DeleteListed(const std::string &path)
{
    bool found = false;
    return DeleteOrFail(path, &found) && found;
}

bool DeleteByEitherName(const std::string &longPath, const std::string &shortPath)
{
    DWORD errorBefore = GetLastError();
    if (DeleteListed(longPath)) {
        trace(7, "Long File %s, Deleted Yes %i\n", longPath.c_str(), static_cast<int>(errorBefore));
        return true;
    }
    errorBefore = GetLastError();
    const bool deleted = DeleteListed(shortPath);
    trace(7, "Short File %s, Deleted %s %i\n", shortPath.c_str(), YesNo(deleted), static_cast<int>(errorBefore));
    return false;
}

bool RemoveByEitherName(const std::string &longPath, const std::string &shortPath)
{
    DWORD errorBefore = GetLastError();
    if (RemoveDirectoryForced(longPath)) {
        trace(7, "Long Directory %s, Removed Yes %i\n", longPath.c_str(), static_cast<int>(errorBefore));
        return true;
    }
    errorBefore = GetLastError();
    const bool removed = RemoveDirectoryForced(shortPath);
    trace(7, "Short Directory %s, Removed %s %i\n", shortPath.c_str(), YesNo(removed), static_cast<int>(errorBefore));
    return false;
}

} // namespace

// Deletes the files and directories in `path`, which itself stays; what cannot be deleted stays, too. Answers
// whether the walk came to its end. After each entry that goes by its long name the walk starts over, so that it
// never depends on a listing that outlives a deletion.
bool CWinInstallMain::EmptyDirectory(const std::string &path)
{
    if (path.empty()) {
        SetLastError(ERROR_INVALID_PARAMETER); // the pattern would list the root or the working directory
        return false;
    }
    const std::string pattern = JoinPath(path, "\\*.*");
    WIN32_FIND_DATAA entry;
    CFindHandle search(FindFirstFileA(pattern.c_str(), &entry));
    bool more = static_cast<bool>(search);
    while (more) {
        bool startOver = false;
        if (!IsSpared(entry.cFileName, mUninstall)) {
            const std::string longPath = JoinPath(path, entry.cFileName);
            // A name of eight and three characters is its own short name; Windows leaves the field empty then.
            const std::string shortPath =
                entry.cAlternateFileName[0] != '\0' ? JoinPath(path, entry.cAlternateFileName) : longPath;
            if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
                // A link to a folder goes as what it is: what it leads to is not in the named directory.
                if (!IsLink(entry)) {
                    const DWORD errorBefore = GetLastError();
                    const bool emptied = EmptyDirectory(longPath);
                    trace(7, "Directory %s, Emptied %s %i\n", longPath.c_str(), YesNo(emptied),
                          static_cast<int>(errorBefore));
                }
                startOver = RemoveByEitherName(longPath, shortPath);
            } else {
                startOver = DeleteByEitherName(longPath, shortPath);
            }
        }
        if (startOver) {
            search.Reset();
            search.Reset(FindFirstFileA(pattern.c_str(), &entry));
            more = static_cast<bool>(search);
        } else {
            more = FindNextFileA(search.Get(), &entry) != FALSE;
        }
    }
    const DWORD error = GetLastError();
    search.Reset();
    SetLastError(error == ERROR_NO_MORE_FILES ? ERROR_SUCCESS : error);
    return error == ERROR_NO_MORE_FILES;
}
