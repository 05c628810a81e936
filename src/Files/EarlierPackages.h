// Which earlier packages the machine has, by the files that they leave.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Common/FileVersion.h"

// A program that an earlier package has left. The version is that of no file for a missing one.
struct EarlierProgram {
    bool mExists = false;
    FileVersion mVersion;
};

// Looks a program up by its path, which begins with a macro, without redirection: earlier packages lie where 64-bit
// Windows keeps its own. Called only for answers that are needed, because looking leaves its trace.
using EarlierProgramLookup = std::function<EarlierProgram(const std::string &path)>;

// Whether a package is installed that had pen tablets and built-in ones in one.
bool IsPreISDSplitInstalled(const EarlierProgramLookup &lookUp);

// Whether the virtual HID driver may go: no other product on the machine than that of the driver type is too old to do
// without it. The package does not look at itself.
bool VHIDObsolete(int32_t driverType, const EarlierProgramLookup &lookUp);
