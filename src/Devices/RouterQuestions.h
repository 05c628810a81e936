// Whether the HID router is needed: the three lines of the package share it, and it stays as long as another line
// uses it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Common/FileVersion.h"

// The lines by their numbers in the driver type.
enum ERouterLine : int32_t {
    ERouterConsumer = 1,
    ERouterProfessional = 2,
    ERouterISD = 3,
};

// The program of a line as it is on the machine. The version is that of no file for a missing one.
struct RouterProgram {
    bool mExists = false;
    FileVersion mVersion;
};

// Looks a program up by its path, which begins with a macro. Called only for answers that are needed, because looking
// leaves its trace.
using RouterProgramLookup = std::function<RouterProgram(const std::string &path)>;

// Whether a line is installed in a version that works through the router.
bool NeedsHidRouter(ERouterLine line, const RouterProgramLookup &lookUp);

// Whether a package of `line`, the line's bits of the driver type, may take the router away: no other line needs it.
// The line itself is not asked; without a line the answer is yes.
bool ShouldUninstallHidRouter(int32_t line, const RouterProgramLookup &lookUp);
