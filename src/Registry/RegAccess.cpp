#include "Registry/RegAccess.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "Common/CSystemState.h"
#include "Common/Escapes.h"
#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/Status.h"
#include "Common/Trace.h"
#include "Registry/KeyPermissions.h"
#include "Registry/MultiString.h"

namespace {

constexpr uint32_t kViewBits = KEY_WOW64_64KEY | KEY_WOW64_32KEY;

std::vector<RegLocation> gLocations;
uint32_t gView = 0;

// Windows counts the bytes of a text in 16 bits and lets some of its entries cut a longer one to the rest, which names
// another key or value. Its own limits lie far below (255 characters a key, 16383 a value name).
bool CanBeNamed(const std::string &text)
{
    return text.size() <= 0x7FFF;
}

HKEY KeyOf(const RegLocation &location)
{
    return reinterpret_cast<HKEY>(location.mRootKey);
}

// Where readers and writers work now, with the path as Windows takes it: less one leading back-slash.
RegLocation CurrentLocation()
{
    RegLocation location;
    if (gLocations.empty()) {
        location.mRootKey = kRootLocalMachine;
        location.mPath = "\\Software\\TAVIX\\Installer";
    } else {
        location = gLocations.back();
    }
    if (location.mPath.compare(0, 1, "\\") == 0) {
        location.mPath.erase(0, 1);
    }
    return location;
}

// A failure other than the expected one, something that is not there, is reported.
LONG Reported(LONG lRegResult)
{
    if (lRegResult != ERROR_SUCCESS && lRegResult != ERROR_FILE_NOT_FOUND) {
        traceExpectation("lRegResult == ERROR_FILE_NOT_FOUND");
    }
    return lRegResult;
}

LONG ReadValue(const RegLocation &location, const char *name, void *data, DWORD &size_I_O, DWORD &type_O)
{
    std::memset(data, 0, size_I_O);
    type_O = 0;
    CRegKey key;
    LONG result = RegOpenKeyExA(KeyOf(location), location.mPath.c_str(), 0, gView | KEY_QUERY_VALUE, key.Receive());
    if (result == ERROR_FILE_NOT_FOUND) {
        return ERROR_PATH_NOT_FOUND;
    }
    if (result != ERROR_SUCCESS) {
        return Reported(result);
    }
    result = RegQueryValueExA(key.Get(), name, nullptr, &type_O, static_cast<BYTE *>(data), &size_I_O);
    if (result != ERROR_SUCCESS) {
        size_I_O = 0;
    }
    return Reported(result);
}

LONG DeleteValue(const RegLocation &location, const char *name)
{
    CRegKey key;
    const LONG result = RegOpenKeyExA(KeyOf(location), location.mPath.c_str(), 0, gView | KEY_SET_VALUE, key.Receive());
    return result == ERROR_SUCCESS ? RegDeleteValueA(key.Get(), name) : result;
}

LONG SetValue(const RegLocation &location, const char *name, const void *data, DWORD size, DWORD type)
{
    CRegKey key;
    const LONG result = RegCreateKeyExA(KeyOf(location), location.mPath.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                        gView | KEY_SET_VALUE, nullptr, key.Receive(), nullptr);
    if (result != ERROR_SUCCESS) {
        return result;
    }
    if (!location.mPermissions.empty()) {
        // Its outcome is in the trace; a key that could not be opened up for users gets its value all the same.
        SetKeyPermissions(location);
    }
    return RegSetValueExA(key.Get(), name, 0, type, static_cast<const BYTE *>(data), size);
}

uint16_t Settle(uint16_t status)
{
    SetLastStatus(status);
    return status;
}

// Hands data to RegAccess as a write. std::string keeps a zero byte behind its last one, which Windows looks at when a
// text comes without a zero byte of its own.
LONG WriteData(const std::string &name, std::string &data, DWORD type)
{
    DWORD size = static_cast<DWORD>(data.size());
    return RegAccess(name, &data[0], size, type, true);
}

// Writes data that begins with a zero byte, which RegAccess takes for a deletion.
LONG WriteAsItStands(const std::string &name, const std::string &data, DWORD type)
{
    const RegLocation location = CurrentLocation();
    if (!CanBeNamed(location.mPath) || !CanBeNamed(name)) {
        return ERROR_INVALID_PARAMETER;
    }
    return Reported(
        SetValue(location, name == "@" ? "" : name.c_str(), data.data(), static_cast<DWORD>(data.size()), type));
}

// Hands a list to RegAccess as a write, or past it when it has entries and the first one is empty.
LONG WriteList(const std::string &name, std::string &list, bool hasEntries)
{
    const bool beginsEmpty = hasEntries && !list.empty() && list.front() == '\0';
    return beginsEmpty ? WriteAsItStands(name, list, REG_MULTI_SZ) : WriteData(name, list, REG_MULTI_SZ);
}

std::string ExpandEnvironment(const char *text)
{
    std::vector<char> expanded(kRegValueSize + 1, '\0');
    ExpandEnvironmentStringsA(text, expanded.data(), static_cast<DWORD>(kRegValueSize));
    return expanded.data();
}

// A value as the registry holds it: by its size, less one closing NUL unless the NULs are part of a list.
std::string RawText(const std::vector<char> &buffer, size_t size, DWORD type)
{
    if (type == REG_EXPAND_SZ) {
        return ExpandEnvironment(buffer.data());
    }
    if (type != REG_MULTI_SZ && size > 0 && buffer[size - 1] == '\0') {
        --size;
    }
    return std::string(buffer.data(), size);
}

// Pushes a location for the length of a scope and pops it; sets the 64-bit view with it when asked for.
class CRegLocationScope {
public:
    CRegLocationScope(const RegLocation &location, ERegView view)
        : mStatus(PushRegLocation(location)), mView64(view == ERegView64)
    {
        if (mView64) {
            SetRegView(KEY_WOW64_64KEY);
        }
    }
    ~CRegLocationScope()
    {
        if (mView64) {
            SetRegView(0);
        }
        if (mStatus == TVXSTATUS_SUCCESS) {
            PopRegLocation();
        }
    }
    CRegLocationScope(const CRegLocationScope &) = delete;
    CRegLocationScope &operator=(const CRegLocationScope &) = delete;

