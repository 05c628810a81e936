#include "Actions/FileCopy.h"

#include "Actions/DelayedMove.h"
#include "Actions/Directories.h"
#include "Actions/FileDelete.h"
#include "Actions/Redirection.h"
#include "Actions/VersionCompare.h"
#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/Paths.h"
#include "Common/Trace.h"
#include "Installer/CWinInstallMain.h"

namespace {

// Never replaces: what stood at the target has to be gone by now.
bool CopyNew(const std::string &source, const std::string &target)
{
    return CopyFileA(source.c_str(), target.c_str(), TRUE) != FALSE;
}

// Copies `source` beside `target`, which is in use, and answers the name that it found free: the target's name
// with its last byte counted up. No number of tries is too many and any failure counts as a name in use: a
// package whose file is in use has to get its new file into place, and the waiting ends when there is room.
std::string ParkBeside(const std::string &source, const std::string &target)
{
    std::string temporary = target; // the first try fails, as this name is the one in use
    while (!CopyNew(source, temporary)) {
        // Wraps at 256. A NUL on the way ends the name one byte early, which is as good a name as others.
        temporary.back() = static_cast<char>(static_cast<unsigned char>(temporary.back()) + 1);
    }
    return temporary;
}

bool SetupCopyOemInf(const std::string &source)
{
    const CLibrary library(LoadSystemLibrary("setupapi.dll"));
    if (!library) {
        return false;
    }
    const auto copyOemInf = BindEntry<decltype(&SetupCopyOEMInfA)>(library.Get(), "SetupCopyOEMInfA");
    if (copyOemInf == nullptr) {
        return false;
    }
    const DWORD errorBefore = GetLastError();
    const bool copied = copyOemInf(source.c_str(), nullptr, 0, 0, nullptr, 0, nullptr, nullptr) != FALSE;
    trace(7, ", SetupCopyOEMInf %s, %s %i\n", source.c_str(), YesNo(copied), static_cast<int>(errorBefore));
    return copied;
}

} // namespace

// Puts a copy of `source` at `target`, replacing what stands there. Where that is in use the copy is parked
// beside it, changes its name at the next start of Windows, and the run asks for that start.
// Copied files are neither read-only nor hidden.
void CWinInstallMain::CopyFileCore(const std::string &source, const std::string &target, bool disableRedirect,
                                   bool likelyNew)
{
    const STDisableRedirect redirect(disableRedirect);
    trace(7, "Source %s, Destination %s%s\n", source.c_str(), target.c_str(), redirect.TraceText());
    if (!PathExists(source)) {
        trace(7, ", Source missing\n");
        return;
    }
    // To look for a name that is not there makes some file systems read the whole directory, so a copy that is
    // going to be the first of its name does without; should something stand there, the copy fails and we look.
    bool copied = likelyNew && CopyNew(source, target);
    DWORD errorBefore = ERROR_SUCCESS;
    if (copied || !PathExists(target)) {
        if (!copied) {
            if (!target.empty()) {
                CreateDirTree(DirectoryPart(target));
            }
            errorBefore = GetLastError();
            copied = CopyNew(source, target);
        }
        trace(7, ", New, Copied %s %i\n", YesNo(copied), static_cast<int>(errorBefore));
        ClearFileAttributes(target);
        return;
    }
    if (DeleteOrFail(target)) {
        errorBefore = GetLastError();
        copied = CopyNew(source, target);
        trace(7, ", Deleted, Copyed %s %i\n", YesNo(copied), static_cast<int>(errorBefore));
        ClearFileAttributes(target);
        return;
    }
    mRebootRequired = true;
    const std::string temporary = ParkBeside(source, target);
    ClearFileAttributes(temporary);
    DeleteAtNextBoot(target); // first: the move does not replace
    errorBefore = GetLastError();
    const bool moved = MoveAtNextBoot(temporary, target);
    trace(7, ", Reboot %s, Move %s %i\n", temporary.c_str(), YesNo(moved), static_cast<int>(errorBefore));
}

// Copies `source` when it is newer than `target`; answers whether it was. The comparison always sees the
// files as the 64-bit system does, the copy only with `disableRedirect`: they may be two files.
bool CWinInstallMain::CopyIfNewer(const std::string &source, const std::string &target, bool disableRedirect)
{
    const STDisableRedirect redirect(disableRedirect);
    trace(7, "File1 %s, File2 %s\n", source.c_str(), target.c_str());
    // The comparison leaves redirection on; the copy switches it off anew.
    if (!IsFileNewer(target, source)) {
        trace(7, ", Not Newer\n");
        return false;
    }
    trace(7, ", Copying\n");
    CopyFileCore(source, target, disableRedirect);
    return true;
}

// Hands an INF file to Windows (SetupCopyOEMInfA, Windows 2000), which gives it a name of its own, or puts
// it into the folder of INF files under its present name. Answers whether there was a file to hand over.
bool CWinInstallMain::CopyOemInf(const std::string &source)
{
    trace(7, "Source Inf %s\n", source.c_str());
    if (!PathExists(source)) {
        trace(7, ", Source Inf missing\n");
        return false;
    }
    if (!SetupCopyOemInf(source)) {
        char windows[MAX_PATH] = "";
        GetWindowsDirectoryA(windows, sizeof(windows));
        CopyFileCore(source, JoinPath(JoinPath(windows, "\\inf\\"), FindFileName(source)), true);
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
