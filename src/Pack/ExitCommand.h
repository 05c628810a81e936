// tavixpack exit: an exit code in words, and what those who deploy a package have to be told about the codes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Pack/Console.h"

namespace CLI {
class App;
}

struct ExitOptions {
    std::string mCode; // decimal, negative or with 0x; empty for none
    std::string mFor;  // winget, intune, chocolatey or sccm; empty for none
};

void AddExitCommand(CLI::App &app, CPackCommands &commands_I);

int RunExit(const ExitOptions &options, CPackConsole &console);

// The number of an exit code as people write it: 2, 0xC0000005, -1073741819. Nothing when it is none.
std::optional<uint32_t> ParseExitCode(const std::string &text);
