// A row of the command table.
#pragma once

#include <cstdint>

class CStep;

using StepHandler = void (*)(CStep &step);

struct CommandRow {
    const char *mName; // as written in scripts, exact with regard to case
    uint32_t mNumber;
    StepHandler mHandler;
};
