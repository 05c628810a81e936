// Paths of the Custom forms of commands, which serve two layouts of a package.
#pragma once

#include <string>

class CWinInstallMain;

// The path that the Custom form of a command works on: `path` itself where it exists, as the 64-bit system
// sees it, and otherwise what ResolveCustomPath() makes of it. Traces the existence test.
std::string CustomPath(const CWinInstallMain &main, const std::string &path);
