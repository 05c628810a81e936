// Rules that the pre-flight decisions rest on.
#pragma once

#include <cstdint>

// The kind of the package (PackageKind.h) from the numbers of ISD, VISD and TOUCH; of those that are set the last one
// counts.
uint32_t DriverKindFrom(uint32_t isd, uint32_t visd, uint32_t touch);

// Whether the OS type is one that the package is made for.
bool IsSupportedPlatform(int32_t osType);
