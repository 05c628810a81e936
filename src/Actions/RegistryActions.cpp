#include "Actions/RegistryActions.h"

#include "Actions/RegAccess.h"
#include "Common/Numbers.h"
#include "Common/Paths.h"
#include "Common/Status.h"
#include "Common/Trace.h"
#include "Installer/ScriptAccess.h"
#include "Installer/Step.h"

namespace {

// The number read when there is none. It never decides: the status does.
constexpr uint32_t kNoNumber = 65535;

} // namespace

bool RegKeyExists(const std::string &key, const std::string &name)
{
    const RegLocation location = ParseRegPath(key);
    const bool exists = RegValueExists(location, name);
    trace(7, exists ? "Key %s, Name %s, Exists\n" : "Key %s, Name %s, Does not exist\n", location.mPath.c_str(),
          name.c_str());
    return exists;
}

bool CheckRegDword(const std::string &key, const std::string &name, const std::string &value)
{
    const RegLocation location = ParseRegPath(key);
    const uint32_t expected = static_cast<uint32_t>(DecimalNumber(value));
    uint32_t number = kNoNumber;
    {
        const CRegLocationScope scope(location);
        if (scope.Status() == TVXSTATUS_SUCCESS) {
            number = ReadInteger(std::string(), name, kNoNumber);
        } else {
            SetLastStatus(scope.Status());
        }
    }
    trace(7, "CheckRegDWORD: %s, %s, %s\n", location.mPath.c_str(), name.c_str(), value.c_str());
    if (GetLastStatus() != TVXSTATUS_SUCCESS) {
        trace(7, "CheckRegDWORD failed: Error reading registry key: %d\n", GetLastStatus());
        return false;
    }
    if (number == expected) {
        trace(7, ", CheckRegDWORD passed\n");
        return true;
    }
    trace(7, "CheckRegDWORD failed: Registry key is set to %d, not %d\n", static_cast<int>(number),
          static_cast<int>(expected));
    return false;
}

bool SetRegValue(const std::string &key, const std::string &name, const std::string &value,
                 const std::string &permissions, DWORD type, bool view64)
{
    RegLocation location = ParseRegPath(key);
    location.mPermissions = permissions;
    uint16_t status;
    {
        const CRegLocationScope scope(location, view64);
        status = scope.Status();
        if (status == TVXSTATUS_SUCCESS) {
            status = WriteRegString(std::string(), name, value, type);
        }
    }
    trace(7, "Key: %s, Name: %s, Value: %s, Perms: %s, status: 0x%X\n", location.mPath.c_str(), name.c_str(),
          value.c_str(), permissions.c_str(), status);
    return status == TVXSTATUS_SUCCESS;
}

bool SetRegDword(const std::string &key, const std::string &name, const std::string &value, bool view64)
{
    const RegLocation location = ParseRegPath(key);
    const int32_t number = DecimalNumber(value);
    uint16_t status;
    {
        const CRegLocationScope scope(location, view64);
        status = scope.Status();
        if (status == TVXSTATUS_SUCCESS) {
            status = value.empty() ? WriteRegString(std::string(), name, value, REG_SZ)
                                   : WriteRegDword(std::string(), name, static_cast<uint32_t>(number));
        }
    }
    trace(7, "Key %s, Name %s, Value %i, status 0x%X\n", location.mPath.c_str(), name.c_str(), static_cast<int>(number),
          status);
    return status == TVXSTATUS_SUCCESS;
}

bool RemoveRegMultiEntry(const std::string &key, const std::string &name, const std::string &value, bool view64)
{
    const RegLocation location = ParseRegPath(key);
    uint16_t status;
    {
        const CRegLocationScope scope(location, view64);
        status = scope.Status();
        if (status == TVXSTATUS_SUCCESS) {
            status = RemoveFromRegMultiString(std::string(), name, value, REG_MULTI_SZ);
        }
    }
    trace(7, "Key %s, Name %s, Value %s, status 0x%X\n", location.mPath.c_str(), name.c_str(), value.c_str(), status);
    return status == TVXSTATUS_SUCCESS;
}

void RegValueFromOemFile(const std::string &section, CStep &step)
{
    const std::string file = step.Expanded();
    trace(7, "Oem File %s\n", file.c_str());
    if (!PathExists(file)) {
        trace(7, "Missing\n");
        return;
    }
    const std::string name = step.Plain();
    trace(7, "Get %s/%s\n", section.c_str(), name.c_str());
    const std::string script = SetConfigFile(file);
    const std::string value = ReadString(section, name, std::string(), true);
    SetConfigFile(script);
    if (value.empty()) {
        trace(7, "Empty\n");
        return;
    }
    const RegLocation location = ParseRegPath(step.Plain());
    uint16_t status;
    {
        const CRegLocationScope scope(location);
        status = scope.Status();
        if (status == TVXSTATUS_SUCCESS) {
            status = WriteRegString(std::string(), name, value, REG_SZ);
        }
    }
    // The record has always shown a text through a number format, that is as the address it happens to have, and those
    // who read the trace skip the number. The conversion says the same without handing a pointer to %i.
    const int address = static_cast<int>(reinterpret_cast<intptr_t>(value.c_str()));
    trace(7, "Value %i, Set %s/%s, status 0x%X\n", address, location.mPath.c_str(), name.c_str(), status);
}
