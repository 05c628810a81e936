#include "Script/ScriptRegPath.h"

#include "Script/ScriptAccess.h"

namespace {

// The value of a name in the section PlatformData. It belongs to the package's main script, also while a group of
// another file or an OEM file is the script of the moment.
std::string ReadPlatformData(const std::string &name)
{
    if (name.empty()) {
        return std::string(); // the reader would answer the whole section
    }
    const CMainScriptScope script(ScriptFiles());
    return ReadString("PlatformData", name, std::string());
}

} // namespace

RegLocation ParseRegPath(const std::string &text, RegRoot defaultRoot)
{
    return ParseRegPathWith(text, defaultRoot, ReadPlatformData);
}
