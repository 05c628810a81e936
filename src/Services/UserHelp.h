// The package's user help, a program that is told by its command line what to do.
#pragma once

#include <functional>
#include <string>

using MacroExpander = std::function<std::string(const std::string &text)>;

// Has the user help fetch its pages in a language, the name of a language section. Goes on 100 ms behind its start.
void SetupUserHelpApp(const MacroExpander &expandMacros, const std::string &language);

// Tells a running user help to end and gives it 6.5 seconds for that.
void RemoveUserHelpApp(const MacroExpander &expandMacros);
