#include "Common/winplats.h"

#include <windows.h>

#include "Common/importWin32API.h"

namespace {

EPlatform gPlatform = EPlatformUnset;
EEdition gEdition = EEditionFull;
uint32_t gServicePack = 0;

EEdition ReadEdition(const OSVERSIONINFOEXA &version)
{
    // From Vista on; before, there are no editions to tell apart.
    DWORD productType = 0;
    if (!Kernel32().GetProductInfo(version.dwMajorVersion, version.dwMinorVersion, 0, 0, &productType)) {
        return EEditionFull;
    }
    return EditionFromProductType(productType);
}

void ReadPlatform()
{
    if (gPlatform != EPlatformUnset) {
        return;
    }
    OSVERSIONINFOEXA version = {};
    static_assert(sizeof(version) == 156, "the extended form tells the service pack as a number");
    version.dwOSVersionInfoSize = sizeof(version);
    if (!GetVersionExA(reinterpret_cast<OSVERSIONINFOA *>(&version))) {
        return;
    }
    gPlatform = PlatformFromVersion(version.dwPlatformId, version.dwMajorVersion, version.dwMinorVersion);
    gServicePack = version.wServicePackMajor;
    gEdition = ReadEdition(version);
}

} // namespace

EPlatform GetPlatform()
{
    ReadPlatform();
    return gPlatform;
}

EEdition GetEdition()
{
    ReadPlatform();
    return gEdition;
}

uint32_t GetServicePack()
{
    ReadPlatform();
    return gServicePack;
}

bool IsPlatformXP()
{
    return GetPlatform() == EPlatformXP;
}

bool IsPlatform2003()
{
    return GetPlatform() == EPlatform2003;
}

bool IsPlatformVista()
{
    return GetPlatform() == EPlatformVista;
}

bool IsPlatformWin7()
{
    return GetPlatform() == EPlatformWin7;
}

bool IsPlatformWin8()
{
    return GetPlatform() == EPlatformWin8;
}

bool IsPlatformWin81()
{
    return GetPlatform() == EPlatformWin81;
}

bool IsPlatformUnset()
{
    return GetPlatform() == EPlatformUnset;
}

bool IsPlatformXPFamily()
{
    return IsPlatformXP() || IsPlatform2003();
}

bool IsPlatformVistaOrLater()
{
    const EPlatform platform = GetPlatform();
    return platform >= EPlatformVista && platform <= EPlatformWin81;
}

bool IsFullEdition()
{
    return GetEdition() == EEditionFull;
}

bool IsStarterEdition()
{
    return GetEdition() == EEditionStarter;
}

bool IsHomeBasicEdition()
{
    return GetEdition() == EEditionHomeBasic;
}

std::string GetPlatformText()
{
    return PlatformText(GetPlatform(), GetEdition(), GetServicePack());
}

bool IsTabletPC()
{
    return User32().GetSystemMetrics(SM_TABLETPC) != 0;
}
