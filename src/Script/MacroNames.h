// The names of the macros !NAME!, in capitals. Others stand for themselves.
#pragma once

constexpr const char *kMacroNames[] = {
    ".",
    "WINDOWS",
    "SYSTEM",
    "WOW64",
    "PROGRAM FILES",
    "PROGRAM FILES64",
    "PROGFILES",
    "COMMON PROGRAMS",
    "COMMON DESKTOP",
    "APP DATA",
    "APP VERSION",
    "PROFILES",
    "STARTUP FOLDER",
    "TEMP",
    "INSTALL_BASE",
    "ISD_OEM",
    "PRODUCT_NAME",
    "HIDROUTER_NAME_ISD",
    "ROUTERFILTER_NAME",
};
