// A run of the installer for which the user is no administrator, on a machine where every user is one.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "Package.h"

// What a run without rights left behind; the elevated process has a trace of its own.
struct WithoutRightsResult {
    RunResult mParent;
    std::vector<std::vector<TraceRecord>> mOtherTraces; // of the other processes that ran in the package
};

// Runs the package's TavixSetup.exe under a debugger that makes one entry answer otherwise: EqualSid of this one
// process finds no two SIDs equal, so that the token seems to lack the group of the administrators. What the process
// starts is not touched. With `gone` the program's file is moved away meanwhile, so that the shell cannot start it.
WithoutRightsResult RunWithoutRights(Package &package, const std::string &tail, bool gone);
