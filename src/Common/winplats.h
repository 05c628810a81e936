// Which Windows this is. The platform is read once, by whichever question comes first.
#pragma once

#include <cstdint>
#include <string>

#include "Common/PlatformRules.h"

EPlatform GetPlatform();
EEdition GetEdition();
uint32_t GetServicePack(); // the major number, 0 for none

bool IsPlatformXP();
bool IsPlatform2003(); // also the 64-bit XP
bool IsPlatformVista();
bool IsPlatformWin7(); // also what is newer than 8.1, unless Windows hides its version
bool IsPlatformWin8();
bool IsPlatformWin81();
bool IsPlatformUnset(); // GetVersionExA failed
bool IsPlatformXPFamily();
bool IsPlatformVistaOrLater();

bool IsFullEdition();
bool IsStarterEdition();
bool IsHomeBasicEdition();

// The text of the trace record "OSPlatform ...".
std::string GetPlatformText();

// Whether Windows runs with the tablet PC services (SM_TABLETPC, asked anew at each call). Loads user32
// when the process does not have it yet, and leaves it loaded.
bool IsTabletPC();
