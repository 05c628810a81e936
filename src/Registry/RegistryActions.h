// What the registry commands of the script do. Every action tells its outcome in the trace.
#pragma once

#include <windows.h>

#include <string>

#include "Registry/RegAccess.h"

// Whether a key exists, or with a name that is not empty a value of it, in the view of this process.
bool RegKeyExists(const RegLocation &location, const std::string &name);

// Whether a value is a number equal to the decimal `value`, in the view of this process. A value of another type is
// compared by its first four bytes; one that cannot be read is not equal.
bool CheckRegDword(const RegLocation &location, const std::string &name, const std::string &value);

// Writes a text; `type` is REG_SZ, REG_EXPAND_SZ or REG_MULTI_SZ, to whose list the text is appended unless it is
// there. An empty text deletes the value, or the key when the name is empty or "@". The permissions of the location are
// empty or what SetKeyPermissions takes. Answers whether the status was 0.
bool SetRegValue(const RegLocation &location, const std::string &name, const std::string &value, DWORD type,
                 ERegView view);

// Writes the decimal `value` as a number; an empty text deletes the value. Answers whether the status was 0.
bool SetRegDword(const RegLocation &location, const std::string &name, const std::string &value, ERegView view);

// Takes the first entry equal to `value` from a list of texts; with its last entry the value goes. Answers whether the
// status was 0, which it also is when there was no such entry.
bool RemoveRegMultiEntry(const RegLocation &location, const std::string &name, const std::string &value, ERegView view);

// Writes a text that an OEM data file holds, in the view of this process.
void SetOemRegValue(const RegLocation &location, const std::string &name, const std::string &value);
