#include "RegistryTest.h"

#include <fstream>

#include "Common/Status.h"
#include "Installer/ScriptAccess.h"

namespace {

const char *const kUnexpected = "lRegResult == ERROR_FILE_NOT_FOUND";

LONG Read(const std::string &name, std::string &data_O, DWORD &type_O, DWORD room = 100)
{
    data_O.assign(room, 'x');
    const LONG error = RegAccess(name, &data_O[0], room, type_O, false);
    data_O.resize(room);
    return error;
}

LONG Write(const std::string &name, std::string data, DWORD type)
{
    DWORD size = static_cast<DWORD>(data.size());
    return RegAccess(name, &data[0], size, type, true);
}

using RegAccessTest = RegistryTest;

TEST_F(RegAccessTest, WorksOnTheTopOfTheStackAlone)
{
    RegLocation noPath;
    noPath.mRootKey = kRootCurrentUser;
    EXPECT_EQ(PushRegLocation(noPath), TVXSTATUS_KEY_NOT_FOUND);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);

    ASSERT_EQ(PushRegLocation(At("Outer")), TVXSTATUS_SUCCESS);
    ASSERT_EQ(PushRegLocation(At("Inner")), TVXSTATUS_SUCCESS);
    EXPECT_EQ(Write("v", std::string("inner", 6), REG_SZ), ERROR_SUCCESS);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_SUCCESS);
    EXPECT_EQ(Write("v", std::string("outer", 6), REG_SZ), ERROR_SUCCESS);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_SUCCESS);
    EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, kBase + "\\Inner", "v"), "inner");
    EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, kBase + "\\Outer", "v"), "outer");

    {
        const CRegLocationScope scope(At("Outer"), true);
        EXPECT_EQ(scope.Status(), TVXSTATUS_SUCCESS);
        EXPECT_EQ(Write("v", std::string("64", 3), REG_SZ), ERROR_SUCCESS);
        const CRegLocationScope refused(noPath);
        EXPECT_EQ(refused.Status(), TVXSTATUS_KEY_NOT_FOUND);
    }
    EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, kBase + "\\Outer", "v", EView64), "64");
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);
}

TEST_F(RegAccessTest, ViewMaskChoosesTheRegistryAndHasNoOtherBits)
{
    const CRegLocationScope scope(At());
    static const struct {
        uint32_t mask;
        EView view;
    } kRows[] = {{0, EProcessView}, {0x100, EView64}, {0x200, EView32}, {0x110, EView64}};
    for (const auto &row : kRows) {
        SetRegView(row.mask);
        const std::string text = std::to_string(row.mask);
        EXPECT_EQ(Write("v", text + '\0', REG_SZ), ERROR_SUCCESS);
        EXPECT_EQ(Value("v", row.view), RegText(text));
        std::string data;
        DWORD type;
        EXPECT_EQ(Read("v", data, type), ERROR_SUCCESS);
        EXPECT_EQ(data, text + '\0');
        EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    }
    EXPECT_EQ(Value("v", EView32), RegText("512"));
}

TEST_F(RegAccessTest, ReadingTellsMissingKeyMissingValueAndTheRestApart)
{
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "text", RegText("0123456789"));
    std::string data;
    DWORD type = 77;
    {
        const CRegLocationScope scope(At("Missing"));
        EXPECT_EQ(Read("text", data, type), ERROR_PATH_NOT_FOUND);
    }
    {
        const CRegLocationScope scope(At());
        EXPECT_EQ(Read("missing", data, type), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(data.size(), 0u);
        EXPECT_EQ(Read("text", data, type, 11), ERROR_SUCCESS);
        EXPECT_EQ(data, std::string("0123456789", 11));
        EXPECT_EQ(mTrace.Take(), Records());
        EXPECT_EQ(Read("text", data, type, 5), ERROR_MORE_DATA);
        EXPECT_EQ(data.size(), 0u);
        EXPECT_EQ(mTrace.Take(), Records{kUnexpected});
        DWORD size = 0;
        EXPECT_EQ(RegAccess("text", &data, size, type, false), ERROR_INVALID_DATA);
        size = 5;
        EXPECT_EQ(RegAccess("text", nullptr, size, type, true), ERROR_INVALID_DATA);
        EXPECT_EQ(mTrace.Take(), Records());
    }
    const CRegLocationScope scope(Plain("\\\\" + kBase)); // one of the back-slashes is taken off
    EXPECT_NE(Read("text", data, type), ERROR_SUCCESS);
    EXPECT_EQ(mTrace.Take(), Records{kUnexpected});
}

