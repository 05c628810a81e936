// The vocabulary of the script: one row a command.
#pragma once

#include <cstddef>
#include <cstdint>

class CStep;

using StepHandler = void (*)(CStep &step);

struct CommandRow {
    const char *mName; // as written in scripts, exact with regard to case
    uint32_t mNumber;
    StepHandler mHandler;
};

constexpr size_t kCommandCount = 115;
extern const CommandRow gCommands[kCommandCount];

// The row of a command number, null for a number without a command.
const CommandRow *FindCommand(uint32_t number);
