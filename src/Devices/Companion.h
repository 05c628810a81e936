// The companion installer: a library or a program of the package that does the work on device drivers.
// docs/companion.md tells what it is called with.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// Each call loads the library and frees it again, or runs the program to its end without a limit of time. All answer
// whether the companion reported 0. The last error is then its status or exit code, or tells why the library could not
// be loaded or lacks the entry. A program that could not be started counts as having worked.
bool CallDevInstall(const std::string &companion, const std::string &device, const std::string &inf);
bool CallDevInstallSelectedDriver(const std::string &companion, const std::string &device, const std::string &inf);
bool CallDevRemove(const std::string &companion, const std::string &device);
bool CallDevRemoveSelectedDriver(const std::string &companion, const std::string &device);

// The same; a program that ends with 1 asks for a restart of Windows and is answered with false all the same.
bool CallDevUpdate(const std::string &companion, const std::string &device, const std::string &inf,
                   bool &rebootRequired_O);

// The same for a library, whatever its name says: there is no verb for it.
bool CallDevRemoveOemInf(const std::string &companion, const std::string &match);

// Hands three numbers and a name to the library's ChangeFriendlyName. Answers whether it returned something other than
// null; the last error is then 0, and 50 when it returned null.
bool ChangeFriendlyName(const std::string &companion, uint8_t first, uint8_t second, uint8_t usage,
                        const std::string &name);

// Runs `file` with these parameters and waits for its end. Answers the exit code, which is the last error, too; 0 when
// it could not be started, 50 when the shell gives no process to wait for.
DWORD RunCompanion(const std::string &file, const std::string &parameters);
