#include "Installer/PreflightRules.h"

#include "Common/CSystemState.h"

uint32_t DriverKindFrom(uint32_t isd, uint32_t visd, uint32_t touch)
{
    if (touch != 0) {
        return kDriverKindTouch;
    }
    if (visd != 0) {
        return kDriverKindVISD;
    }
    return isd != 0 ? kDriverKindISD : kDriverKindPlain;
}

bool IsSupportedPlatform(int32_t osType)
{
    return IsOSTypeXP(osType) || IsVistaOrLaterPlatform(osType);
}

bool IsVistaOrLaterPlatform(int32_t osType)
{
    switch (osType) {
    case kOSTypeVista:
    case kOSTypeWin7:
    case kOSTypeWin7HomeBasic:
    case kOSTypeWin7Starter:
    case kOSTypeWin8:
    case kOSTypeWin81:
        return true;
    default:
        return false;
    }
}

EInstallType DecideBeforeRights(const PreflightFacts &facts)
{
    // A removal is refused like an installation on a Windows that the package does not know.
    if (facts.mAllowObsoleteOS == 0 && !IsSupportedPlatform(facts.mOSType)) {
        return ENotSupported;
    }
    // A package for built-in tablets installs on machines that have one; it can be removed anywhere.
    if (facts.mDriverKind == kDriverKindISD && facts.mHardwareOverride == 0 && facts.mDevicesFound == 0 &&
        !facts.mUninstall) {
        return ENoISDHardware;
    }
    return EInstallAllowed;
}
