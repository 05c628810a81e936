#include "Files/VersionCompare.h"

#include <windows.h>

#include "Common/Redirection.h"
#include "Common/DriverDate.h"
#include "Common/FileVersion.h"
#include "Common/Handles.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "Common/WinFileVersion.h"

namespace {

// Time of the last write. OpenFile also finds a bare name along the search path of the platform; it takes no full path
// of 128 characters or more, and such a file has no time here.
bool ReadWriteTime(const std::string &path, FILETIME &time_O)
{
    OFSTRUCT details = {};
    details.cBytes = sizeof details;
    const HFILE opened = OpenFile(path.c_str(), &details, OF_READ);
    if (opened == HFILE_ERROR) {
        return false;
    }
    const CHandle file(reinterpret_cast<HANDLE>(static_cast<INT_PTR>(opened)));
    return GetFileTime(file.Get(), nullptr, nullptr, &time_O);
}

} // namespace

// Script paths hold text of the system's code page, as those of all file steps do; the readers take UTF-8.
bool IsFileNewer(const std::string &target, const std::string &source)
{
    const STDisableRedirect redirect(true); // whatever the command was
    const FileVersion targetVersion = ReadProductVersion(AnsiToUtf8(target));
    const FileVersion sourceVersion = ReadProductVersion(AnsiToUtf8(source));
    const std::string targetText = targetVersion.ToText(FileVersion::EStyleFull);
    const std::string sourceText = sourceVersion.ToText(FileVersion::EStyleFull);
    trace(7, "FileVersionCompare: %s (%s) vs %s (%s), 64 %s:\n", target.c_str(), targetText.c_str(), source.c_str(),
          sourceText.c_str(), YesNo(redirect.Disabled()));
    const bool newerVersion = IsNewerThan(sourceVersion, targetVersion);
    const bool earlierTarget = IsWriteTimeEarlier(target, source);
    const bool newer = newerVersion || earlierTarget;
    trace(7, newer ? "%s < %s\n" : "%s > %s\n", targetText.c_str(), sourceText.c_str());
    return newer;
}

bool IsInfNewer(const std::string &target, const std::string &source)
{
    const STDisableRedirect redirect(true); // whatever the command was
    const DriverDate targetDate = ReadInfDriverVersion(AnsiToUtf8(target));
    const DriverDate sourceDate = ReadInfDriverVersion(AnsiToUtf8(source));
    const std::string targetText = FormatDriverDate(targetDate);
    const std::string sourceText = FormatDriverDate(sourceDate);
    trace(7, "InfVersionCompare: %s (%s) vs %s (%s), 64 %s:\n", target.c_str(), targetText.c_str(), source.c_str(),
          sourceText.c_str(), YesNo(redirect.Disabled()));
    const bool newer = IsDriverDateNewer(sourceDate, targetDate);
    trace(7, newer ? "%s < %s\n" : "%s > %s\n", targetText.c_str(), sourceText.c_str());
    return newer;
}

bool IsWriteTimeEarlier(const std::string &first, const std::string &second)
{
    FILETIME firstTime;
    FILETIME secondTime;
    return ReadWriteTime(first, firstTime) && ReadWriteTime(second, secondTime) &&
           CompareFileTime(&firstTime, &secondTime) < 0;
}
