// The version field of the condition OSVersion.
#pragma once

#include <cstdint>
#include <string>

struct WantedOSVersion {
    uint32_t mMajor = 0;
    uint32_t mMinor = 0;
    bool mAnyMinor = false;

    bool Matches(uint32_t major, uint32_t minor) const { return major == mMajor && (mAnyMinor || minor == mMinor); }
};

// Reads major.minor or major.x. What stands behind a second point does not count; a field without a point asks for
// version 0.0, which no Windows has.
WantedOSVersion ParseOSVersion(const std::string &field);
