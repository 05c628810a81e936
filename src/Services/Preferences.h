// Removing the driver's preferences of all users of the machine.
#pragma once

#include <cstdint>
#include <string>

// Removes the preference files of the type's line from every profile that the machine lists or has in its folder of
// profiles, and each folder that this leaves empty. With `restartDriver` the driver's service is stopped around it.
// Works on the folders that 64-bit Windows shows its own programs. Nothing stops the walk; the trace tells what went.
void RemoveAll(int32_t driverType, bool restartDriver);

// The preference files of a line below one profile.
bool RemovePrefsForProfile(int32_t driverType, const std::wstring &profile);

// One file in each of the places that a profile has for it. Answers true.
bool RemovePrefFile(const std::wstring &profile, const std::wstring &file);
