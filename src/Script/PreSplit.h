// The check for a package from before pen tablets and built-in ones were split, remembered for the run.
#pragma once

class CRunState;

// Whether such a package is or was installed. Found once, it stays found: the script removes that package in the course
// of the run.
bool DetectPreISDSplit(CRunState &run);
