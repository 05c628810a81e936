#include "Pack/PackMacros.h"

#include <algorithm>

#include "Common/StringUtilities.h"
#include "Pack/PackageModel.h"
#include "Script/MacroNames.h"

CPackMacros::CPackMacros(CPackageModel &model, PackageLanguage &language, PackMachine machine)
    : mModel(&model), mLanguage(&language), mMachine(machine)
{
}

std::string CPackMacros::LocalisedString(const std::string &key, const std::string &defaultValue)
{
    mAskedWords = true;
    if (mModel == nullptr) {
        return defaultValue;
    }
    const std::optional<std::string> word = mModel->Word(*mLanguage, key);
    if (!word) {
        mMissingWords.push_back(key);
    }
    return word.value_or(defaultValue);
}

std::optional<std::string> CPackMacros::Value(const std::string &upperName)
{
    if (std::none_of(std::begin(kMacroNames), std::end(kMacroNames),
                     [&](const char *name) { return upperName == name; })) {
        mUnknownNames.push_back(upperName);
        return std::nullopt;
    }
    if (upperName == ".") {
        return ".";
    }
    if (upperName == "INSTALL_BASE") {
        return mMachine.mWide ? ".\\System32\\64" : ".\\System32";
    }
    if (upperName == "ISD_OEM") {
        return ".\\isdoem.dat";
    }
    if (upperName == "HIDROUTER_NAME_ISD") {
        return mMachine.mModern ? "tvxhidrouter_isd_win8" : "tvxhidrouter_isd";
    }
    if (upperName == "ROUTERFILTER_NAME") {
        return "tavixrouterfilter";
    }
    const std::string name = upperName == "PROGRAM FILES64" ? "PROGFILES" : upperName;
    return kFolderMark + name + kFolderMark + (name == "TEMP" ? "\\" : "");
}

std::string PlacePath(const std::string &expanded)
{
    std::string place;
    place.reserve(expanded.size());
    for (const char c : UpperAscii(expanded)) {
        const char letter = c == '/' ? '\\' : c;
        // A separator at the very beginning stays doubled: a share.
        if (letter == '\\' && place.size() > 1 && place.back() == '\\') {
            continue;
        }
        place += letter;
    }
    while (place.compare(0, 2, ".\\") == 0) {
        place.erase(0, 2);
    }
    for (size_t at = place.find("\\.\\"); at != std::string::npos; at = place.find("\\.\\")) {
        place.erase(at, 2);
    }
    if (place.size() > 1 && place.back() == '\\') {
        place.pop_back();
    }
    return place;
}

std::string ShownPath(const std::string &place)
{
    std::string shown = place;
    std::replace(shown.begin(), shown.end(), kFolderMark, '!');
    return shown;
}

std::string FolderOf(const std::string &place, std::string *rest_O)
{
    const size_t end = place.empty() || place.front() != kFolderMark ? std::string::npos : place.find(kFolderMark, 1);
    if (end == std::string::npos) {
        return std::string();
    }
    if (rest_O != nullptr) {
        *rest_O = place.substr(end + 1);
        if (rest_O->compare(0, 1, "\\") == 0) {
            rest_O->erase(0, 1);
        }
    }
    return place.substr(1, end - 1);
}

bool IsWithin(const std::string &place, const std::string &folder)
{
    return place.compare(0, folder.size(), folder) == 0 &&
           (place.size() == folder.size() || place[folder.size()] == '\\' || folder.back() == '\\');
}
