// One supported device of the run: a fragment of a device instance id and whether it was found.
#pragma once

#include <cstdint>
#include <string>

struct SupportedDevice {
    std::string mId;
    uint32_t mFlags = 0;
    bool mFound = false;
};
