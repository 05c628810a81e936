// What an ISD tablet on a serial port answers when it is asked for its size.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

constexpr size_t kTabletReplySize = 11;
using TabletReply = std::array<uint8_t, kTabletReplySize>;

// The largest coordinates of the tablet.
struct TabletSize {
    uint32_t mMaxX = 0;
    uint32_t mMaxY = 0;
};

// Reads the numbers out of a reply; bytes that did not come are zero.
TabletSize DecodeTabletSize(const TabletReply &reply);
