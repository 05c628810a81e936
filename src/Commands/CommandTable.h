// The vocabulary of the script: one row a command, in the order of their numbers.
#pragma once

#include <cstddef>

#include "Script/CommandRow.h"

constexpr size_t kCommandCount = 115;
extern const CommandRow gCommands[kCommandCount];
