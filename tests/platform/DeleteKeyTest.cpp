#include "RegistryTest.h"

#include <aclapi.h>

namespace {

using DeleteKeyTest = RegistryTest;
const std::string kTree = kBase + "\\Tree";

TEST_F(DeleteKeyTest, DeepAndWideTreeGoesInItsViewAlone)
{
    const std::string odd = "name with \x01\x7f\xe9\xff";
    for (const EView view : {EView64, EView32}) {
        CreateKey(HKEY_LOCAL_MACHINE, kTree + "\\1\\2\\3\\4\\5\\" + odd, view);
        for (int i = 0; i < 200; ++i) {
            CreateKey(HKEY_LOCAL_MACHINE, kTree + "\\1\\2\\Sub" + std::to_string(i), view);
        }
        WriteValue(HKEY_LOCAL_MACHINE, kTree + "\\1\\2", "v", RegText("x"), view);
    }
    SetRegView(EView64);
    EXPECT_EQ(DeleteKeyRecursive(Plain(kTree)), ERROR_SUCCESS);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kTree, EView64));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, kTree + "\\1\\2\\3\\4\\5\\" + odd, EView32));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, kTree + "\\1\\2\\Sub199", EView32));
    SetRegView(0);
    for (const int32_t osType : {kOSTypeXP, kOSTypeXPTabletPC}) { // which have the older entry
        CSystemState::SetFakeOSType(osType);
        CreateKey(HKEY_LOCAL_MACHINE, kTree + "\\Sub");
        mTrace.Take();
        EXPECT_EQ(DeleteKeyRecursive(Plain(kTree)), ERROR_SUCCESS);
        EXPECT_EQ(mTrace.Take().back(), "DeleteKeyRecursive: using RegDeleteKey...");
        EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kTree, EView32));
    }
}

// Gives a key an access list without entries, which nobody may do anything with, or one that lets everybody.
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

TEST_F(DeleteKeyTest, KeyThatDeniesAccessEndsTheDeletion)
{
    for (const char *name : {"\\A", "\\M\\Below", "\\Z"}) {
        CreateKey(HKEY_LOCAL_MACHINE, kTree + name);
    }
    SetAccess(kTree + "\\M", false);
    const bool enforced = !KeyExists(HKEY_LOCAL_MACHINE, kTree + "\\M");
    const LONG error = DeleteKeyRecursive(Plain(kTree));
    SetAccess(kTree + "\\M", true);
    if (!enforced) {
        GTEST_SKIP() << "this Windows lets a process into a key whose access list is empty";
    }
    EXPECT_EQ(error, ERROR_ACCESS_DENIED);
    EXPECT_EQ(mTrace.Take().back(), "DeleteKeyRecursive: RegOpenKeyEx on M FAILED with status: 5");
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, kTree + "\\Z"));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kTree + "\\A")); // what came before is gone
}

} // namespace
