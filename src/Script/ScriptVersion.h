// Version of the script language that this program reads.
#pragma once

#include <cstddef>
#include <string>

constexpr char kScriptVersion[] = "1.10.01";
// Length of the part of the script's version that has to be this program's own.
constexpr size_t kComparedVersion = 4;

// Whether a script of this version is run.
inline bool IsScriptVersion(const std::string &version)
{
    return version.compare(0, kComparedVersion, kScriptVersion, kComparedVersion) == 0;
}
