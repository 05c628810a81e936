// Registry primitives: the location stack, the view mask, and the one routine that touches values, with the readers and
// writers that stand on it. All of them work on the top of the stack.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "Registry/RegPath.h"

// Size in bytes of the buffer that a value is read into.
constexpr size_t kRegValueSize = 10240;

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

// Reads a text. `raw` takes the value by its size, less one closing NUL unless it is a list, and expands
// REG_EXPAND_SZ; otherwise the escapes of script values are processed and the text ends at the first NUL. Every failure
// answers the default as it stands; sets the last status.
std::string ReadRegString(const std::string &name, const std::string &defaultValue, bool raw = false);

// Reads a number, answering the default on every failure; sets the last status. Of a value of another type the first
// four bytes count.
uint32_t ReadRegInteger(const std::string &name, uint32_t defaultValue);

// Whether a key, or with a name that is not empty a value of it, can be read in the view of this process. Takes the
// path exactly as parsed: Windows refuses a leading back-slash, so that the answer for such a path is no.
bool RegValueExists(const RegLocation &location, const std::string &name);

// The writers. A section that is not empty is refused with 1539. All answer the status, and set the last status.
uint16_t WriteRegString(const std::string &section, const std::string &name, const std::string &text, DWORD type);
// Leaves a value without text, where writing an empty one deletes it.
uint16_t EmptyRegString(const std::string &name);
uint16_t WriteRegDword(const std::string &section, const std::string &name, uint32_t number);
uint16_t RemoveFromRegMultiString(const std::string &section, const std::string &name, const std::string &text,
                                  DWORD type);

// Deletes a key with everything below it. Answers a platform error number, 0 for success.
LONG DeleteKeyRecursive(const RegLocation &location);

// The registry that a piece of work sees.
enum ERegView {
    ERegViewProcess, // the one of a 32-bit process
    ERegView64,      // the one of 64-bit Windows
};

// Does `work` with the location on the stack and the view set, and takes both back, also when `work` throws. Answers
// what it answered, a status. A location without a path is refused: its status is answered and set, and `work` is not
// done, because readers and writers would work on another key than the one named.
[[nodiscard]] uint16_t AtRegLocation(const RegLocation &location, ERegView view, const std::function<uint16_t()> &work);

// Reads a text of a location; the default when it is refused, too.
std::string ReadRegStringAt(const RegLocation &location, ERegView view, const std::string &name,
                            const std::string &defaultValue, bool raw);
