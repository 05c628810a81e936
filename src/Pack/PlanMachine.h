// The machine that a plan is made for, as the command line describes it: its Windows, its folders, what is on it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Pack/PackageTree.h"
#include "Pack/PlanFacts.h"
#include "Registry/RegPath.h"

// What the command line tells, as it stands there.
struct PlanOptions {
    std::string mFolder; // of the package
    std::string mWindows = "8.1";
    uint32_t mBits = 64;
    std::string mUser = "admin"; // admin, filtered or plain
    std::string mLanguage = "en";
    std::string mCommand; // group to run in place of Install
    bool mUninstall = false;
    std::vector<std::string> mDevices;
    bool mNoDevice = false;
    std::vector<std::string> mFlags; // NAME=NUMBER
    std::vector<std::string> mFiles; // PATH or PATH=VERSION
    std::vector<std::string> mNoFiles;
    std::vector<std::string> mKeys; // KEY, KEY;NAME or KEY;NAME=DATA
    std::vector<std::string> mNoKeys;
    std::vector<std::string> mMacros; // NAME=VALUE
    bool mRestIsMissing = false;      // what the description does not name is not there
    uint32_t mMostBranches = 200;
    uint64_t mMostSteps = 1000000; // that a plan notes
};

// A Windows by the name that --windows takes.
struct WindowsRow {
    const char *mName;
    const char *mTitle; // as people call it
    int32_t mOSType;
    uint32_t mMajor; // the version that Windows tells this program
    uint32_t mMinor;
};

// The Windows of a name; null for a name that is none.
const WindowsRow *FindWindows(const std::string &name);
std::vector<std::string> WindowsNames();

// Which view a place is looked at in.
enum class EPlanView { EProcess, E64 };

class CPlanMachine {
public:
    // Throws std::invalid_argument, with words for the user, for a description that makes no sense. The tree, of the
    // package, outlives the object.
    CPlanMachine(const PlanOptions &options, const CPackageTree &tree);

    const WindowsRow &Windows() const { return *mWindows; }
    bool Is64() const { return mBits == 64; }

    // The value of a macro that the machine decides about, by its name in capitals; nothing for any other.
    std::optional<std::string> Macro(const std::string &upperName) const;

    // The one path of a file that a program of 32 or 64 bits names so; empty for an empty path. Small letters.
    std::string FilePath(const std::string &path, EPlanView view) const;

    // The one path of a key. Small letters, the view and the root in front.
    std::string KeyPath(const RegLocation &location, EPlanView view) const;

    // What files and keys are in front of the first step, apart from those that the command line names.
    TreeFact FileGround(const std::string &path) const;
    TreeFact KeyGround(const std::string &path) const;

private:
    const WindowsRow *mWindows;
    uint32_t mBits;
    bool mRestIsMissing;
    const CPackageTree &mTree;
    std::vector<std::pair<std::string, std::string>> mMacros;
    std::vector<std::string> mSystemFolders; // of Windows itself; they are there
};

// The folder that stands for the package in the paths of a plan.
constexpr char kPlanFolder[] = "C:\\Package";
