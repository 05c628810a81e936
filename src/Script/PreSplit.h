// The check for a package from before pen tablets and built-in ones were split, remembered for the run.
#pragma once

#include <string>

#include "Files/EarlierPackages.h"

class CRunState;

// A program of an earlier package as it is on the machine. The path begins with a macro.
EarlierProgram LookUpEarlierProgram(const CRunState &run, const std::string &path);

// Whether such a package is or was installed. Found once, it stays found: the script removes that package in the course
// of the run.
bool DetectPreISDSplit(CRunState &run);
