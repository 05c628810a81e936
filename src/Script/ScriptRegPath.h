// Registry paths as scripts write them.
#pragma once

#include <string>

#include "Registry/RegPath.h"

// Parses a path, reading macros from the section PlatformData of the main script; see ParseRegPathWith().
RegLocation ParseRegPath(const std::string &text, RegRoot defaultRoot = kRootLocalMachine);
