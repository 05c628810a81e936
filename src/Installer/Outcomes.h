// What a run answers: the raw result word and the exit code. Front ends and administrators know these numbers.
#pragma once

#include <cstdint>
#include <functional>

#include "Script/CRunState.h"

// Bits of the raw result word, or-ed to the outcome number.
constexpr uint32_t kResultRebootRequired = 2;
constexpr uint32_t kResultDeclined = 16;
constexpr uint32_t kResultRebootNow = 0x100;     // never leaves the process
constexpr uint32_t kResultSuppressError = 0x200; // never leaves the process

// The raw result of a run that ended in front of its decisions.
constexpr uint32_t kResultFailed = 1;

// What an elevated relaunch answers that could not be made.
constexpr uint32_t kResultNotElevated = 5;

// Outcome numbers by the page that a run comes to. Without a window the low bit is set in all failures, which a run
// with a window does not do. A page without a row of its own is reported and answers 0.
uint32_t SilentOutcome(EInstallType type);
uint32_t WindowedOutcome(EInstallType type);

// The raw result words of the two kinds of runs.
uint32_t SilentResult(const RunOptions &options, const RunOutcome &outcome);
uint32_t WindowedResult(const RunOptions &options, const RunOutcome &outcome);

// Answers what `run` answers. An exception that nothing further in has caught, such as memory that is not to be had,
// ends the run like any failure in front of its decisions: the front end still gets its file and the administrator a
// line.
uint32_t Guarded(const std::function<uint32_t()> &run);

// The exit code that a raw result word becomes.
uint32_t ExitCodeOf(uint32_t result);
