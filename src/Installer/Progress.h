// Arithmetic of the progress bar. Only the outermost group counts; each executed step counts one.
#pragma once

#include <cstdint>

constexpr uint32_t PROGRESS_MAX = 500;

// Divisor of a group of `records` steps: one more than the steps, so that the last move comes from the end of the
// group and not from its last step.
constexpr uint32_t ProgressLines(uint32_t records)
{
    return records + 1;
}

// Position that `done` executed steps justify, rounded down. Exceeds PROGRESS_MAX when a group jumps backwards often
// enough; that is wanted, the bar is told all the same.
constexpr uint32_t ProgressTarget(uint32_t done, uint32_t lines)
{
    return static_cast<uint32_t>(uint64_t{done} * PROGRESS_MAX / lines);
}
