#include "Pack/PlanMachine.h"

#include <algorithm>
#include <stdexcept>

#include "Common/CSystemState.h"
#include "Common/StringUtilities.h"

namespace {

// A Windows newer than those that the program's manifest names calls itself by the last of them.
constexpr WindowsRow kWindows[] = {
    {"xp", "Windows XP", kOSTypeXP, 5, 1},
    {"xp-tablet", "Windows XP Tablet PC Edition", kOSTypeXPTabletPC, 5, 1},
    {"2003", "Windows Server 2003", kOSTypeXP, 5, 2},
    {"vista", "Windows Vista", kOSTypeVista, 6, 0},
    {"7", "Windows 7", kOSTypeWin7, 6, 1},
    {"7-home-basic", "Windows 7 Home Basic", kOSTypeWin7HomeBasic, 6, 1},
    {"7-starter", "Windows 7 Starter", kOSTypeWin7Starter, 6, 1},
    {"8", "Windows 8", kOSTypeWin8, 6, 2},
    {"8.1", "Windows 8.1", kOSTypeWin81, 6, 3},
    {"10", "Windows 10", kOSTypeWin81, 6, 3},
    {"11", "Windows 11", kOSTypeWin81, 6, 3},
};

// Folders of the system folder that are the same in both views.
constexpr const char *kShared[] = {"catroot", "catroot2", "driverstore", "drivers\\etc", "logfiles", "spool"};

// Keys that every Windows has.
constexpr const char *kSystemKeys[] = {"software",
                                       "software\\microsoft",
                                       "software\\microsoft\\windows",
                                       "software\\microsoft\\windows\\currentversion",
                                       "software\\microsoft\\windows\\currentversion\\uninstall",
                                       "software\\microsoft\\windows\\currentversion\\run",
                                       "software\\microsoft\\windows nt",
                                       "software\\microsoft\\windows nt\\currentversion",
                                       "software\\classes",
                                       "system",
                                       "system\\currentcontrolset",
                                       "system\\currentcontrolset\\services",
                                       "system\\currentcontrolset\\control"};

bool StartsWith(const std::string &text, const std::string &beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

bool IsInside(const std::string &path, const std::string &folder)
{
    return StartsWith(path, folder) && (path.size() == folder.size() || path[folder.size()] == '\\');
}

// A path in small letters, whole, without ".", ".." and what Windows takes off the ends of names.
std::string WholePath(const std::string &path)
{
    std::string text = ToLowerCopy(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    const bool share = StartsWith(text, "\\\\");
    if (!share && !text.empty() && text[0] == '\\') {
        text = "c:" + text;
    } else if (!share && (text.size() < 2 || text[1] != ':')) {
        text = ToLowerCopy(kPlanFolder) + '\\' + text;
    }
    std::vector<std::string> names;
    for (std::string &name : SplitAny(text, "\\", true)) {
        if (name == "..") {
            if (names.size() > 1) {
                names.pop_back();
            }
            continue;
        }
        name.erase(name.find_last_not_of(". ") + 1);
        if (!name.empty()) {
            names.push_back(std::move(name));
        }
    }
    std::string whole = share ? "\\" : "";
    for (const std::string &name : names) {
        whole += (whole.empty() ? "" : "\\") + name;
    }
    return whole;
}

const char *RootName(RegRoot root)
{
    switch (root) {
    case kRootClasses:
        return "hkcr";
    case kRootCurrentUser:
        return "hkcu";
    case kRootLocalMachine:
        return "hklm";
    case kRootUsers:
        return "hku";
    default:
        return "hkcc";
    }
}

} // namespace

const WindowsRow *FindWindows(const std::string &name)
{
    const auto row = std::find_if(std::begin(kWindows), std::end(kWindows),
                                  [&](const WindowsRow &candidate) { return name == candidate.mName; });
    return row == std::end(kWindows) ? nullptr : row;
}

std::vector<std::string> WindowsNames()
{
    std::vector<std::string> names;
    for (const WindowsRow &row : kWindows) {
        names.emplace_back(row.mName);
    }
    return names;
}

CPlanMachine::CPlanMachine(const PlanOptions &options, const CPackageTree &tree)
    : mWindows(FindWindows(options.mWindows)), mBits(options.mBits), mRestIsMissing(options.mRestIsMissing), mTree(tree)
{
    if (mWindows == nullptr) {
        throw std::invalid_argument("no such Windows: " + options.mWindows);
    }
    const bool isXP = IsOSTypeXP(mWindows->mOSType);
    const std::string user = isXP ? "C:\\Documents and Settings\\User" : "C:\\Users\\User";
    const std::string common =
        isXP ? "C:\\Documents and Settings\\All Users\\" : "C:\\ProgramData\\Microsoft\\Windows\\";
    const std::string programs = Is64() ? "C:\\Program Files (x86)" : "C:\\Program Files";
    mMacros = {
        {".", kPlanFolder},
        {"WINDOWS", "C:\\Windows"},
        {"SYSTEM", "C:\\Windows\\System32"},
        {"WOW64", Is64() ? "C:\\Windows\\SysWOW64" : ""},
        {"PROGRAM FILES", programs},
        {"PROGRAM FILES64", "C:\\Program Files"},
        {"PROGFILES", "C:\\Program Files"},
        {"COMMON PROGRAMS", common + "Start Menu\\Programs"},
        {"COMMON DESKTOP", isXP ? common + "Desktop" : "C:\\Users\\Public\\Desktop"},
        {"APP DATA", user + (isXP ? "\\Application Data" : "\\AppData\\Roaming")},
        {"PROFILES", isXP ? "C:\\Documents and Settings" : "C:\\Users"},
        {"STARTUP FOLDER", common + "Start Menu\\Programs\\" + (isXP ? "Startup" : "StartUp")},
        {"TEMP", user + (isXP ? "\\Local Settings\\Temp\\" : "\\AppData\\Local\\Temp\\")},
    };
    for (const std::string &text : options.mMacros) {
        const size_t equals = text.find('=');
        const std::string name = UpperAscii(text.substr(0, equals));
        const auto macro =
            std::find_if(mMacros.begin(), mMacros.end(), [&](const auto &row) { return row.first == name; });
        if (equals == std::string::npos || macro == mMacros.end()) {
            throw std::invalid_argument("no macro of the machine with a value: " + text);
        }
        macro->second = text.substr(equals + 1);
    }
    for (const auto &[name, value] : mMacros) {
        for (std::string path = WholePath(value); name != "." && !value.empty() && !path.empty();
             path = ParentPath(path)) {
            mSystemFolders.push_back(path);
        }
    }
    for (const char *name : {"\\drivers", "\\drivers\\etc"}) {
        mSystemFolders.push_back(WholePath(*Macro("SYSTEM") + name));
    }
    mSystemFolders.push_back(WholePath(*Macro("WINDOWS") + "\\inf"));
}

std::optional<std::string> CPlanMachine::Macro(const std::string &upperName) const
{
    const auto macro =
        std::find_if(mMacros.begin(), mMacros.end(), [&](const auto &row) { return row.first == upperName; });
    return macro == mMacros.end() ? std::nullopt : std::optional<std::string>(macro->second);
}

std::string CPlanMachine::FilePath(const std::string &path, EPlanView view) const
{
    if (path.empty()) {
        return std::string();
    }
    std::string whole = WholePath(path);
    if (!Is64() || view == EPlanView::E64) {
        return whole;
    }
    const std::string system = WholePath(*Macro("SYSTEM"));
    const std::string native = WholePath(*Macro("WINDOWS") + "\\Sysnative");
    if (IsInside(whole, native)) {
        return system + whole.substr(native.size());
    }
    const bool shared = std::any_of(std::begin(kShared), std::end(kShared),
                                    [&](const char *name) { return IsInside(whole, system + '\\' + name); });
    return IsInside(whole, system) && !shared ? WholePath(*Macro("WOW64")) + whole.substr(system.size()) : whole;
}

std::string CPlanMachine::KeyPath(const RegLocation &location, EPlanView view) const
{
    std::string path = RootName(location.mRootKey);
    for (const std::string &name : SplitAny(ToLowerCopy(location.mPath), "\\", true)) {
        path += '\\' + name;
    }
    const bool twice = Is64() && (IsInside(path, "hklm\\software") || IsInside(path, "hkcr"));
    return twice && view == EPlanView::EProcess ? "32\\" + path : path;
}

TreeFact CPlanMachine::FileGround(const std::string &path) const
{
    TreeFact fact;
    const std::string package = ToLowerCopy(kPlanFolder);
    if (IsInside(path, package)) {
        const bool itself = path.size() == package.size();
        const PackageEntry *const entry = itself ? nullptr : mTree.Find(path.substr(package.size() + 1));
        fact.mThere = AnswerOf(itself || entry != nullptr);
        fact.mFolder = itself || (entry != nullptr && entry->mFolder);
        return fact;
    }
    if (std::find(mSystemFolders.begin(), mSystemFolders.end(), path) != mSystemFolders.end()) {
        fact.mThere = EAnswer::EYes;
        fact.mFolder = true;
        return fact;
    }
    fact.mThere = mRestIsMissing ? EAnswer::ENo : EAnswer::EOpen;
    return fact;
}

TreeFact CPlanMachine::KeyGround(const std::string &path) const
{
    const std::string plain = StartsWith(path, "32\\") ? path.substr(3) : path;
    const size_t root = plain.find('\\');
    const std::string below = root == std::string::npos ? std::string() : plain.substr(root + 1);
    TreeFact fact;
    fact.mFolder = true;
    const bool known = below.empty() ||
                       (StartsWith(plain, "hklm\\") &&
                        std::find(std::begin(kSystemKeys), std::end(kSystemKeys), below) != std::end(kSystemKeys)) ||
                       plain == "hkcu\\software";
    fact.mThere = known ? EAnswer::EYes : mRestIsMissing ? EAnswer::ENo : EAnswer::EOpen;
    return fact;
}
