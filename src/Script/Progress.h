// The progress of a run: arithmetic of the bar, and what shows it. Only the outermost group counts; each executed step
// counts one.
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

// The bar of a run. The thread that runs the steps and the one that creeps the bar write the numbers without a lock:
// both only move them forward, and a lost update is made good by the next.
struct BarProgress {
    uint32_t mBarValue = 0;  // shown position
    uint32_t mBarStep = 1;   // of the creeping thread
    uint32_t mBarTarget = 0; // position that the steps done so far justify
};

// What shows the progress of the outermost group.
class IProgress {
public:
    virtual ~IProgress() = default;

    // Whether a group has begun to run; every further one is an inner one.
    virtual bool HasBegun() const = 0;

    // Called once, in front of the first step.
    virtual void Begin() = 0;

    // Whether there is a bar, and a new position for it.
    virtual bool HasBar() const = 0;
    virtual void Show(uint32_t position) = 0;
};