TEST_F(RegAccessTest, EmptyDataDeletesTheValueOrUnderTheUnnamedOneTheKey)
{
    const std::string below = kBase + "\\Below";
    const std::string empty(1, '\0');
    const auto value = [&](const char *name) { return ReadValue(HKEY_LOCAL_MACHINE, below, name); };
    const CRegLocationScope scope(At("Below"));
    EXPECT_EQ(Write("v", empty, REG_SZ), ERROR_FILE_NOT_FOUND); // no key
    EXPECT_EQ(Write("@", empty, REG_SZ), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(Write("@", "text" + empty, REG_SZ), ERROR_SUCCESS);
    EXPECT_EQ(value(""), RegText("text"));
    EXPECT_EQ(value("@"), std::nullopt);
    std::string data;
    DWORD type;
    EXPECT_EQ(Read("@", data, type), ERROR_SUCCESS);
    EXPECT_EQ(data, "text" + empty);
    EXPECT_EQ(Write("v", empty, REG_SZ), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Write("v", RegNumber(256).mBytes, REG_DWORD), ERROR_SUCCESS); // a number is never empty
    EXPECT_EQ(value("v"), RegNumber(256));
    EXPECT_EQ(Write("v", empty + "abc", REG_MULTI_SZ), ERROR_SUCCESS); // the first byte decides
    EXPECT_EQ(value("v"), std::nullopt);
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, below));
    EXPECT_EQ(Write("", RegNumber(256).mBytes, REG_DWORD), ERROR_SUCCESS); // but under the unnamed value it is
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, below));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, kBase));
}

TEST_F(RegAccessTest, StatusOfEachError)
{
    static const struct {
        LONG error;
        uint16_t status;
    } kRows[] = {{0, 0}, {2, 1548}, {3, 1542}, {13, 1536}, {21, 1536}, {234, 1538}, {5, 1536}, {-1, 1536}};
    for (const auto &row : kRows) {
        EXPECT_EQ(StatusFromRegError(row.error), row.status) << row.error;
    }
}

TEST_F(RegAccessTest, WritersRefuseASectionAndSetTheLastStatus)
{
    const CRegLocationScope scope(At());
    EXPECT_EQ(WriteRegString("MAIN", "v", "x", REG_SZ), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(WriteRegDword("MAIN", "v", 1), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(RemoveFromRegMultiString("MAIN", "v", "x", REG_MULTI_SZ), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(Value("v"), std::nullopt);

    EXPECT_EQ(WriteRegDword("", "v", 0xFFFFFF00), TVXSTATUS_SUCCESS);
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_SUCCESS);
    EXPECT_EQ(Value("v"), RegNumber(0xFFFFFF00));
    EXPECT_EQ(WriteRegString("", "v", "", REG_SZ), TVXSTATUS_SUCCESS);
    EXPECT_EQ(WriteRegString("", "v", "", REG_SZ), TVXSTATUS_VALUE_NOT_FOUND);
    EXPECT_EQ(GetLastStatus(), TVXSTATUS_VALUE_NOT_FOUND);

    EXPECT_EQ(WriteRegString("", "v", "text", REG_EXPAND_SZ), TVXSTATUS_SUCCESS);
    EXPECT_EQ(Value("v"), RegText("text", REG_EXPAND_SZ));
    EXPECT_EQ(RemoveFromRegMultiString("", "v", "text", REG_SZ), TVXSTATUS_SUCCESS);
    EXPECT_EQ(mTrace.Take(), Records{"!\"This function currently only works for multi-strings\""});
    EXPECT_EQ(Value("v"), std::nullopt);
}

TEST_F(RegAccessTest, ListGrowsAsLongAsTheReadersBufferHoldsIt)
{
    const std::string entry(kValueBufferSize - 2, 'x');
    const std::string end(2, '\0');
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "list", {REG_MULTI_SZ, entry + end});
    const CRegLocationScope scope(At());
    EXPECT_EQ(WriteRegString("", "list", "y", REG_MULTI_SZ), TVXSTATUS_SUCCESS);
    const RegData grown = {REG_MULTI_SZ, entry + '\0' + "y" + end};
    EXPECT_EQ(Value("list"), grown);
    EXPECT_EQ(WriteRegString("", "list", "z", REG_MULTI_SZ), TVXSTATUS_BUFFER_TOO_SMALL);
    EXPECT_EQ(RemoveFromRegMultiString("", "list", "y", REG_MULTI_SZ), TVXSTATUS_FAILURE);
    EXPECT_EQ(Value("list"), grown);
}

TEST_F(RegAccessTest, OddDataIsTakenForWhatItIs)
{
    // The wide entry stores the text as it is; a NUL right behind it might be taken along.
    const auto store = [](const wchar_t *name, DWORD type, const wchar_t *text, DWORD characters) {
        HKEY key;
        ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kBase.c_str(), 0, KEY_SET_VALUE, &key), ERROR_SUCCESS);
        RegSetValueExW(key, name, 0, type, reinterpret_cast<const BYTE *>(text), characters * 2);
        RegCloseKey(key);
    };
    store(L"open text", REG_SZ, L"abc#", 3);
    store(L"no text", REG_SZ, L"#", 0);
    store(L"open list", REG_MULTI_SZ, L"a\0bc#", 4);
    store(L"only NULs", REG_MULTI_SZ, L"\0\0\0\0#", 4);
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "short number", {REG_DWORD, "\7"});
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "binary", {REG_BINARY, RegNumber(0x80000001).mBytes + "tail"});
    const CRegLocationScope scope(At());
    EXPECT_EQ(ReadString("", "open text", "default", true), "abc");
    EXPECT_EQ(ReadString("", "open text", "default"), "abc");
    EXPECT_EQ(ReadString("", "no text", "default", true), "");
    EXPECT_EQ(ReadString("", "only NULs", "default"), "");
    EXPECT_EQ(ReadInteger("", "short number", 5), 7u);
    EXPECT_EQ(mTrace.Take(), Records());
    EXPECT_EQ(ReadInteger("", "binary", 5), 0x80000001u);
    EXPECT_EQ(mTrace.Take(), Records{"dwType == REG_DWORD"});
    // The last byte goes unseen as the list's end, whether it is that or not.
    EXPECT_EQ(WriteRegString("", "open list", "d", REG_MULTI_SZ), TVXSTATUS_SUCCESS);
    EXPECT_EQ(Value("open list"), (RegData{REG_MULTI_SZ, std::string("a\0bd\0\0", 6)}));
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
        for (size_t length : {16384u, 32767u, 65540u, 70000u}) {
            EXPECT_NE(WriteRegString("", std::string(length, 'n'), "x", REG_SZ), TVXSTATUS_SUCCESS) << length;
        }
    }
    for (size_t length : {256u, 32000u, 65539u, 140000u}) {
        const CRegLocationScope scope(At(std::string(length, 'k')));
        EXPECT_NE(WriteRegString("", "v", "x", REG_SZ), TVXSTATUS_SUCCESS) << length;
        EXPECT_NE(WriteRegString("", "@", "", REG_SZ), TVXSTATUS_SUCCESS) << length;
        EXPECT_EQ(ReadString("", "v", "default"), "default") << length;
        EXPECT_NE(GetLastStatus(), TVXSTATUS_SUCCESS) << length;
    }
    HKEY key;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kBase.c_str(), 0, KEY_READ, &key), ERROR_SUCCESS);
    DWORD keys = 99;
    DWORD values = 99;
    RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                     nullptr);
    RegCloseKey(key);
    EXPECT_EQ(keys, 0u);
    EXPECT_EQ(values, 0u);
}

