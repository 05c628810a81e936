#include "Common/PlatformRules.h"

#include "Common/CSystemState.h"
#include "Common/Trace.h"

namespace {

constexpr uint32_t kPlatformIdNT = 2; // VER_PLATFORM_WIN32_NT

EPlatform PlatformFromMinor5(uint32_t minorVersion)
{
    switch (minorVersion) {
    case 0:
        TVX_ASSERT(!"Obsolete platform ID");
        return EPlatformObsolete;
    case 1:
        return EPlatformXP;
    case 2:
        return EPlatform2003;
    default:
        TVX_ASSERT(!"Unknown minor version (assume XP)");
        return EPlatformXP;
    }
}

EPlatform PlatformFromMinor6(uint32_t minorVersion)
{
    switch (minorVersion) {
    case 0:
        return EPlatformVista;
    case 1:
        return EPlatformWin7;
    case 2:
        return EPlatformWin8;
    case 3:
        return EPlatformWin81;
    default:
        TVX_ASSERT(!"Unknown minor version (assume Win7)");
        return EPlatformWin7;
    }
}

} // namespace

EPlatform PlatformFromVersion(uint32_t platformId, uint32_t majorVersion, uint32_t minorVersion)
{
    if (platformId != kPlatformIdNT) {
        TVX_ASSERT(!"Unknown platform ID");
        return EPlatformObsolete;
    }
    switch (majorVersion) {
    case 3:
    case 4:
        TVX_ASSERT(!"Obsolete platform ID");
        return EPlatformObsolete;
    case 5:
        return PlatformFromMinor5(minorVersion);
    case 6:
        return PlatformFromMinor6(minorVersion);
    default:
        TVX_ASSERT(!"Unknown NT Platform (assume Win7)");
        return EPlatformWin7;
    }
}

EEdition EditionFromProductType(uint32_t productType)
{
    // The three of each kind are the plain edition, the one without a media player and the one made for
    // the European or Korean market (PRODUCT_HOME_BASIC, PRODUCT_STARTER and their _N and _E forms).
    switch (productType) {
    case 2:
    case 5:
    case 67:
        return EEditionHomeBasic;
    case 11:
    case 47:
    case 66:
        return EEditionStarter;
    default:
        return EEditionFull;
    }
}

int32_t OSTypeFromPlatform(EPlatform platform, EEdition edition, bool tabletPC)
{
    switch (platform) {
    case EPlatformWin81:
        return kOSTypeWin81;
    case EPlatformWin8:
        return kOSTypeWin8;
    case EPlatformWin7:
        switch (edition) {
        case EEditionStarter:
            return kOSTypeWin7Starter;
        case EEditionHomeBasic:
            return kOSTypeWin7HomeBasic;
        default:
            return kOSTypeWin7;
        }
    case EPlatformVista:
        return kOSTypeVista;
    case EPlatformXP:
    case EPlatform2003:
        return tabletPC ? kOSTypeXPTabletPC : kOSTypeXP;
    default:
        return kOSTypeUnknown;
    }
}

std::string PlatformText(EPlatform platform, EEdition edition, uint32_t servicePack)
{
    // Windows 8.1 has no name here: its text begins with the comma of the edition. Those who read the
    // trace know it by that.
    static constexpr const char *kNames[] = {
        "", "Windows XP", "Windows 2k3", "Windows Vista", "Windows 7", "Windows 8", "",
    };
    if (platform == EPlatformUnset) {
        return "Unknown";
    }
    if (platform == EPlatformObsolete) {
        return "Not supported";
    }
    std::string text = kNames[platform];
    switch (edition) {
    case EEditionStarter:
        text += ", Starter Edition";
        break;
    case EEditionHomeBasic:
        text += ", Home Basic Edition";
        break;
    default:
        text += ", Full Edition";
        break;
    }
    if (servicePack != 0) {
        text += ", SP" + std::to_string(servicePack);
    }
    return text;
}
