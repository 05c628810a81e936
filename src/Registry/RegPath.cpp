#include "Registry/RegPath.h"

#include "Common/StringUtilities.h"
#include "Common/Trace.h"

namespace {

using PlatformData = std::function<std::string(const std::string &)>;

// A value of PlatformData may begin with a macro in its turn; one that leads back to itself ends here.
constexpr int kDeepestMacro = 64;

struct RootName {
    const char *mName;
    RegRoot mRoot;
};

constexpr RootName kRootNames[] = {
    {"HKEY_LOCAL_MACHINE", kRootLocalMachine}, {"HKEY_USERS", kRootUsers},
    {"HKEY_CLASSES_ROOT", kRootClasses},       {"HKEY_CURRENT_CONFIG", kRootCurrentConfig},
    {"HKEY_CURRENT_USER", kRootCurrentUser},
};

RegRoot RootOf(const std::string &head)
{
    const std::string upper = UpperAscii(head);
    for (const RootName &row : kRootNames) {
        if (upper == row.mName) {
            return row.mRoot;
        }
    }
    return 0;
}

RegLocation Parse(const std::string &text, RegRoot defaultRoot, const PlatformData &platformData, int depth,
                  bool &endless_O);

// Puts the value of the macro that the path begins with, behind one back-slash or none, in the macro's place. The
// back-slash stays in front of the value.
void ReplaceMacro(RegLocation &location_I_O, const PlatformData &platformData, int depth, bool &endless_O)
{
    std::string &path = location_I_O.mPath;
    const size_t bang = path.compare(0, 1, "\\") == 0 ? 1 : 0;
    if (path.compare(bang, 1, "!") != 0) {
        return;
    }
    const size_t endBang = path.find('!', bang + 1);
    if (endBang == std::string::npos) {
        traceExpectation("endBang != std::string::npos");
        return;
    }
    const std::string name = path.substr(bang + 1, endBang - bang - 1);
    if (depth >= kDeepestMacro) {
        trace(0, "PlatformData %s leads back to itself\n", name.c_str());
        endless_O = true;
        return;
    }
    const RegLocation value = Parse(platformData(name), 0, platformData, depth + 1, endless_O);
    if (value.mRootKey != 0) {
        location_I_O.mRootKey = value.mRootKey;
    }
    path.replace(bang, endBang + 1 - bang, value.mPath);
}

RegLocation Parse(const std::string &text, RegRoot defaultRoot, const PlatformData &platformData, int depth,
                  bool &endless_O)
{
    const size_t slash = text.find('\\');
    RegLocation location;
    location.mRootKey = RootOf(text.substr(0, slash));
    if (location.mRootKey == 0) {
        location.mRootKey = defaultRoot;
        location.mPath = text;
    } else if (slash != std::string::npos) {
        location.mPath = text.substr(slash);
    }
    if (!location.mPath.empty()) {
        ReplaceMacro(location, platformData, depth, endless_O);
    }
    return location;
}

} // namespace

RegLocation ParseRegPathWith(const std::string &text, RegRoot defaultRoot, const PlatformData &platformData)
{
    bool endless = false;
    RegLocation location = Parse(text, defaultRoot, platformData, 0, endless);
    if (endless) {
        location.mPath.clear(); // names no key: the location stack refuses it
    }
    return location;
}
