// Which earlier packages the machine has, by the files that they leave. All files are looked at without redirection:
// earlier packages lie where 64-bit Windows keeps its own. The existence tests trace themselves.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// Replaces the macros of a text.
using MacroExpander = std::function<std::string(const std::string &)>;

// Whether a package is installed that had pen tablets and built-in ones in one.
bool IsPreISDSplitInstalled(const MacroExpander &expand);

// Whether the virtual HID driver may go: no other product on the machine than that of the driver type is too old to do
// without it. The package does not look at itself.
bool VHIDObsolete(int32_t driverType, const MacroExpander &expand);
