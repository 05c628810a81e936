// The consumer family of tablets.
#pragma once

// Whether a tablet of the family is attached to the machine or was once; traces the answer. Reads the registry only.
bool IsQuilloPresent();
