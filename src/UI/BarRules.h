// The progress bar between two steps: how it creeps, and its changing colour.
#pragma once

#include <cstdint>

#include "Script/Progress.h"

constexpr uint32_t kCreepPauseMs = 500;
constexpr uint32_t kIdlePauseMs = 100;

// One turn of the creeping thread: whether it moves the bar, and how long it pauses behind that.
struct BarTurn {
    bool mEnds;
    bool mMoves;
    uint32_t mPauseMs;
};

// The bar moves while it stands below what the running step may reach. At its end the thread ends.
constexpr BarTurn NextBarTurn(uint32_t value, uint32_t target)
{
    if (value >= PROGRESS_MAX) {
        return {true, false, 0};
    }
    return value < target ? BarTurn{false, true, kCreepPauseMs} : BarTurn{false, false, kIdlePauseMs};
}

constexpr uint32_t kBarColour = 0xFF000000;      // CLR_DEFAULT
constexpr uint32_t kBarFlashColour = 0x0083003B; // red 3B, green 0, blue 83

// Colour at the flash of this number: the first, third and so on stand out.
constexpr uint32_t BarColour(uint32_t flash)
{
    return flash % 2 != 0 ? kBarFlashColour : kBarColour;
}
