// Feeds the parser of registry paths with a path (the first line) and values of PlatformData (NAME=value lines).
#include <algorithm>
#include <map>

#include "Require.h"
#include "Registry/MultiString.h"
#include "Registry/RegPath.h"

namespace {

// What was appended is there and can be taken out again, which leaves the list as it was, with its zero bytes.
void CheckList(const std::string &list, const std::string &text)
{
    std::string closed = list;
    CloseList(closed);
    Require(closed.empty() || closed.back() == '\0');
    Require(closed.compare(0, list.size(), list) == 0 && closed.size() <= list.size() + 2);
    std::string grown = list;
    RemoveEntry(grown, text);
    grown = list;
    if (text.find('\0') == std::string::npos && AppendEntry(grown, text)) {
        Require(ContainsEntry(grown, text) && RemoveEntry(grown, text));
        Require(grown == (closed.empty() ? std::string(1, '\0') : closed));
    }
}

} // namespace

void CheckInput(const std::string &text)
{
    const size_t end = text.find('\n');
    const std::string path = text.substr(0, end);
    std::map<std::string, std::string> values;
    for (size_t from = end; from != std::string::npos;) {
        const size_t next = text.find('\n', ++from);
        const std::string line = text.substr(from, next - from);
        const size_t equals = std::min(line.find('='), line.size());
        values[line.substr(0, equals)] = line.substr(std::min(equals + 1, line.size()));
        from = next;
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
    CheckList(text, path);
}
