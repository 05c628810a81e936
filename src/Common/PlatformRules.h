// What the numbers that Windows answers about itself mean. Pure rules; the numbers come from winplats.
#pragma once

#include <cstdint>
#include <string>

// The generation of Windows.
enum EPlatform : int32_t {
    EPlatformUnset = 0,
    EPlatformXP = 1,
    EPlatform2003 = 2, // also the 64-bit XP
    EPlatformVista = 3,
    EPlatformWin7 = 4,
    EPlatformWin8 = 5,
    EPlatformWin81 = 6,
    EPlatformObsolete = 7,
};

enum EEdition : int32_t {
    EEditionFull = 0,
    EEditionStarter = 1,
    EEditionHomeBasic = 2,
};

// Platform from dwPlatformId, dwMajorVersion and dwMinorVersion of OSVERSIONINFO. What is not known is
// reported as an assertion; a version newer than the known ones counts as Windows 7.
EPlatform PlatformFromVersion(uint32_t platformId, uint32_t majorVersion, uint32_t minorVersion);

// Edition from a product type of GetProductInfo; full for all that are not listed.
EEdition EditionFromProductType(uint32_t productType);

// The number that scripts test, see CSystemState. `tabletPC` counts on the XP family only.
// Answers -1 for an unset or obsolete platform.
int32_t OSTypeFromPlatform(EPlatform platform, EEdition edition, bool tabletPC);

// The display text, such as "Windows 7, Full Edition, SP1".
std::string PlatformText(EPlatform platform, EEdition edition, uint32_t servicePack);
