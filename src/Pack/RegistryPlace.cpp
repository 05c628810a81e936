#include "Pack/RegistryPlace.h"

#include <utility>

#include "Common/StringUtilities.h"
#include "Pack/PackMacros.h"

namespace {

constexpr size_t kDeepest = 64; // as deep as the program follows names

const char *ShortRoot(RegRoot root)
{
    switch (root) {
    case kRootLocalMachine:
        return "HKLM";
    case kRootUsers:
        return "HKU";
    case kRootClasses:
        return "HKCR";
    case kRootCurrentConfig:
        return "HKCC";
    case kRootCurrentUser:
        return "HKCU";
    default:
        return "";
    }
}

} // namespace

RegistryPlace PlaceOfKey(CPackageModel &model, const std::string &text)
{
    RegistryPlace place;
    size_t depth = 0;
    const auto platformData = [&](const std::string &name) {
        std::string value = name.empty() ? std::string() : model.Value("PlatformData", name);
        if (value.empty()) {
            place.mUnknown.push_back(name);
        }
        place.mCircle = place.mCircle || ++depth >= kDeepest;
        return value;
    };
    place.mLocation = ParseRegPathWith(text, 0, platformData);
    place.mHasRoot = place.mLocation.mRootKey != 0;
    if (!place.mHasRoot) {
        place.mLocation.mRootKey = kRootLocalMachine;
    }
    std::string path = place.mLocation.mPath;
    path.erase(0, std::min(path.find_first_not_of('\\'), path.size()));
    if (!path.empty()) {
        place.mWords = std::string(ShortRoot(place.mLocation.mRootKey)) + "\\" + path;
        place.mKey = PlacePath(place.mWords);
    }
    place.mTwoViews = IsWithin(place.mKey, "HKLM\\SOFTWARE") || IsWithin(place.mKey, "HKCR");
    return place;
}

const std::vector<std::string> &RegistryRoots()
{
    static const auto &roots = *new std::vector<std::string>{"HKEY_LOCAL_MACHINE", "HKEY_CURRENT_USER", "HKEY_USERS",
                                                             "HKEY_CLASSES_ROOT", "HKEY_CURRENT_CONFIG"};
    return roots;
}