TEST_F(RegAccessTest, ExistenceIsAskedForThePathAsItStandsWhateverTheViewMask)
{
    WriteValue(HKEY_LOCAL_MACHINE, kBase + "\\Key", "v", RegText("x"));
    EXPECT_FALSE(RegValueExists(At("Key"), "")); // the leading back-slash
    for (uint32_t mask : {0u, 0x100u, 0x200u}) {
        SetRegView(mask);
        EXPECT_TRUE(RegValueExists(Plain(kBase + "\\Key"), ""));
        EXPECT_TRUE(RegValueExists(Plain(kBase + "\\Key"), "v"));
        EXPECT_FALSE(RegValueExists(Plain(kBase + "\\Key"), "@"));
    }
}

TEST_F(RegAccessTest, PlatformDataComesFromTheMainScriptWhicheverScriptIsCurrent)
{
    char folder[MAX_PATH];
    GetTempPathA(sizeof folder, folder);
    const std::string main = std::string(folder) + "RegAccessTestMain.dat";
    const std::string other = std::string(folder) + "RegAccessTestOther.dat";
    std::ofstream(main) << "[PlatformData]\r\nKEY=HKEY_CURRENT_USER\\\\Software\\\\Main\r\nIN=!KEY!\\\\In\r\n";
    std::ofstream(other) << "[PlatformData]\r\nKEY=HKEY_USERS\\\\Other\r\n";
    std::string escaped;
    for (char c : main) {
        escaped += c == '\\' ? "\\\\" : std::string(1, c);
    }
    Settings settings;
    settings.Text("ConfigFileName", escaped);
    const std::string script = mConfigFile;
    mConfigFile = other;

    const RegLocation location = ParseRegPath("!IN!\\x");
    EXPECT_EQ(location.mRootKey, kRootCurrentUser);
    EXPECT_EQ(location.mPath, "\\Software\\Main\\In\\x");
    EXPECT_EQ(ParseRegPath("!!x").mPath, "x");
    EXPECT_EQ(ParseRegPath("!NONE!\\x").mRootKey, kRootLocalMachine);
    EXPECT_EQ(mConfigFile, other);

    mConfigFile = script;
    DeleteFileA(main.c_str());
    DeleteFileA(other.c_str());
}

} // namespace
