// What the error numbers of Windows say, in a few words each: those that come up when files, the registry, services,
// drivers and programs are worked on.
#pragma once

#include <cstdint>
#include <string>

// The words of an error; empty for one that is not known here. Takes the numbers of drivers' set-up, which have their
// highest bits set, and the results of COM that hold a number of Windows.
std::string ErrorText(uint32_t error);

// "5 (access is denied)"; the number alone, in hexadecimal when it is large, for one that is not known.
std::string WordsOfError(uint32_t error);