    uint16_t Status() const { return mStatus; }

private:
    uint16_t mStatus;
    bool mView64;
};

} // namespace

uint16_t PushRegLocation(const RegLocation &location)
{
    if (location.mPath.empty()) {
        return TVXSTATUS_KEY_NOT_FOUND;
    }
    gLocations.push_back(location);
    return TVXSTATUS_SUCCESS;
}

uint16_t PopRegLocation()
{
    if (gLocations.empty()) {
        return TVXSTATUS_KEY_NOT_FOUND;
    }
    gLocations.pop_back();
    return TVXSTATUS_SUCCESS;
}

void SetRegView(uint32_t mask)
{
    gView = mask & kViewBits;
}

// In a write empty data deletes, which is how scripts take values and keys away: a text whose first byte is zero under
// the unnamed value deletes the key with everything below it, whatever the type, so that a number with a zero low byte
// does too; under any other name it deletes the value, unless the type is REG_DWORD.
LONG RegAccess(const std::string &name, void *data, DWORD &size_I_O, DWORD &type_I_O, bool write)
{
    if (data == nullptr || size_I_O == 0) {
        return ERROR_INVALID_DATA;
    }
    const RegLocation location = CurrentLocation();
    if (!CanBeNamed(location.mPath) || !CanBeNamed(name)) {
        return ERROR_INVALID_PARAMETER;
    }
    const char *const valueName = name == "@" ? "" : name.c_str();
    if (!write) {
        return ReadValue(location, valueName, data, size_I_O, type_I_O);
    }
    const bool isEmpty = *static_cast<const char *>(data) == 0;
    if (isEmpty && *valueName == 0) {
        const LONG result = Reported(DeleteKeyRecursive(location));
        return result == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND : result;
    }
    if (isEmpty && type_I_O != REG_DWORD) {
        return Reported(DeleteValue(location, valueName));
    }
    return Reported(SetValue(location, valueName, data, size_I_O, type_I_O));
}

uint16_t StatusFromRegError(LONG error)
{
    switch (error) {
    case ERROR_SUCCESS:
        return TVXSTATUS_SUCCESS;
    case ERROR_FILE_NOT_FOUND:
        return TVXSTATUS_VALUE_NOT_FOUND;
    case ERROR_PATH_NOT_FOUND:
        return TVXSTATUS_KEY_NOT_FOUND;
    case ERROR_MORE_DATA:
        return TVXSTATUS_BUFFER_TOO_SMALL;
    default:
        return TVXSTATUS_FAILURE;
    }
}

