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
