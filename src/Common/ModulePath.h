// Where this program stands.
#pragma once

#include <string>

// Full path of the program's file, its folder by its short form when the ANSI code page cannot hold the long one; empty
// when the platform does not tell.
std::string ModulePath();

// The folder of the program's file, without a closing back-slash unless it is a root.
std::string ModuleFolder();
