// The driver type of a package, by the text of its script.
#pragma once

#include <cstdint>
#include <string>

// Sets the driver type of the process from the text of PrefType, in any case of letters. An unknown text is traced, and
// answered with false; the type is that of the consumer pen then.
bool SettleDriverType(const std::string &prefType);
