// Grammar of registry paths in scripts: ROOT\key, a path relative to a default root, or
// !NAME!\key with NAME looked up in the script's section PlatformData.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// A predefined root by its platform number (winreg.h), or an open key; 0 for none.
using RegRoot = uintptr_t;

constexpr RegRoot kRootClasses = 0x80000000;
constexpr RegRoot kRootCurrentUser = 0x80000001;
constexpr RegRoot kRootLocalMachine = 0x80000002;
constexpr RegRoot kRootUsers = 0x80000003;
constexpr RegRoot kRootCurrentConfig = 0x80000005;

struct RegLocation {
    RegRoot mRootKey = 0;
    std::string mPath;
    std::string mPermissions;
};

// Cuts a path text into root and sub-key path. `platformData` answers the value of a name, empty when there
// is none. The path keeps a leading back-slash if it had one; permissions are left empty. A name whose value leads back
// to itself is traced and gives an empty path.
RegLocation ParseRegPathWith(const std::string &text, RegRoot defaultRoot,
                             const std::function<std::string(const std::string &)> &platformData);
