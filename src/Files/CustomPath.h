// Paths of the Custom forms of commands, which serve two layouts of a package.
#pragma once

#include <string>

// The layout of an OEM package is that of the plain one less the folder, or the part of a name, that is called after
// the product. Answers the path without the first occurrence of the product's name, which may be empty. The separators
// around it stay: Windows takes two for one.
std::string ResolveCustomPath(const std::string &path, const std::string &productName);

// The path that the Custom form of a command works on: `path` itself where it exists, as the 64-bit system sees it, and
// otherwise what ResolveCustomPath() makes of it. Traces the existence test.
std::string CustomPath(const std::string &path, const std::string &productName);
