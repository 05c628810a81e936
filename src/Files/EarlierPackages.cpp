#include "Files/EarlierPackages.h"

#include "Common/DriverNames.h"
#include "Common/FileVersion.h"
#include "Common/Redirection.h"
#include "Common/TextConversions.h"
#include "Common/WinFileVersion.h"
#include "Files/FileExists.h"

namespace {

// The last package that had pen tablets and built-in ones in one comes before this version.
constexpr char kSplitVersion[] = "5.2.3-0";

// A product, and the version from which on (itself excluded) it does without the virtual HID driver.
struct VirtualHidUser {
    const char *mPath;
    const char *mThreshold;
};
constexpr VirtualHidUser kProUser = {"!PROGFILES!\\Tablet\\Tavix\\Tavix_Tablet.exe", "6.3.0-0"};
constexpr VirtualHidUser kISDUser = {"!PROGFILES!\\Tablet\\ISD\\ISD_Tablet.exe", "7.0.5-0"};
constexpr VirtualHidUser kPenUser = {"!PROGFILES!\\Tablet\\Pen\\Pen_Tablet.exe", "5.3.0-0"};

bool IsThere(const std::string &path)
{
    return FileExistsStep(path, true);
}

FileVersion VersionOf(const std::string &path)
{
    const STDisableRedirect redirect(true);
    return ReadProductVersion(AnsiToUtf8(path));
}

// A file without a version counts as old: any version is newer than none.
bool IsThereAndOlder(const std::string &path, const FileVersion &threshold)
{
    return IsThere(path) && IsNewerThan(threshold, VersionOf(path));
}

bool IsClear(const MacroExpander &expand, const VirtualHidUser &user)
{
    const std::string path = expand(user.mPath);
    return !IsThere(path) || IsNewerThan(VersionOf(path), FileVersion(user.mThreshold, false));
}

} // namespace

bool IsPreISDSplitInstalled(const MacroExpander &expand)
{
    const FileVersion split(kSplitVersion, false);
    return IsThereAndOlder(expand("!SYSTEM!\\Pen_Tablet.exe"), split) ||
           (IsThereAndOlder(expand("!PROGFILES!\\VTouch\\Remove.exe"), split) &&
            !IsThere(expand("!PROGFILES!\\Tablet\\Pen\\Pen_Tablet.exe")));
}

bool VHIDObsolete(int32_t driverType, const MacroExpander &expand)
{
    switch (driverType & kDriverLineMask) {
    case 1: // Consumer
        return IsClear(expand, kISDUser) && IsClear(expand, kProUser);
    case 2: // Professional
        return IsClear(expand, kPenUser) && IsClear(expand, kISDUser);
    case 3: // ISD
        return IsClear(expand, kProUser) && IsClear(expand, kPenUser);
    default:
        return false;
    }
}
