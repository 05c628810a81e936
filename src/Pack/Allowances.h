// Comments that silence a check: "; check: allow NAME", also with several names between commas, in a line of its own
// above the line that it speaks of or behind a step. "#" does in place of ";".
#pragma once

#include "Pack/Diagnostics.h"
#include "Pack/PackageModel.h"

// Takes away what the comments of the package allow, and adds what is wrong with them.
void ApplyAllowances(const CPackageModel &model, CDiagnostics &found_I_O);
