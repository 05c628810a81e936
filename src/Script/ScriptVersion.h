// The version of the script language.
#pragma once

#include <string>

// That of this program.
constexpr char kScriptVersion[] = "1.10.01";

// Whether a script of this version can be run: its first four characters are this program's own.
inline bool IsScriptVersion(const std::string &version)
{
    return version.compare(0, 4, kScriptVersion, 4) == 0;
}
