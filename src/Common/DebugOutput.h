// The debugger sink of the trace.
#pragma once

// Hands a message to OutputDebugStringA when a debugger, a debug monitor or the kernel's debugger is there to take it.
// A monitor that is started during the run is noticed within a quarter of a second.
void DebugOutput(const char *message);
