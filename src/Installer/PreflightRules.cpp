#include "Installer/PreflightRules.h"

#include "Common/CSystemState.h"
#include "Script/PackageKind.h"

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
