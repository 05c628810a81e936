// The script's commands on files and directories. All paths are expanded; none of them has a result that a
// script can test.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/Redirection.h"
#include "Common/Trace.h"
#include "Files/CustomPath.h"
#include "Files/Directories.h"
#include "Files/FileCopy.h"
#include "Files/FileDelete.h"
#include "Script/CRunState.h"
#include "Script/Step.h"

namespace {

// The plain forms work on the files that the 64-bit system sees, the Redir forms on what a 32-bit process sees.
constexpr bool kDisableRedirect = true;
constexpr bool kKeepRedirect = false;

void CopyStep(CStep &step, bool disableRedirect)
{
    const std::string source = step.Expanded();
    const std::string target = step.Expanded();
    CopyFileCore(source, target, disableRedirect, step.Main().mRebootRequired);
}

void CopyCustomStep(CStep &step, bool disableRedirect)
{
    const std::string source = CustomPath(step.Expanded(), step.Main().mProductName);
    const std::string target = step.Expanded();
    CopyFileCore(source, target, disableRedirect, step.Main().mRebootRequired);
}

void CopyIfNewerStep(CStep &step, bool disableRedirect)
{
    const std::string source = step.Expanded();
    const std::string target = step.Expanded();
    CopyIfNewer(source, target, disableRedirect, step.Main().mRebootRequired);
}

void DeleteDirStep(CStep &step, bool disableRedirect)
{
    const std::string directory = step.Expanded();
    const STDisableRedirect redirect(disableRedirect);
    const DWORD errorBefore = GetLastError();
    const bool removed = RemoveDirectoryForced(directory);
    trace(7, "Directory %s, Removed %s %s%i\n", directory.c_str(), YesNo(removed), redirect.Disabled() ? "64 " : "",
          static_cast<int>(errorBefore));
}

} // namespace

void StepCopyFileIfNewerRedir(CStep &step)
{
    CopyIfNewerStep(step, kKeepRedirect);
}

void StepCopyFileIfNewer(CStep &step)
{
    CopyIfNewerStep(step, kDisableRedirect);
}

void StepCopyFile(CStep &step)
{
    CopyStep(step, kDisableRedirect);
}

void StepCopyFileRedir(CStep &step)
{
    CopyStep(step, kKeepRedirect);
}

void StepCopyFileCustom(CStep &step)
{
    CopyCustomStep(step, kDisableRedirect);
}

void StepCopyFileCustomRedir(CStep &step)
{
    CopyCustomStep(step, kKeepRedirect);
}

void StepCopyOEMINF(CStep &step)
{
    CopyOemInf(step.Expanded(), step.Main().mRebootRequired);
}

void StepCopyDir(CStep &step)
{
    const std::string source = step.Expanded();
    const std::string target = step.Expanded();
    CopyDirectory(source, target, step.Main().mRebootRequired);
}

void StepCreateDir(CStep &step)
{
    const std::string directory = step.Expanded();
    const DWORD errorBefore = GetLastError();
    const bool created = CreateDirTree(directory) != FALSE;
    trace(7, "Directory %s, Created %s %i\n", directory.c_str(), YesNo(created), static_cast<int>(errorBefore));
}

void StepDeleteDir(CStep &step)
{
    DeleteDirStep(step, kDisableRedirect);
}

void StepDeleteDirRedir(CStep &step)
{
    DeleteDirStep(step, kKeepRedirect);
}

void StepDeleteDirContents(CStep &step)
{
    const std::string directory = step.Expanded();
    const STDisableRedirect redirect(kDisableRedirect);
    const DWORD errorBefore = GetLastError();
    const bool emptied = EmptyDirectory(directory, step.Main().mUninstall);
    trace(7, "Directory %s, Emptied %s %i\n", directory.c_str(), YesNo(emptied), static_cast<int>(errorBefore));
}

void StepDeleteFile(CStep &step)
{
    DeleteFileStep(step.Expanded(), kDisableRedirect, step.Main().mRebootRequired);
}

void StepDeleteFileRedir(CStep &step)
{
    DeleteFileStep(step.Expanded(), kKeepRedirect, step.Main().mRebootRequired);
}

void StepDeleteFileCustom(CStep &step)
{
    const std::string path = CustomPath(step.Expanded(), step.Main().mProductName);
    DeleteFileStep(path, kKeepRedirect, step.Main().mRebootRequired);
}

void StepDeleteFileReboot(CStep &step)
{
    DeleteAtReboot(step.Expanded());
}
