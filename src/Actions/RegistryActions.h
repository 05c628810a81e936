// What the registry commands of the script do. Keys are given as in scripts, with HKEY_LOCAL_MACHINE as the root of a
// path that names none; `view64` asks for the registry of 64-bit Windows instead of the one that a 32-bit process
// sees. Every action tells its outcome in the trace.
#pragma once

#include <windows.h>

#include <string>

class CStep;

// Whether a key exists, or with a name that is not empty a value of it, in the view of this process.
bool RegKeyExists(const std::string &key, const std::string &name);

// Whether a value is a number equal to the decimal `value`, in the view of this process. A value of another type is
// compared by its first four bytes; one that cannot be read is not equal.
bool CheckRegDword(const std::string &key, const std::string &name, const std::string &value);

// Writes a text; `type` is REG_SZ, REG_EXPAND_SZ or REG_MULTI_SZ, to whose list the text is appended unless it is
// there. An empty text deletes the value, or the key when the name is empty or "@". `permissions` is empty or what
// SetKeyPermissions takes. Answers whether the status was 0.
bool SetRegValue(const std::string &key, const std::string &name, const std::string &value,
                 const std::string &permissions, DWORD type, bool view64);

// Writes the decimal `value` as a number; an empty text deletes the value. Answers whether the status was 0.
bool SetRegDword(const std::string &key, const std::string &name, const std::string &value, bool view64);

// Takes the first entry equal to `value` from a list of texts; with its last entry the value goes. Answers whether the
// status was 0, which it also is when there was no such entry.
bool RemoveRegMultiEntry(const std::string &key, const std::string &name, const std::string &value, bool view64);

// Copies a value of an OEM data file into the registry. Reads the step's fields file, name and key, each only when the
// one before led somewhere; `section` is where the file holds the name.
void RegValueFromOemFile(const std::string &section, CStep &step);
