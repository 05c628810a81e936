#include "Commands/CommandTable.h"

#include "Commands/Commands.h"

#define TVX_COMMAND(name, number, ...) {#name, number, Step##name},
const CommandRow gCommands[kCommandCount] = {
#include "Commands/CommandRows.h"
};
#undef TVX_COMMAND
