// Starting this program again with the rights of an administrator.
#pragma once

#include <cstdint>
#include <string>

// Starts this program with the verb "runas" and `commandLine` as its arguments, and waits for its end without a limit.
// Answers its exit code; 5 when it could not be started, the user's refusal included, and for a negative exit code,
// which is how a process ends that crashed.
uint32_t RunElevated(const std::wstring &commandLine);
