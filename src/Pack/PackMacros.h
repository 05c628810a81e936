// Macros where no machine is at hand: what a package decides gets its value, a folder of the machine a mark that paths
// can be compared by.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Script/Macros.h"

class CPackageModel;
struct PackageLanguage;

// Which machine a text is expanded for.
struct PackMachine {
    bool mWide = true;    // 64-bit Windows
    bool mModern = false; // Windows 8 and 8.1
};

class CPackMacros : public IMacroValues {
public:
    // Words stand for themselves.
    CPackMacros() = default;
    // Words come from a language of the package; both outlive the object.
    CPackMacros(CPackageModel &model, PackageLanguage &language, PackMachine machine = {});

    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override;
    std::optional<std::string> Value(const std::string &upperName) override;
    void Unpaired(char mark) override { mUnpaired += mark; }

    // What was asked for and is not to be had.
    std::vector<std::string> mMissingWords;
    std::vector<std::string> mUnknownNames;
    std::string mUnpaired;
    bool mAskedWords = false;

private:
    CPackageModel *mModel = nullptr;
    PackageLanguage *mLanguage = nullptr;
    PackMachine mMachine;
};

// Stands around the name of a folder of the machine in an expanded text.
constexpr char kFolderMark = '\x01';

// An expanded path in the form in which two of the same place are equal: capitals, back-slashes, none of them doubled
// or at the end, no ".\" in front.
std::string PlacePath(const std::string &expanded);

// A place for a person to read: marks as in the script.
std::string ShownPath(const std::string &place);

// The folder of the machine that a place begins with, such as "PROGFILES"; empty for another beginning. `rest_O` gets
// what stands behind, without the separator.
std::string FolderOf(const std::string &place, std::string *rest_O = nullptr);

// Whether a place is below a folder or that folder itself.
bool IsWithin(const std::string &place, const std::string &folder);
