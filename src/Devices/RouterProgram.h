// A program of a driver line as it is on the machine.
#pragma once

#include "Devices/RouterQuestions.h"

// Looks as the 64-bit system does, and traces the look. `path` has its macros expanded.
RouterProgram LookUpRouterProgram(const std::string &path);
