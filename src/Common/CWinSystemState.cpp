#include "Common/CWinSystemState.h"

#include "Common/winplats.h"

void CWinSystemState::DetermineOSType(bool force)
{
    if (mOSType != kOSTypeUnset && !force) {
        return;
    }
    // The tablet metric costs loading user32 and is asked only where it decides something.
    const bool tabletPC = IsPlatformXPFamily() && IsTabletPC();
    mOSType = OSTypeFromPlatform(GetPlatform(), GetEdition(), tabletPC);
}
