// Taking away what is in a directory.
#include <windows.h>

#include <memory>

#include "Common/Paths.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Files/Directories.h"
#include "Files/FileDelete.h"
#include "Files/FolderListing.h"

namespace {

// Whether the walk leaves the entry where it is. The uninstaller runs from the folder that it empties.
bool IsSpared(const std::string &name, bool uninstall)
{
    return (uninstall && EqualsNoCase(FindExtension(name), ".dat")) || EqualsNoCase(name, "remove.exe");
}

// Whether a listed folder stands for another one. Reparse points that Microsoft hands out without the surrogate bit,
// such as those of files kept elsewhere, are folders like others (reparse tags, winnt.h).
bool IsLink(const ListedEntry &entry)
{
    constexpr DWORD kMicrosoft = 0x80000000;
    constexpr DWORD kSurrogate = 0x20000000;
    return (entry.mAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (entry.mReparseTag & (kMicrosoft | kSurrogate)) != kMicrosoft;
}

// Deletes the file that a listing has just shown. A name that leads to nothing does not count as deleted: a
// name of characters that the code page lacks never leads to its file, and a deletion that waits for another
// program's handle stays in the listing. Taken for successes these would have the walk start over for ever.
bool DeleteListed(const std::string &path)
{
    bool found = false;
    return DeleteOrFail(path, found) && found;
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

// After each entry that goes by its long name the walk starts over, so that it never depends on a listing that outlives
// a deletion.
bool EmptyTree(const std::string &path, bool uninstall)
{
    bool whole = true;
    auto listing = std::make_unique<CFolderListing>(path);
    while (listing->Next()) {
        const ListedEntry &entry = listing->Entry();
        if (IsSpared(entry.mName, uninstall)) {
            continue;
        }
        const std::string longPath = JoinPath(path, entry.mName);
        if (entry.UsableName().empty()) {
            trace(7, "Entry %s, no name that can be used\n", longPath.c_str());
            whole = false;
            continue;
        }
        // A name of eight and three characters is its own short name; Windows leaves the field empty then.
        const std::string shortPath = entry.mShort.empty() ? longPath : JoinPath(path, entry.mShort);
        bool startOver = false;
        if (entry.IsFolder()) {
            // A link to a folder goes as what it is: what it leads to is not in the named directory.
            if (!IsLink(entry)) {
                const DWORD errorBefore = GetLastError();
                const std::string folder = JoinPath(path, entry.UsableName());
                const bool emptied = EmptyTree(folder, uninstall);
                trace(7, "Directory %s, Emptied %s %i\n", folder.c_str(), YesNo(emptied),
                      static_cast<int>(errorBefore));
            }
            startOver = RemoveByEitherName(longPath, shortPath);
        } else {
            startOver = DeleteByEitherName(longPath, shortPath);
        }
        if (startOver) {
            listing.reset(); // before the next one, so that nothing of the folder is held
            listing = std::make_unique<CFolderListing>(path);
        }
    }
    const DWORD error = GetLastError();
    listing.reset();
    SetLastError(error != ERROR_NO_MORE_FILES ? error : whole ? ERROR_SUCCESS : ERROR_NO_UNICODE_TRANSLATION);
    return error == ERROR_NO_MORE_FILES && whole;
}

} // namespace

bool EmptyDirectory(const std::string &path, bool uninstall)
{
    if (path.empty()) {
        SetLastError(ERROR_INVALID_PARAMETER); // the pattern would list the root or the working directory
        return false;
    }
    if (LeadsToRoot(path)) {
        trace(0, "Directory %s is a whole drive or share and is not emptied\n", path.c_str());
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    return EmptyTree(path, uninstall);
}
