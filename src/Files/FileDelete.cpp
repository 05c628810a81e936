#include "Files/FileDelete.h"

#include <windows.h>

#include "Files/DelayedMove.h"
#include "Files/FileCopy.h"
#include "Common/Redirection.h"
#include "Common/Paths.h"
#include "Common/Trace.h"

bool DeleteOrFail(const std::string &path, bool &found_O)
{
    found_O = PathExists(path);
    if (!found_O) {
        SetLastError(ERROR_SUCCESS);
        return true;
    }
    if (!ClearFileAttributes(path)) {
        return false;
    }
    if (PathExists(path) && !DeleteFileA(path.c_str())) {
        const DWORD error = GetLastError();
        // Gone meanwhile is as good as deleted.
        if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND && error != ERROR_BAD_PATHNAME) {
            return false;
        }
    }
    if (PathExists(path)) {
        SetLastError(ERROR_FILE_EXISTS);
        return false;
    }
    SetLastError(ERROR_SUCCESS);
    return true;
}

bool DeleteOrFail(const std::string &path)
{
    bool found = false;
    return DeleteOrFail(path, found);
}

bool DeleteAtReboot(const std::string &path)
{
    trace(7, "File %s\n", path.c_str());
    if (!PathExists(path)) {
        trace(7, ", Missing\n");
        return false;
    }
    const DWORD errorBefore = GetLastError();
    const bool recorded = DeleteAtNextBoot(path);
    trace(7, ", Reboot %s %i\n", YesNo(recorded), static_cast<int>(errorBefore));
    return true;
}

bool DeleteFileStep(const std::string &path, bool disableRedirect, bool &rebootRequired_I_O)
{
    const STDisableRedirect redirect(disableRedirect);
    trace(7, "File %s%s\n", path.c_str(), redirect.TraceText());
    if (!PathExists(path)) {
        trace(7, ", Missing\n");
        return false;
    }
    const DWORD errorBefore = GetLastError();
    if (DeleteOrFail(path)) {
        trace(7, ", Deleted %s %i\n", YesNo(true), static_cast<int>(errorBefore));
        return true;
    }
    rebootRequired_I_O = true;
    const DWORD errorBeforeMove = GetLastError();
    const bool recorded = DeleteAtNextBoot(path);
    trace(7, ", Reboot %s %i\n", YesNo(recorded), static_cast<int>(errorBeforeMove));
    return false;
}
