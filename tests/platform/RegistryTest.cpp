// What the steps do not show of the registry: access lists, refusals, data as it is stored.
#include <aclapi.h>
#include <gtest/gtest.h>
#include <sddl.h>

#include "../system/Machine.h"
#include "../system/Registry.h"
#include "Common/CSystemState.h"
#include "Common/Status.h"
#include "Registry/KeyPermissions.h"
#include "Registry/RegAccess.h"
#include "TraceCapture.h"

namespace {

const std::string kBase = "Software\\TAVIX\\Tests\\Registry";

RegLocation At(const std::string &below, const std::string &permissions = "")
{
    return {kRootLocalMachine, kBase + below, permissions};
}

class Registry : public ::testing::Test {
protected:
    Registry() { CreateKey(HKEY_LOCAL_MACHINE, kBase); }
    ~Registry() override { CSystemState::SetFakeOSType(kOSTypeUnset); }
    std::string LastRecord() { return mTrace.Take().back(); }

    const RegistrySnapshot mSnapshot{HKEY_LOCAL_MACHINE, "Software\\TAVIX\\Tests"};
    CTraceCapture mTrace;
};

// A key's access list as text.
std::string AccessList(const std::string &path)
{
    std::string object = "MACHINE\\" + path;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    char *text = nullptr;
    GetNamedSecurityInfoA(&object[0], SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr, nullptr,
                          &descriptor);
    ConvertSecurityDescriptorToStringSecurityDescriptorA(descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text,
                                                         nullptr);
    const std::string list = text != nullptr ? text : "";
    LocalFree(text);
    LocalFree(descriptor);
    return list;
}

// Gives a key an access list of nobody, or one that lets everybody.
void SetAccess(const std::string &path, bool allow)
{
    std::string object = "MACHINE\\" + path;
    ACL nobody;
    InitializeAcl(&nobody, sizeof nobody, ACL_REVISION);
    EXPECT_EQ(SetNamedSecurityInfoA(&object[0], SE_REGISTRY_KEY,
                                    DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                    allow ? nullptr : &nobody, nullptr),
              0u);
}

TEST_F(Registry, UsersGetFullControlBesideTheEntriesThatAreThere)
{
    EXPECT_TRUE(SetKeyPermissions(At("", "Users:FullControl")));
    const std::string list = AccessList(kBase);
    EXPECT_TRUE(list.find("(A;CI;KA;;;BU)") != std::string::npos || list.find("(A;CI;GA;;;BU)") != std::string::npos ||
                list.find("(A;OICI;GA;;;BU)") != std::string::npos)
        << list;
    EXPECT_NE(list.find(";;;BA)"), std::string::npos) << list;
    EXPECT_TRUE(SetKeyPermissions(At("", "Users:FullControl:surplus"))); // the entry is set, and not added to
    EXPECT_EQ(AccessList(kBase), list);
    EXPECT_FALSE(SetKeyPermissions({0x12345, kBase, "Users:FullControl"}));
    EXPECT_EQ(LastRecord(), "!\"SetKeyPermissions - Unknown baseKey specified\"");
    EXPECT_NE(SetKeySecurityDescriptor(("MACHINE\\" + kBase).c_str(), "No Such Group", GENERIC_ALL), 0u);
    EXPECT_EQ(LastRecord().compare(0, 25, "SetEntriesInAcl - error: "), 0);
}

TEST_F(Registry, DeletionEndsAtAKeyThatDeniesAccessAndUsesTheOldEntryOnXP)
{
    for (const char *name : {"\\Tree\\A", "\\Tree\\M\\Below", "\\Tree\\Z", "\\XP\\Sub"}) {
        CreateKey(HKEY_LOCAL_MACHINE, kBase + name);
    }
    CSystemState::SetFakeOSType(kOSTypeWin7);
    SetAccess(kBase + "\\Tree\\M", false);
    const bool enforced = !KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\Tree\\M");
    const LONG error = DeleteKeyRecursive(At("\\Tree"));
    SetAccess(kBase + "\\Tree\\M", true);
    if (enforced) { // not on every Windows of tests
        EXPECT_EQ(error, ERROR_ACCESS_DENIED);
        EXPECT_EQ(LastRecord(), "DeleteKeyRecursive: RegOpenKeyEx on M FAILED with status: 5");
        EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\Tree\\Z"));
    }
    CSystemState::SetFakeOSType(kOSTypeXPTabletPC);
    EXPECT_EQ(DeleteKeyRecursive(At("\\XP")), ERROR_SUCCESS);
    EXPECT_EQ(LastRecord(), "DeleteKeyRecursive: using RegDeleteKey...");
}

TEST_F(Registry, ValuesAreReadAsTheyAreStored)
{
    SetEnvironmentVariableA("TAVIX_READER", "C:\\temp");
    const struct {
        RegData mData;
        std::string mRaw, mPlain;
        uint16_t mStatus;
    } rows[] = {
        {RegText("a\\tb"), "a\\tb", "a\tb", 0},
        {{REG_SZ, "abc"}, "abc", "abc", 0}, // without a NUL
        {{REG_SZ, std::string("a\0b\0", 4)}, std::string("a\0b", 3), "a", 0},
        {RegText("%TAVIX_READER%\\n", REG_EXPAND_SZ), "C:\\temp\\n", "%TAVIX_READER%\n", 0},
        {{REG_MULTI_SZ, std::string("one\0two\0\0", 9)}, std::string("one\0two\0\0", 9), "one", 0},
        {{REG_BINARY, std::string("ab\0", 3)}, "ab", "ab", 0},
        {RegText(std::string(10240, 'x')), "\\default", "\\default", TVXSTATUS_BUFFER_TOO_SMALL},
    };
    ASSERT_EQ(PushRegLocation(At("")), TVXSTATUS_SUCCESS);
    for (const auto &row : rows) {
        WriteValue(HKEY_LOCAL_MACHINE, kBase, "v", row.mData);
        EXPECT_EQ(ReadRegString("v", "\\default", true), row.mRaw) << &row - rows;
        EXPECT_EQ(ReadRegString("v", "\\default", false), row.mPlain) << &row - rows;
        EXPECT_EQ(GetLastStatus(), row.mStatus);
    }
    SetEnvironmentVariableA("TAVIX_READER", nullptr);
    // A length that some entries of Windows would cut to another name, and a section.
    EXPECT_NE(WriteRegString("", std::string(65540, 'n'), "x", REG_SZ), TVXSTATUS_SUCCESS);
    EXPECT_EQ(WriteRegString("MAIN", "v", "x", REG_SZ), TVXSTATUS_NOT_SUPPORTED);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_SUCCESS);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);
    EXPECT_EQ(PushRegLocation({kRootLocalMachine, "", ""}), TVXSTATUS_KEY_NOT_FOUND);
}

} // namespace
