// Files that other programs hold open. Virus scanners, indexers and other runs of this program look at a file for a
// moment, and a moment later it is free.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

// How long a file that is in use is waited for, in milliseconds.
constexpr DWORD kHeldPatienceMs = 3000;

// Whether the last error says that another program holds the file.
bool FailedAsHeld();

// Does `work`, again in small steps for as long as it fails (answers false) because another program holds the file.
// Answers what the last try answered, with its last error; waited_O, where given, gets the milliseconds of the waiting.
// `patienceMs` is kHeldPatienceMs, or 0 for one try.
bool TryWhileHeld(const std::function<bool()> &work, DWORD patienceMs = kHeldPatienceMs, DWORD *waited_O = nullptr);

// Whether another program has the file open, however it shares it. Keeps the last error.
bool IsHeld(const std::string &path);
