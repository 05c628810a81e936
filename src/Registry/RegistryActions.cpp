#include "Registry/RegistryActions.h"

#include "Common/Numbers.h"
#include "Common/Status.h"
#include "Common/Trace.h"

bool RegKeyExists(const RegLocation &location, const std::string &name)
{
    const bool exists = RegValueExists(location, name);
    trace(7, exists ? "Key %s, Name %s, Exists\n" : "Key %s, Name %s, Does not exist\n", location.mPath.c_str(),
          name.c_str());
    return exists;
}

bool CheckRegDword(const RegLocation &location, const std::string &name, const std::string &value)
{
    const uint32_t expected = static_cast<uint32_t>(DecimalNumber(value));
    uint32_t number = 0;
    const uint16_t status = AtRegLocation(location, ERegViewProcess, [&] {
        number = ReadRegInteger(name, 65535); // never decides: the status does
        return GetLastStatus();
    });
    trace(7, "CheckRegDWORD: %s, %s, %s\n", location.mPath.c_str(), name.c_str(), value.c_str());
    if (status != TVXSTATUS_SUCCESS) {
        trace(7, "CheckRegDWORD failed: Error reading registry key: %d\n", status);
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

bool SetRegValue(const RegLocation &location, const std::string &name, const std::string &value, DWORD type,
                 ERegView view)
{
    const uint16_t status =
        AtRegLocation(location, view, [&] { return WriteRegString(std::string(), name, value, type); });
    trace(7, "Key: %s, Name: %s, Value: %s, Perms: %s, status: 0x%X\n", location.mPath.c_str(), name.c_str(),
          value.c_str(), location.mPermissions.c_str(), status);
    return status == TVXSTATUS_SUCCESS;
}

bool SetRegDword(const RegLocation &location, const std::string &name, const std::string &value, ERegView view)
{
    const int32_t number = DecimalNumber(value);
    const uint16_t status = AtRegLocation(location, view, [&] {
        return value.empty() ? WriteRegString(std::string(), name, value, REG_SZ)
                             : WriteRegDword(std::string(), name, static_cast<uint32_t>(number));
    });
    trace(7, "Key %s, Name %s, Value %i, status 0x%X\n", location.mPath.c_str(), name.c_str(), static_cast<int>(number),
          status);
    return status == TVXSTATUS_SUCCESS;
}

bool RemoveRegMultiEntry(const RegLocation &location, const std::string &name, const std::string &value, ERegView view)
{
    const uint16_t status = AtRegLocation(
        location, view, [&] { return RemoveFromRegMultiString(std::string(), name, value, REG_MULTI_SZ); });
    trace(7, "Key %s, Name %s, Value %s, status 0x%X\n", location.mPath.c_str(), name.c_str(), value.c_str(), status);
    return status == TVXSTATUS_SUCCESS;
}

void SetOemRegValue(const RegLocation &location, const std::string &name, const std::string &value)
{
    const uint16_t status =
        AtRegLocation(location, ERegViewProcess, [&] { return WriteRegString(std::string(), name, value, REG_SZ); });
    // The record has always shown a text through a number format, that is as the address it happens to have, and those
    // who read the trace skip the number. The conversion says the same without handing a pointer to %i.
    const int address = static_cast<int>(reinterpret_cast<intptr_t>(value.c_str()));
    trace(7, "Value %i, Set %s/%s, status 0x%X\n", address, location.mPath.c_str(), name.c_str(), status);
}
