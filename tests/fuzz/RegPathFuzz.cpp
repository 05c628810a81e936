// Feeds the parser of registry paths with a path (the first line) and values of PlatformData (NAME=value lines).
#include <map>
#include <sstream>

#include "Require.h"
#include "Actions/MultiString.h"
#include "Actions/RegPath.h"

namespace {

// What was appended is there and can be taken out again. Whatever the list holds, neither leaves its bounds.
void CheckList(const std::string &list, const std::string &text)
{
    std::string grown = list;
    RemoveEntry(grown, text);
    grown = list;
    const bool added = text.find('\0') == std::string::npos && AppendEntry(grown, text);
    // A last entry without an end of its own is joined to the new one.
    if (added && (list.size() < 2 || list[list.size() - 2] == '\0')) {
        const size_t size = grown.size();
        Require(ContainsEntry(grown, text) && RemoveEntry(grown, text) && grown.size() == size - text.size() - 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::istringstream lines(TextOf(data, size));
    std::string path;
    std::getline(lines, path);
    std::map<std::string, std::string> values;
    for (std::string line; std::getline(lines, line);) {
        const size_t equals = std::min(line.find('='), line.size());
        values[line.substr(0, equals)] = line.substr(std::min(equals + 1, line.size()));
    }
    bool asked = false;
    const RegLocation location = ParseRegPathWith(path, kRootLocalMachine, [&](const std::string &name) {
        asked = true;
        return values[name];
    });
    const RegRoot root = location.mRootKey;
    Require(root >= kRootClasses && root <= kRootCurrentConfig && root != kRootUsers + 1);
    Require(location.mPermissions.empty());
    // A path goes through unchanged unless a macro stands at its beginning.
    const size_t kept = location.mPath.size();
    Require(asked || (kept <= path.size() && path.compare(path.size() - kept, kept, location.mPath) == 0));
    CheckList(TextOf(data, size), path);
    return 0;
}