std::string ReadRegString(const std::string &name, const std::string &defaultValue, bool raw)
{
    std::vector<char> buffer(kRegValueSize + 2, '\0'); // two NULs always stand behind the data
    DWORD size = static_cast<DWORD>(kRegValueSize);
    DWORD type = REG_NONE;
    const LONG error = RegAccess(name, buffer.data(), size, type, false);
    SetLastStatus(StatusFromRegError(error));
    if (error != ERROR_SUCCESS) {
        return defaultValue;
    }
    const DWORD dwType = type;
    if (!((dwType == REG_SZ) || (dwType == REG_EXPAND_SZ) || (dwType == REG_MULTI_SZ))) {
        traceExpectation("(dwType == REG_SZ) || (dwType == REG_EXPAND_SZ) || (dwType == REG_MULTI_SZ)");
    }
    return raw ? RawText(buffer, size, type) : UnescapeValue(buffer.data(), buffer.size());
}

uint32_t ReadRegInteger(const std::string &name, uint32_t defaultValue)
{
    // Room for more than a number: a value of another type is reported, and its first four bytes are used.
    unsigned char buffer[kRegValueSize] = {};
    DWORD size = sizeof buffer;
    DWORD type = REG_NONE;
    const LONG error = RegAccess(name, buffer, size, type, false);
    if (error != ERROR_SUCCESS) {
        const uint16_t status = StatusFromRegError(error);
        const bool missing = status == TVXSTATUS_VALUE_NOT_FOUND || status == TVXSTATUS_KEY_NOT_FOUND;
        SetLastStatus(missing ? status : TVXSTATUS_FAILURE);
        return defaultValue;
    }
    SetLastStatus(TVXSTATUS_SUCCESS);
    if (type != REG_DWORD) {
        traceExpectation("dwType == REG_DWORD");
    }
    uint32_t number = 0;
    std::memcpy(&number, buffer, sizeof number);
    return number;
}

