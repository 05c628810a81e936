// Starting other programs.
#pragma once

#include <cstdint>
#include <string>

// Hands a file to the shell to be run or opened, with redirection switched off for all of the call where
// `disableRedirect` says so. With `wait` the end of the program is waited for, without a limit; a program that the
// shell found running already gives nothing to wait for. Then `pause` milliseconds pass; none for a number below zero,
// which would mean for ever. Answers whether the file was there and was started; only then there is a pause. Traces all
// of it.
bool ExecuteFile(const std::string &file, const std::string &parameters, int32_t pause, bool wait, bool disableRedirect,
                 bool hidden);

// Starts a program with the verb "runas", this program itself when `file` is empty. Answers -1 when there is no
// process, the user's refusal included; the exit code when `wait` asks for it, however long that takes; else 0.
int32_t ExecuteElevated(const std::wstring &file, const std::wstring &parameters, bool wait);

// Hands a file to the shell and does not wait. Each text may be null; the fourth argument stands in the order of the
// shell's own and is not read. Answers whether the shell took the file.
bool ExecuteFromShell(const wchar_t *file, const wchar_t *parameters, const wchar_t *verb, intptr_t unread,
                      const wchar_t *folder, int show);
