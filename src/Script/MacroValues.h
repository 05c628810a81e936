// The values behind the macros: folders of the machine, fixed names, and what the run has found out.
#pragma once

#include <optional>
#include <string>

class CRunState;

// Version of this program, the value of the macro APP VERSION.
constexpr char kAppVersion[] = "5.3.5-5";

// The value of a macro by its upper-cased name; nothing for a name that means nothing.
std::optional<std::string> MacroValue(const CRunState &run, const std::string &upperName);
