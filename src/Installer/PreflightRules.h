// The rules of the pre-flight decisions, over plain facts. The order in which a run asks for the facts stands in
// Preflight.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Installer/InstallType.h"

// Values of mDriverKind.
constexpr uint32_t kDriverKindPlain = 0;
constexpr uint32_t kDriverKindISD = 1;
constexpr uint32_t kDriverKindTouch = 2;
constexpr uint32_t kDriverKindVISD = 3;

// The kind of the package from the numbers of ISD, VISD and TOUCH; of those that are set the last one counts.
uint32_t DriverKindFrom(uint32_t isd, uint32_t visd, uint32_t touch);

// Whether the OS type is one that the package is made for.
bool IsSupportedPlatform(int32_t osType);

// Windows Vista and its successors: Ink is part of the system there, and a process can ask for more rights.
bool IsVistaOrLaterPlatform(int32_t osType);

// What is known before anybody asks for rights.
struct PreflightFacts {
    int32_t mOSType = 0;
    uint32_t mAllowObsoleteOS = 0;
    uint32_t mDriverKind = kDriverKindPlain;
    int32_t mHardwareOverride = 0; // the flag NOHARDWARE_OVERRIDE
    size_t mDevicesFound = 0;      // number of list records with the found mark
    bool mUninstall = false;
};

// What platform and hardware say: ENotSupported, ENoISDHardware, or EInstallAllowed when the rights come next.
EInstallType DecideBeforeRights(const PreflightFacts &facts);
