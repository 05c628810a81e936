// What the tool has in place of the outer ring, on each system that it is built for.
#pragma once

#include <functional>
#include <string>

// Who gets the records that the product's own code traces, message without the newline at its end; nobody when empty.
extern std::function<void(int level, const std::string &message)> gTraceListener;

// Makes the output ready for a person who reads it. `colour` is auto, always or never; answers whether to write
// colours.
bool PrepareConsole(const std::string &colour);
