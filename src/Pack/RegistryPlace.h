// Places of the registry as scripts name them, in a form in which two of the same place are equal.
#pragma once

#include <string>
#include <vector>

#include "Pack/PackageModel.h"
#include "Registry/RegPath.h"

// A key: its root's short name and its path in capitals, "HKLM\SOFTWARE\TAVIX".
struct RegistryPlace {
    RegLocation mLocation;             // as the program's parser reads it
    std::string mKey;                  // empty for a path that names no key
    std::string mWords;                // the same as a person writes it
    std::vector<std::string> mUnknown; // names that PlatformData does not have
    bool mCircle = false;              // a name leads back to itself
    bool mHasRoot = false;             // the text or a value of PlatformData names one
    bool mTwoViews = false;            // 64-bit Windows has this key twice
};

RegistryPlace PlaceOfKey(CPackageModel &model, const std::string &text);

// The long names of the roots.
const std::vector<std::string> &RegistryRoots();
