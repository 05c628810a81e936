// The existence test of the script, with its trace.
#pragma once

#include <string>

// Whether something stands at `path`; with `disableRedirect` as the 64-bit system sees it. Traces the test.
bool FileExistsStep(const std::string &path, bool disableRedirect);
