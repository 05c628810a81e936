// Where this program stands.
#pragma once

#include <string>

// Full path of the program's file; empty when the platform does not tell.
std::string ModulePath();

// The folder of the program's file, without a closing back-slash unless it is a root.
std::string ModuleFolder();
