// What the steps do not show of the readers: registry values as they are stored, and why a value could not be read.
#include "Installer/ScriptAccess.h"

#include <gtest/gtest.h>

#include "../system/Registry.h"
#include "Actions/RegAccess.h"
#include "Common/Status.h"

namespace {

const char kKey[] = "Software\\TAVIX\\Tests\\Reader";

// A value of a key, read with the data given as it is stored.
std::string Read(const std::string &key, const std::string &name, bool raw, const RegData &data)
{
    WriteValue(HKEY_LOCAL_MACHINE, kKey, "v", data);
    RegLocation location;
    location.mRootKey = kRootLocalMachine;
    location.mPath = "\\" + key;
    const CRegLocationScope scope(location);
    const uint32_t number = ReadInteger("", name, 7);
    const uint16_t status = GetLastStatus();
    const std::string text = ReadString("", name, "C:\\temp\\0x", raw); // the default stays as it stands
    EXPECT_TRUE(GetLastStatus() == status || status == TVXSTATUS_FAILURE) << name;
    EXPECT_TRUE(GetLastStatus() == TVXSTATUS_SUCCESS || number == 7) << name;
    return text + " " + std::to_string(GetLastStatus());
}

TEST(ScriptAccess, ValuesAsTheyAreStoredAndTheReasonsOfFailures)
{
    const RegistrySnapshot snapshot(HKEY_LOCAL_MACHINE, "Software\\TAVIX\\Tests");
    SetEnvironmentVariableA("TAVIX_READER", "C:\\temp");
    const std::pair<RegData, std::string> kRaw[] = {
        {RegText("a\\tb"), "a\\tb 0"},
        {{REG_SZ, "abc"}, "abc 0"}, // without a NUL
        {{REG_SZ, std::string("a\0b\0", 4)}, std::string("a\0b 0", 5)},
        {RegText("%TAVIX_READER%\\n", REG_EXPAND_SZ), "C:\\temp\\n 0"},
        {{REG_MULTI_SZ, std::string("one\0two\0\0", 9)}, std::string("one\0two\0\0 0", 11)},
        {{REG_BINARY, std::string("ab\0", 3)}, "ab 0"},
        {RegText(std::string(10239, 'x')), std::string(10239, 'x') + " 0"},
        {RegText(std::string(10240, 'x')), "C:\\temp\\0x " + std::to_string(TVXSTATUS_BUFFER_TOO_SMALL)}};
    for (const auto &[data, read] : kRaw) {
        EXPECT_EQ(Read(kKey, "v", true, data), read);
    }
    SetEnvironmentVariableA("TAVIX_READER", nullptr);
    EXPECT_EQ(Read(kKey, "missing", false, {}), "C:\\temp\\0x " + std::to_string(TVXSTATUS_VALUE_NOT_FOUND));
    EXPECT_EQ(Read("Missing", "v", false, {}), "C:\\temp\\0x " + std::to_string(TVXSTATUS_KEY_NOT_FOUND));
}

TEST(ScriptAccess, ThePointAndNothingOnlyAskForThePath)
{
    const std::string former = SetConfigFile(".\\tavix-other.dat");
    EXPECT_EQ(SetConfigFile("."), ".\\tavix-other.dat");
    EXPECT_EQ(SetConfigFile(""), ".\\tavix-other.dat");
    EXPECT_EQ(SetConfigFile(former.empty() ? ".\\installer.dat" : former), ".\\tavix-other.dat");
}

} // namespace
