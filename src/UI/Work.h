// The work of a run: its group of steps.
#pragma once

#include <windows.h>

class CRunState;

// Runs the group of the run on this thread, with COM at hand and without boxes of the system. Answers 0.
DWORD DoWork(CRunState &run);
