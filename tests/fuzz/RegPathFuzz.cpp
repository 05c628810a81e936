// Feeds the parser of registry paths with a path (the first line) and values of PlatformData (NAME=value lines).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>

#include "Common/MultiString.h"
#include "Common/RegPath.h"

namespace {

void Require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

bool IsRoot(RegRoot root)
{
    return root == kRootClasses || root == kRootCurrentUser || root == kRootLocalMachine || root == kRootUsers ||
           root == kRootCurrentConfig;
}

// A path goes through unchanged unless a macro stands at its beginning.
void CheckPath(const std::string &text, std::map<std::string, std::string> &values)
{
    bool asked = false;
    const RegLocation location = ParseRegPathWith(text, kRootLocalMachine, [&](const std::string &name) {
        asked = true;
        return values[name];
    });
    Require(IsRoot(location.mRootKey));
    Require(location.mPermissions.empty());
    if (!asked) {
        const size_t kept = location.mPath.size();
        Require(kept <= text.size() && text.compare(text.size() - kept, kept, location.mPath) == 0);
    }
}

// What was appended is there and can be taken out again. Whatever the list holds, neither leaves its bounds.
void CheckList(const std::string &list, const std::string &text)
{
    std::string grown = list;
    RemoveEntry(grown, text);
    grown = list;
    if (text.find('\0') != std::string::npos || !AppendEntry(grown, text)) {
        return;
    }
    if (list.size() > 1 && list[list.size() - 2] != '\0') {
        return; // the last entry has no end of its own, and the new one was joined to it
    }
    Require(ContainsEntry(grown, text));
    const size_t size = grown.size();
    Require(RemoveEntry(grown, text));
    Require(grown.size() == size - text.size() - 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string input(reinterpret_cast<const char *>(data), size);
    std::map<std::string, std::string> values;
    size_t lineEnd = input.find('\n');
    const std::string path = input.substr(0, lineEnd);
    while (lineEnd != std::string::npos) {
        const size_t from = lineEnd + 1;
        lineEnd = input.find('\n', from);
        const std::string line = input.substr(from, lineEnd == std::string::npos ? lineEnd : lineEnd - from);
        const size_t equals = line.find('=');
        if (equals != std::string::npos) {
            values[line.substr(0, equals)] = line.substr(equals + 1);
        }
    }
    CheckPath(path, values);
    CheckList(input, path);
    return 0;
}
