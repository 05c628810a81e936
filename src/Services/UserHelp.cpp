#include "Services/UserHelp.h"

#include <cstdint>

#include "Common/Trace.h"
#include "Services/ExecuteFile.h"

namespace {

constexpr char kUserHelp[] = "!PROGFILES!\\Tablet\\Tavix\\UserHelp\\Tavix_UserHelp.exe";

void RunUserHelp(const MacroExpander &expandMacros, const std::string &parameters, int32_t pause)
{
    const std::string file = expandMacros(kUserHelp);
    const std::string expanded = expandMacros(parameters);
    trace(7, "Sending params to user help: %s\n", expanded.c_str());
    ExecuteFile(file, expanded, pause, false, true, false);
}

} // namespace

void SetupUserHelpApp(const MacroExpander &expandMacros, const std::string &language)
{
    RunUserHelp(expandMacros, "-download \"!APP DATA!\\VTablet\\resources\" -langid \"" + language + "\"", 100);
}

void RemoveUserHelpApp(const MacroExpander &expandMacros)
{
    RunUserHelp(expandMacros, "-shutdown", 6500);
}
