#include "Devices/TabletSize.h"

// Each number comes in three pieces: 7 bits, 7 bits, and the lowest 2 bits in a byte that the two numbers share.
TabletSize DecodeTabletSize(const TabletReply &reply)
{
    const auto number = [&reply](size_t high, unsigned lowShift) {
        const uint32_t upper = static_cast<uint32_t>(reply[high] << 7 | reply[high + 1]);
        return upper << 2 | (static_cast<uint32_t>(reply[6]) >> lowShift & 3);
    };
    return {number(1, 5), number(3, 3)};
}
