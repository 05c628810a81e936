// The existence test of the script, with its trace.
#pragma once

#include <string>

class CWinInstallMain;

// Whether something stands at `path`; with `disableRedirect` as the 64-bit system sees it. Traces the test.
bool FileExistsStep(const std::string &path, bool disableRedirect);

// The path that the Custom form of a command works on: `path` itself where it exists, as the 64-bit system
// sees it, and otherwise what ResolveCustomPath() makes of it. Traces the existence test.
std::string CustomPath(const CWinInstallMain &main, const std::string &path);