bool RegValueExists(const RegLocation &location, const std::string &name)
{
    CRegKey key;
    if (RegOpenKeyExA(KeyOf(location), location.mPath.c_str(), 0, KEY_READ, key.Receive()) != ERROR_SUCCESS) {
        return false;
    }
    return name.empty() ||
           RegQueryValueExA(key.Get(), name.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

uint16_t WriteRegString(const std::string &section, const std::string &name, const std::string &text, DWORD type)
{
    if (!section.empty()) {
        return Settle(TVXSTATUS_NOT_SUPPORTED);
    }
    if (type != REG_MULTI_SZ) {
        std::string data = text;
        data += '\0';
        return Settle(StatusFromRegError(WriteData(name, data, type)));
    }
    std::string list = ReadRegString(name, std::string(), true);
    if (GetLastStatus() == TVXSTATUS_BUFFER_TOO_SMALL) {
        // A list that does not fit the reader's buffer reads as none. Writing it back with the one new entry would
        // throw all the others away, so it is left alone.
        return TVXSTATUS_BUFFER_TOO_SMALL;
    }
    if (!AppendEntry(list, text)) {
        return Settle(TVXSTATUS_SUCCESS);
    }
    return Settle(StatusFromRegError(WriteList(name, list, !text.empty())));
}

uint16_t EmptyRegString(const std::string &name)
{
    return Settle(StatusFromRegError(WriteAsItStands(name, std::string(1, '\0'), REG_SZ)));
}

uint16_t WriteRegDword(const std::string &section, const std::string &name, uint32_t number)
{
    if (!section.empty()) {
        return Settle(TVXSTATUS_NOT_SUPPORTED);
    }
    DWORD size = sizeof(number);
    DWORD type = REG_DWORD;
    const uint16_t status = StatusFromRegError(RegAccess(name, &number, size, type, true));
    // Nothing is read here, so the buffer's status has no place.
    return Settle(status == TVXSTATUS_BUFFER_TOO_SMALL ? TVXSTATUS_FAILURE : status);
}

uint16_t RemoveFromRegMultiString(const std::string &section, const std::string &name, const std::string &text,
                                  DWORD type)
{
    if (!section.empty()) {
        return Settle(TVXSTATUS_NOT_SUPPORTED);
    }
    std::string data(1, '\0');
    bool hasEntries = false;
    if (type != REG_MULTI_SZ) {
        traceExpectation("!\"This function currently only works for multi-strings\"");
    } else {
        // A list that cannot be read is empty here, and RegAccess refuses data of no length.
        data = ReadRegString(name, std::string(), true);
        const bool removed = RemoveEntry(data, text);
        // Two zero bytes alone are an empty list as other programs write it, unless an entry has just stood there.
        hasEntries = data.find_first_not_of('\0') != std::string::npos || (removed && data.size() > 1);
    }
    return Settle(StatusFromRegError(hasEntries ? WriteList(name, data, true) : WriteData(name, data, type)));
}

uint16_t AtRegLocation(const RegLocation &location, ERegView view, const std::function<uint16_t()> &work)
{
    const CRegLocationScope scope(location, view);
    return scope.Status() == TVXSTATUS_SUCCESS ? work() : Settle(scope.Status());
}

std::string ReadRegStringAt(const RegLocation &location, ERegView view, const std::string &name,
                            const std::string &defaultValue, bool raw)
{
    std::string text = defaultValue;
    static_cast<void>(AtRegLocation(location, view, [&] {
        text = ReadRegString(name, defaultValue, raw);
        return GetLastStatus();
    }));
    return text;
}

// --- deletion ------------------------------------------------------------------------------------------------------

namespace {

// XP lacks the entry that takes a view; the two are bound by name at each deletion.
bool BindKeyDeleter(bool &withView_O)
{
    withView_O = !IsOSTypeXP(CSystemState::GetOSType());
    if (withView_O ? AdvApi32().RegDeleteKeyExA.Get() != nullptr : AdvApi32().RegDeleteKeyA.Get() != nullptr) {
        return true;
    }
    traceExpectation(withView_O ? "!\"Could not load RegDeleteKeyEx function\""
                                : "!\"Could not load RegDeleteKey function\"");
    return false;
}

LONG DeleteEmptyKey(bool withView, const RegLocation &location)
{
    if (!withView) {
        trace(1, "DeleteKeyRecursive: using RegDeleteKey...\n");
        return AdvApi32().RegDeleteKeyA(KeyOf(location), location.mPath.c_str());
    }
    trace(1, "DeleteKeyRecursive: using RegDeleteKeyEx...\n");
    return AdvApi32().RegDeleteKeyExA(KeyOf(location), location.mPath.c_str(), gView, 0);
}

} // namespace

LONG DeleteKeyRecursive(const RegLocation &location)
{
    bool withView = false;
    if (!BindKeyDeleter(withView)) {
        return ERROR_NOT_FOUND;
    }
    const char *const path = location.mPath.c_str();
    trace(1, "DeleteKeyRecursive: basePath_I: %s\n", path);
    if (location.mPath.find_first_not_of('\\') == std::string::npos) {
        return ERROR_BADKEY; // no path, or one that Windows takes for the root HKEY_CLASSES_ROOT itself
    }
    if (!CanBeNamed(location.mPath)) {
        return ERROR_INVALID_PARAMETER;
    }
    CRegKey key;
    LONG result = RegOpenKeyExA(KeyOf(location), path, 0, gView | DELETE | KEY_ENUMERATE_SUB_KEYS, key.Receive());
    if (result != ERROR_SUCCESS) {
        trace(1, "DeleteKeyRecursive: RegOpenKeyEx on %s FAILED with status: %i\n", path, static_cast<int>(result));
        return result;
    }
    for (;;) {
        char name[256] = "";
        DWORD length = sizeof(name);
        // Always the first one: each that is found disappears.
        result = RegEnumKeyExA(key.Get(), 0, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_NO_MORE_ITEMS) {
            break;
        }
        if (result != ERROR_SUCCESS) {
            trace(1, "DeleteKeyRecursive: RegEnumKeyEx on %s FAILED with status: %i\n", name, static_cast<int>(result));
            return result;
        }
        trace(1, "DeleteKeyRecursive: Subkey found: %s\n", name);
        RegLocation subKey;
        subKey.mRootKey = reinterpret_cast<RegRoot>(key.Get());
        subKey.mPath = name;
        result = DeleteKeyRecursive(subKey);
        if (result != ERROR_SUCCESS) {
            return result;
        }
    }
    trace(1, "DeleteKeyRecursive: deleting key: %s\n", path);
    result = DeleteEmptyKey(withView, location);
    if (result != ERROR_SUCCESS) {
        trace(1, "DeleteKeyRecursive: RegDeleteKey on %s FAILED with status: %i\n", path, static_cast<int>(result));
    }
    return result;
}
