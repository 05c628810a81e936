#include "Files/EarlierPackages.h"

#include "Common/DriverNames.h"

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

// A file without a version counts as old: any version is newer than none.
bool IsThereAndOlder(const EarlierProgramLookup &lookUp, const char *path, const FileVersion &threshold)
{
    const EarlierProgram program = lookUp(path);
    return program.mExists && IsNewerThan(threshold, program.mVersion);
}

bool IsClear(const EarlierProgramLookup &lookUp, const VirtualHidUser &user)
{
    const EarlierProgram program = lookUp(user.mPath);
    return !program.mExists || IsNewerThan(program.mVersion, FileVersion(user.mThreshold, false));
}

} // namespace

bool IsPreISDSplitInstalled(const EarlierProgramLookup &lookUp)
{
    const FileVersion split(kSplitVersion, false);
    return IsThereAndOlder(lookUp, "!SYSTEM!\\Pen_Tablet.exe", split) ||
           (IsThereAndOlder(lookUp, "!PROGFILES!\\VTouch\\Remove.exe", split) && !lookUp(kPenUser.mPath).mExists);
}

bool VHIDObsolete(int32_t driverType, const EarlierProgramLookup &lookUp)
{
    switch (driverType & kDriverLineMask) {
    case 1: // Consumer
        return IsClear(lookUp, kISDUser) && IsClear(lookUp, kProUser);
    case 2: // Professional
        return IsClear(lookUp, kPenUser) && IsClear(lookUp, kISDUser);
    case 3: // ISD
        return IsClear(lookUp, kProUser) && IsClear(lookUp, kPenUser);
    default:
        return false;
    }
}
