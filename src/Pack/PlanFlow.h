// Where the courses of a condition meet again.
#pragma once

#include <cstdint>
#include <vector>

#include "Script/StepList.h"

// For each step of a group the first one behind it that every way to the group's end goes through, whatever the
// conditions answer; Count(), the end, when there is none.
std::vector<uint32_t> MeetingSteps(const StepList &steps);
