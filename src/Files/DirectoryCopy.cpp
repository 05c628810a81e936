// Copying of whole directories. The listing is that of this process, the files are those that the 64-bit
// system sees: inside a redirected folder the two differ.
#include <windows.h>

#include "Common/Paths.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Files/Directories.h"
#include "Files/FileCopy.h"
#include "Files/FolderListing.h"

namespace {

class CTreeCopy {
public:
    CTreeCopy(const std::string &target, bool &rebootRequired_I_O)
        : mTarget(FullPath(JoinPath(target, "."))), mRebootRequired(rebootRequired_I_O)
    {
    }

    // Answers whether the whole of `source` was listed; the files that could not be copied stand in the trace alone.
    // A directory that cannot be listed leaves nothing at `target`.
    bool Copy(const std::string &source, const std::string &target)
    {
        CFolderListing listing(source);
        if (!listing.IsOpen()) {
            return false;
        }
        const bool targetIsNew = !PathExists(target);
        CreateDirTree(target);
        bool whole = true;
        while (listing.Next()) {
            const ListedEntry &entry = listing.Entry();
            const std::string from = JoinPath(source, entry.UsableName());
            const std::string to = JoinPath(target, entry.UsableName());
            if (entry.UsableName().empty()) {
                trace(7, "Source %s, no name that can be used\n", JoinPath(source, entry.mName).c_str());
                whole = false;
            } else if (!entry.IsFolder()) {
                CopyFileCore(from, to, true, mRebootRequired, targetIsNew);
            } else if (EqualsNoCase(FullPath(from), mTarget)) {
                // A folder that is copied into one below itself would be found there again, and again below that.
                trace(7, "Directory '%s' is where the copy goes\n", from.c_str());
            } else {
                const DWORD errorBefore = GetLastError();
                const bool copied = Copy(from, to);
                trace(7, "Directory '%s', Copied %s => %i\n", from.c_str(), YesNo(copied),
                      static_cast<int>(errorBefore));
            }
        }
        const DWORD error = GetLastError();
        SetLastError(error != ERROR_NO_MORE_FILES ? error : whole ? ERROR_SUCCESS : ERROR_NO_UNICODE_TRANSLATION);
        return error == ERROR_NO_MORE_FILES && whole;
    }

private:
    std::string mTarget;
    bool &mRebootRequired;
};

} // namespace

bool CopyDirectory(const std::string &source, const std::string &target, bool &rebootRequired_I_O)
{
    trace(7, "Source %s, Destination %s\n", source.c_str(), target.c_str());
    if (!PathExists(source)) {
        trace(7, ", Source missing\n");
        return false;
    }
    const DWORD errorBefore = GetLastError();
    const bool copied = CTreeCopy(target, rebootRequired_I_O).Copy(source, target);
    trace(7, ", DirCopied %s %i\n", YesNo(copied), static_cast<int>(errorBefore));
    ClearFileAttributes(target);
    return true;
}
