// Registry access one level below the steps; what the steps make of it is shown by whole runs.
#include "RegistryTest.h"

#include <map>
#include <tuple>

#include "Common/Status.h"
#include "Installer/ScriptAccess.h"

namespace {

LONG Read(const std::string &name, std::string &data_O, DWORD room = 100)
{
    data_O.assign(room, 'x');
    DWORD type = 77;
    const LONG error = RegAccess(name, &data_O[0], room, type, false);
    data_O.resize(room);
    return error;
}

LONG Write(std::string data)
{
    DWORD size = static_cast<DWORD>(data.size()) + 1;
    DWORD type = REG_SZ;
    return RegAccess("v", &data[0], size, type, true);
}

using RegAccessTest = RegistryTest;

TEST_F(RegAccessTest, WorksOnTheTopOfTheStack)
{
    const RegLocation noPath = Plain("");
    EXPECT_EQ(PushRegLocation(noPath), TVXSTATUS_KEY_NOT_FOUND);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);
    ASSERT_EQ(PushRegLocation(At()), TVXSTATUS_SUCCESS);
    ASSERT_EQ(PushRegLocation(At("Inner")), TVXSTATUS_SUCCESS);
    EXPECT_EQ(Write("inner"), ERROR_SUCCESS);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_SUCCESS);
    EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, kBase + "\\Inner", "v"), "inner");
    {
        const CRegLocationScope scope(At("Inner"), true);
        EXPECT_EQ(scope.Status(), TVXSTATUS_SUCCESS);
        EXPECT_EQ(Write("64"), ERROR_SUCCESS);
        const CRegLocationScope refused(noPath);
        EXPECT_EQ(refused.Status(), TVXSTATUS_KEY_NOT_FOUND);
    }
    EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, kBase + "\\Inner", "v", EView64), "64");
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_SUCCESS);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);
}

TEST_F(RegAccessTest, ReadingTellsMissingKeyMissingValueAndTheRestApart)
{
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "text", RegText("0123456789"));
    for (const auto &[name, room, expected] : {std::tuple("missing", 100u, ERROR_FILE_NOT_FOUND),
                                               {"text", 11u, ERROR_SUCCESS},
                                               {"text", 5u, ERROR_MORE_DATA},
                                               {"text", 0u, ERROR_INVALID_DATA}}) {
        const CRegLocationScope scope(At());
        std::string data;
        EXPECT_EQ(Read(name, data, room), expected) << name;
        EXPECT_EQ(data, expected == ERROR_SUCCESS ? std::string("0123456789", 11) : "");
        EXPECT_EQ(mTrace.Take(),
                  expected == ERROR_MORE_DATA ? Records{"lRegResult == ERROR_FILE_NOT_FOUND"} : Records());
    }
    const CRegLocationScope missing(At("Missing"));
    std::string data;
    EXPECT_EQ(Read("text", data), ERROR_PATH_NOT_FOUND);
    DWORD size = 5;
    DWORD type = REG_SZ;
    EXPECT_EQ(RegAccess("text", nullptr, size, type, true), ERROR_INVALID_DATA);
    for (const auto &[error, status] : std::map<LONG, uint16_t>{
             {0, 0}, {2, 1548}, {3, 1542}, {13, 1536}, {21, 1536}, {234, 1538}, {5, 1536}, {-1, 1536}}) {
        EXPECT_EQ(StatusFromRegError(error), status) << error;
    }
}

TEST_F(RegAccessTest, WritersRefuseASectionAndSetTheLastStatus)
{
    const CRegLocationScope scope(At());
    EXPECT_EQ(WriteRegString("MAIN", "v", "x", REG_SZ), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(WriteRegDword("MAIN", "v", 1), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(RemoveFromRegMultiString("MAIN", "v", "x", REG_MULTI_SZ), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(Value("v"), std::nullopt);
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(WriteRegString("", "v", "text", REG_EXPAND_SZ), TVXSTATUS_SUCCESS);
    EXPECT_EQ(RemoveFromRegMultiString("", "v", "text", REG_SZ), TVXSTATUS_SUCCESS);
    EXPECT_EQ(mTrace.Take(), Records{"!\"This function currently only works for multi-strings\""});
    EXPECT_EQ(WriteRegString("", "v", "", REG_SZ), TVXSTATUS_VALUE_NOT_FOUND);
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_VALUE_NOT_FOUND);
}

TEST_F(RegAccessTest, DataWithoutItsEndIsTakenForWhatItIs)
{
    // The wide entry stores the text as it is; a NUL right behind it might be taken along.
    HKEY key;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kBase.c_str(), 0, KEY_SET_VALUE, &key), ERROR_SUCCESS);
    RegSetValueExW(key, L"text", 0, REG_SZ, reinterpret_cast<const BYTE *>(L"abc#"), 6);
    RegSetValueExW(key, L"list", 0, REG_MULTI_SZ, reinterpret_cast<const BYTE *>(L"a\0bc#"), 8);
    RegCloseKey(key);
    const CRegLocationScope scope(At());
    for (const bool raw : {true, false}) {
        EXPECT_EQ(ReadString("", "text", "default", raw), "abc");
    }
    // The last byte goes unseen as the list's end, whether it is that or not.
    EXPECT_EQ(WriteRegString("", "list", "d", REG_MULTI_SZ), TVXSTATUS_SUCCESS);
    EXPECT_EQ(Value("list"), (RegData{REG_MULTI_SZ, std::string("a\0bd\0\0", 6)}));
}

TEST_F(RegAccessTest, NamesOfEveryByteAndOfAnyLengthNameThemselvesOrNothing)
{
    std::string every;
    for (int byte = 1; byte < 256; ++byte) {
        every += static_cast<char>(byte);
    }
    {
        const CRegLocationScope scope(At());
        EXPECT_EQ(WriteRegString("", every, every, REG_SZ), TVXSTATUS_SUCCESS);
        EXPECT_EQ(ReadString("", every, "", true), every);
        EXPECT_EQ(WriteRegString("", every, "", REG_SZ), TVXSTATUS_SUCCESS);
        for (const size_t length : {16384u, 32767u, 65540u, 70000u}) {
            EXPECT_NE(WriteRegString("", std::string(length, 'n'), "x", REG_SZ), TVXSTATUS_SUCCESS) << length;
        }
    }
    for (const size_t length : {256u, 32000u, 65539u, 140000u}) {
        const CRegLocationScope scope(At(std::string(length, 'k')));
        EXPECT_NE(WriteRegString("", "v", "x", REG_SZ), TVXSTATUS_SUCCESS) << length;
        EXPECT_NE(WriteRegString("", "@", "", REG_SZ), TVXSTATUS_SUCCESS) << length;
    }
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, kBase.c_str()), ERROR_SUCCESS) << "there are keys in it";
}

} // namespace
