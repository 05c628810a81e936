#include "RegistryTest.h"

#include <aclapi.h>

namespace {

using DeleteKeyTest = RegistryTest;

TEST_F(DeleteKeyTest, WalksDownAndDeletesOnTheWayUp)
{
    CreateKey(HKEY_LOCAL_MACHINE, kBase + "\\Tree\\Sub");
    EXPECT_EQ(DeleteKeyRecursive(Plain(kBase + "\\Tree")), ERROR_SUCCESS);
    EXPECT_EQ(mTrace.Take(), (Records{
                                 "DeleteKeyRecursive: basePath_I: " + kBase + "\\Tree",
                                 "DeleteKeyRecursive: Subkey found: Sub",
                                 "DeleteKeyRecursive: basePath_I: Sub",
                                 "DeleteKeyRecursive: deleting key: Sub",
                                 "DeleteKeyRecursive: using RegDeleteKeyEx...",
                                 "DeleteKeyRecursive: deleting key: " + kBase + "\\Tree",
                                 "DeleteKeyRecursive: using RegDeleteKeyEx...",
                             }));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\Tree"));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, kBase));
}

TEST_F(DeleteKeyTest, WindowsXPHasTheOlderEntry)
{
    for (int32_t osType : {kOSTypeXP, kOSTypeXPTabletPC}) {
        CSystemState::SetFakeOSType(osType);
        CreateKey(HKEY_LOCAL_MACHINE, kBase + "\\Tree\\Sub");
        mTrace.Take();
        EXPECT_EQ(DeleteKeyRecursive(Plain(kBase + "\\Tree")), ERROR_SUCCESS);
        const Records records = mTrace.Take();
        ASSERT_EQ(records.size(), 7u);
        EXPECT_EQ(records[4], "DeleteKeyRecursive: using RegDeleteKey...");
        EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\Tree"));
    }
}

TEST_F(DeleteKeyTest, RefusesWhatIsNoKeyBelowARoot)
{
    // Windows takes "\" below HKEY_CLASSES_ROOT for that root.
    for (const char *path : {"", "\\", "\\\\"}) {
        RegLocation location = Plain(path);
        location.mRootKey = kRootClasses;
        EXPECT_EQ(DeleteKeyRecursive(location), ERROR_BADKEY) << path;
        EXPECT_EQ(mTrace.Take(), Records{std::string("DeleteKeyRecursive: basePath_I: ") + path});
    }
    EXPECT_EQ(DeleteKeyRecursive(Plain("Software\\TAVIX\\NoSuchKey")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(mTrace.Take(),
              (Records{"DeleteKeyRecursive: basePath_I: Software\\TAVIX\\NoSuchKey",
                       "DeleteKeyRecursive: RegOpenKeyEx on Software\\TAVIX\\NoSuchKey FAILED with status: 2"}));
    EXPECT_NE(DeleteKeyRecursive(Plain(std::string(70000, 'k'))), ERROR_SUCCESS);
    EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, ""));
}

TEST_F(DeleteKeyTest, DeepAndWideTreeGoesInItsViewAlone)
{
    const std::string tree = kBase + "\\Tree";
    const std::string odd = "name with \x01\x7f\xe9\xff";
    for (EView view : {EView64, EView32}) {
        CreateKey(HKEY_LOCAL_MACHINE, tree + "\\1\\2\\3\\4\\5", view);
        CreateKey(HKEY_LOCAL_MACHINE, tree + "\\" + odd, view);
        CreateKey(HKEY_LOCAL_MACHINE, tree + "\\" + std::string(150, 'l'), view);
        for (int i = 0; i < 200; ++i) {
            CreateKey(HKEY_LOCAL_MACHINE, tree + "\\1\\2\\Sub" + std::to_string(i), view);
        }
        WriteValue(HKEY_LOCAL_MACHINE, tree + "\\1\\2", "v", RegText("x"), view);
    }
    SetRegView(EView64);
    EXPECT_EQ(DeleteKeyRecursive(Plain(tree)), ERROR_SUCCESS);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, tree, EView64));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, tree + "\\1\\2\\3\\4\\5", EView32));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, tree + "\\1\\2\\Sub199", EView32));
    SetRegView(0);
    EXPECT_EQ(DeleteKeyRecursive(Plain(tree)), ERROR_SUCCESS);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, tree, EView32));
}

// Gives a key an access list without entries, which nobody may do anything with, or one that lets everybody.
void SetAccess(const std::string &path, bool allow)
{
    std::string object = "MACHINE\\" + path;
    ACL nobody;
    ASSERT_TRUE(InitializeAcl(&nobody, sizeof nobody, ACL_REVISION));
    ASSERT_EQ(SetNamedSecurityInfoA(&object[0], SE_REGISTRY_KEY,
                                    DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                    allow ? nullptr : &nobody, nullptr),
              static_cast<DWORD>(ERROR_SUCCESS));
}

TEST_F(DeleteKeyTest, KeyThatDeniesAccessEndsTheDeletion)
{
    const std::string tree = kBase + "\\Tree";
    const std::string denied = tree + "\\M";
    for (const char *name : {"A", "M\\Below", "Z"}) {
        CreateKey(HKEY_LOCAL_MACHINE, tree + "\\" + name);
    }
    SetAccess(denied, false);
    const bool enforced = !KeyExists(HKEY_LOCAL_MACHINE, denied);
    const LONG error = DeleteKeyRecursive(Plain(tree));
    const Records records = mTrace.Take();
    const bool left = KeyExists(HKEY_LOCAL_MACHINE, tree + "\\Z");
    SetAccess(denied, true);
    if (!enforced) {
        GTEST_SKIP() << "this Windows lets a process into a key whose access list is empty";
    }
    EXPECT_EQ(error, ERROR_ACCESS_DENIED);
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records.back(), "DeleteKeyRecursive: RegOpenKeyEx on M FAILED with status: 5");
    EXPECT_TRUE(left);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, tree + "\\A")); // what came before is gone
}

} // namespace
