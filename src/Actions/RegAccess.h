// Registry primitives: the location stack, the view mask, and the one routine that touches values.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "Actions/RegPath.h"

// Parses a path, reading macros from the section PlatformData of the script.
RegLocation ParseRegPath(const std::string &text, RegRoot defaultRoot = kRootLocalMachine);

// The location stack. Its top, when there is one, is where readers and writers with an empty section work;
// otherwise it is \Software\TAVIX\Installer under HKEY_LOCAL_MACHINE.
uint16_t PushRegLocation(const RegLocation &location); // 1542 for an empty path, 0 otherwise
uint16_t PopRegLocation();                             // 1542 when the stack is empty, 0 otherwise

// The view mask (KEY_WOW64_64KEY 0x100, KEY_WOW64_32KEY 0x200; other bits are dropped), or-ed into each open.
void SetRegView(uint32_t mask);

// Reads or writes one value of the current location; the name "@" means the unnamed value. Answers a platform
// error number, with 3 for a missing key and 13 for an empty buffer. The size is in bytes; see the definition for
// what empty data means in a write.
LONG RegAccess(const std::string &name, void *data, DWORD &size_I_O, DWORD &type_I_O, bool write);

// Turns a result of RegAccess into a status.
uint16_t StatusFromRegError(LONG error);

// Whether a key, or with a name that is not empty a value of it, can be read in the view of this process. Takes the
// path exactly as parsed: Windows refuses a leading back-slash, so that the answer for such a path is no.
bool RegValueExists(const RegLocation &location, const std::string &name);

// The writers. A section that is not empty is refused with 1539. All answer the status, and set the last status.
uint16_t WriteRegString(const std::string &section, const std::string &name, const std::string &text, DWORD type);
uint16_t WriteRegDword(const std::string &section, const std::string &name, uint32_t number);
uint16_t RemoveFromRegMultiString(const std::string &section, const std::string &name, const std::string &text,
                                  DWORD type);

// Deletes a key with everything below it. Answers a platform error number, 0 for success.
LONG DeleteKeyRecursive(const RegLocation &location);

// Pushes a location for the length of a scope and pops it; sets the 64-bit view with it when asked for. A location
// that is refused leaves the stack as it is: readers and writers would then work on another key than the one named, so
// look at Status() first.
class CRegLocationScope {
public:
    explicit CRegLocationScope(const RegLocation &location, bool view64 = false);
    ~CRegLocationScope();

    // What PushRegLocation answered: 0, or 1542 for a location without a path.
    uint16_t Status() const { return mStatus; }
    CRegLocationScope(const CRegLocationScope &) = delete;
    CRegLocationScope &operator=(const CRegLocationScope &) = delete;

private:
    uint16_t mStatus;
    bool mView64;
};
