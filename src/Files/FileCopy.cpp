#include "Files/FileCopy.h"

#include <windows.h>

#include "Common/HeldFiles.h"
#include "Common/importWin32API.h"
#include "Common/Paths.h"
#include "Common/Redirection.h"
#include "Common/Trace.h"
#include "Files/DelayedMove.h"
#include "Files/Directories.h"
#include "Files/FileDelete.h"
#include "Files/VersionCompare.h"
#include "Files/WholeCopy.h"

namespace {

constexpr int kNeighbours = 256; // the names that differ from the target's in its last byte
constexpr DWORD kPauseBetweenRoundsMs = 500;
constexpr DWORD kRemindAfterMs = 60000;

// Copies `source` beside `target`, which is in use, and answers the name that it found free: the target's name
// with its last byte counted up. No number of tries is too many and any failure counts as a name in use: a
// package whose file is in use has to get its new file into place, and the waiting ends when there is room. After a
// full round of names the trace tells why nothing moves, and again every minute.
std::string ParkBeside(CWholeCopy &copy, const std::string &target)
{
    std::string temporary = target; // the first try fails, as this name is the one in use
    bool told = false;
    DWORD toldAt = 0;
    for (int tries = 1; !(copy.Stands() ? copy.TakeName(temporary) : copy.Write(temporary)); ++tries) {
        if (tries == kNeighbours) {
            const int error = static_cast<int>(GetLastError());
            if (!told || GetTickCount() - toldAt >= kRemindAfterMs) {
                trace(7, ", No place beside %s, waiting for one %i\n", target.c_str(), error);
                told = true;
                toldAt = GetTickCount();
            }
            tries = 0;
            Sleep(kPauseBetweenRoundsMs);
        }
        // Wraps at 256. A NUL on the way ends the name one byte early, which is as good a name as others.
        temporary.back() = static_cast<char>(static_cast<unsigned char>(temporary.back()) + 1);
    }
    return temporary;
}

// Puts the copy in the place of `target`, which is there. Answers whether the way is settled by that: not when the
// target is in use. The old file stands under its name until the new one takes it over, unless there is no room for
// both, or another reason for which the copy cannot stand beside it.
bool Replace(CWholeCopy &copy, const std::string &target, bool &copied_O)
{
    copied_O = ClearFileAttributes(target) && copy.Replace(target);
    if (copied_O) {
        return true;
    }
    // Deleting a file that others hold and share would leave its name without a file until they let go of it.
    if (IsHeld(target) || !DeleteOrFail(target)) {
        return false;
    }
    copied_O = copy.PutInto(target);
    return true;
}

bool SetupCopyOemInf(const std::string &source)
{
    CSetupApi setupApi(false); // a Windows without the entry is no reason for a word; the copy takes its place
    const auto copyOemInf = setupApi.SetupCopyOEMInfA.Get();
    if (copyOemInf == nullptr) {
        return false;
    }
    const DWORD errorBefore = GetLastError();
    const bool copied = copyOemInf(source.c_str(), nullptr, 0, 0, nullptr, 0, nullptr, nullptr) != FALSE;
    const DWORD error = copied ? errorBefore : GetLastError(); // a refusal tells its own reason
    trace(7, ", SetupCopyOEMInf %s, %s %i\n", source.c_str(), YesNo(copied), static_cast<int>(error));
    return copied;
}

} // namespace

bool CopyFileCore(const std::string &source, const std::string &target, bool disableRedirect, bool &rebootRequired_I_O,
                  bool likelyNew)
{
    const STDisableRedirect redirect(disableRedirect);
    trace(7, "Source %s, Destination %s%s\n", source.c_str(), target.c_str(), redirect.TraceText());
    if (!PathExists(source)) {
        trace(7, ", Source missing\n");
        return false;
    }
    // To look for a name that is not there makes some file systems read the whole directory, so a copy that is
    // going to be the first of its name does without; should something stand there, the copy fails and we look.
    CWholeCopy copy(source, target);
    bool copied = likelyNew && copy.TakeName(target);
    DWORD errorBefore = ERROR_SUCCESS;
    if (copied || !PathExists(target)) {
        if (!copied) {
            if (!target.empty()) {
                CreateDirTree(DirectoryPart(target));
            }
            errorBefore = GetLastError();
            copied = copy.PutInto(target);
        }
        trace(7, ", New, Copied %s %i\n", YesNo(copied), static_cast<int>(errorBefore));
        ClearFileAttributes(target);
        return copied;
    }
    if (Replace(copy, target, copied)) {
        trace(7, ", Deleted, Copyed %s %i\n", YesNo(copied), 0); // the error that a deletion leaves
        ClearFileAttributes(target);
        return copied;
    }
    rebootRequired_I_O = true;
    const std::string temporary = ParkBeside(copy, target);
    ClearFileAttributes(temporary);
    DeleteAtNextBoot(target); // first: the move does not replace
    errorBefore = GetLastError();
    const bool moved = MoveAtNextBoot(temporary, target);
    trace(7, ", Reboot %s, Move %s %i\n", temporary.c_str(), YesNo(moved), static_cast<int>(errorBefore));
    return false;
}

bool CopyIfNewer(const std::string &source, const std::string &target, bool disableRedirect, bool &rebootRequired_I_O)
{
    const STDisableRedirect redirect(disableRedirect);
    trace(7, "File1 %s, File2 %s\n", source.c_str(), target.c_str());
    // The comparison leaves redirection on; the copy switches it off anew.
    if (!IsFileNewer(target, source)) {
        trace(7, ", Not Newer\n");
        return false;
    }
    trace(7, ", Copying\n");
    CopyFileCore(source, target, disableRedirect, rebootRequired_I_O);
    return true;
}

bool CopyOemInf(const std::string &source, bool &rebootRequired_I_O)
{
    trace(7, "Source Inf %s\n", source.c_str());
    if (!PathExists(source)) {
        trace(7, ", Source Inf missing\n");
        return false;
    }
    if (!SetupCopyOemInf(source)) {
        char windows[MAX_PATH] = "";
        GetWindowsDirectoryA(windows, sizeof(windows));
        const std::string target = JoinPath(JoinPath(windows, "\\inf\\"), FindFileName(source));
        CopyFileCore(source, target, true, rebootRequired_I_O);
    }
    return true;
}

bool ClearFileAttributes(const std::string &path)
{
    if (path.empty()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return false;
    }
    constexpr DWORD kUnwanted = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN;
    if ((attributes & kUnwanted) != 0 && !SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL)) {
        return false;
    }
    SetLastError(ERROR_SUCCESS);
    return true;
}
