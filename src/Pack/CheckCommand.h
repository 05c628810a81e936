// tavixpack check: looks for mistakes in packages.
#pragma once

#include "Pack/Console.h"

namespace CLI {
class App;
}

void AddCheckCommand(CLI::App &app, CPackCommands &commands_I);
