// The script's commands on files and directories. All paths are expanded; none of them has a result that a
// script can test.
#include <windows.h>

#include "Actions/CustomPath.h"
#include "Actions/Directories.h"
#include "Actions/FileCopy.h"
#include "Actions/FileDelete.h"
#include "Actions/Redirection.h"
#include "Common/Trace.h"
#include "Installer/Commands.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/Step.h"

namespace {

// The plain forms work on the files that the 64-bit system sees, the Redir forms on what a 32-bit process sees.
constexpr bool kDisableRedirect = true;
constexpr bool kKeepRedirect = false;

void CopyStep(CStep &step, bool disableRedirect)
{
    const std::string source = step.Expanded();
    const std::string target = step.Expanded();
    step.Main().CopyFileCore(source, target, disableRedirect);
}

void CopyCustomStep(CStep &step, bool disableRedirect)
{
    const std::string source = CustomPath(step.Main(), step.Expanded());
    const std::string target = step.Expanded();
    step.Main().CopyFileCore(source, target, disableRedirect);
}

void CopyIfNewerStep(CStep &step, bool disableRedirect)
{
    const std::string source = step.Expanded();
    const std::string target = step.Expanded();
    step.Main().CopyIfNewer(source, target, disableRedirect);
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
    step.Main().CopyOemInf(step.Expanded());
}

void StepCopyDir(CStep &step)
{
    const std::string source = step.Expanded();
    const std::string target = step.Expanded();
    step.Main().CopyDirectory(source, target);
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
    const bool emptied = step.Main().EmptyDirectory(directory);
    trace(7, "Directory %s, Emptied %s %i\n", directory.c_str(), YesNo(emptied), static_cast<int>(errorBefore));
}

void StepDeleteFile(CStep &step)
{
    step.Main().DeleteFileStep(step.Expanded(), kDisableRedirect);
}

void StepDeleteFileRedir(CStep &step)
{
    step.Main().DeleteFileStep(step.Expanded(), kKeepRedirect);
}

void StepDeleteFileCustom(CStep &step)
{
    step.Main().DeleteFileStep(CustomPath(step.Main(), step.Expanded()), kKeepRedirect);
}

void StepDeleteFileReboot(CStep &step)
{
    DeleteAtReboot(step.Expanded());
}
