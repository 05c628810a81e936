#pragma once

#include <cstdint>

// The page shown first, and with it the outcome of a silent run.
enum EInstallType : uint32_t {
    EInstallAllowed = 0,
    EUninstallAllowed = 1,
    ENonAdmin = 2,
    ERebootBefore = 3,
    EUnhandledType = 4,
    ENotSupported = 5,
    ENoISDHardware = 6,
    EPreSplit = 7,
};
