#include "RegistryTest.h"

#include <aclapi.h>

#include "Common/Handles.h"
#include "Common/KeyPermissions.h"
#include "Common/Status.h"

namespace {

using KeyPermissionsTest = RegistryTest;

RegLocation Location(const std::string &permissions)
{
    RegLocation location = Plain(kBase);
    location.mPermissions = permissions;
    return location;
}

// What the access list of a key lets the group of ordinary users do: the access mask and the flags of the entry.
struct Grant {
    DWORD mMask = 0;
    DWORD mFlags = 0;
    int mEntries = 0;
};

Grant GrantOfUsers(const std::string &path)
{
    BYTE users[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof users;
    EXPECT_TRUE(CreateWellKnownSid(WinBuiltinUsersSid, nullptr, users, &size));
    Grant grant;
    CRegKey key;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, READ_CONTROL, key.Receive()), ERROR_SUCCESS);
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    EXPECT_EQ(GetSecurityInfo(key.Get(), SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                              &descriptor),
              static_cast<DWORD>(ERROR_SUCCESS));
    const CLocalMemory owner(descriptor);
    for (DWORD i = 0; list != nullptr && i < list->AceCount; ++i) {
        void *ace = nullptr;
        if (GetAce(list, i, &ace) && static_cast<ACE_HEADER *>(ace)->AceType == ACCESS_ALLOWED_ACE_TYPE) {
            const auto *allowed = static_cast<ACCESS_ALLOWED_ACE *>(ace);
            if (EqualSid(const_cast<DWORD *>(&allowed->SidStart), users)) {
                grant.mMask |= allowed->Mask;
                grant.mFlags |= allowed->Header.AceFlags;
                ++grant.mEntries;
            }
        }
    }
    return grant;
}

bool IsFull(const Grant &grant)
{
    return (grant.mMask & KEY_ALL_ACCESS) == KEY_ALL_ACCESS || (grant.mMask & GENERIC_ALL) != 0;
}

TEST_F(KeyPermissionsTest, UsersGetFullControlOfTheKeyAndOfNewSubKeys)
{
    ASSERT_FALSE(IsFull(GrantOfUsers(kBase)));
    EXPECT_TRUE(SetKeyPermissions(Location("Users:FullControl")));
    EXPECT_EQ(mTrace.Take(), Records{"keyBasePath: " + kBase + ", permissions: Users:FullControl"});
    const Grant grant = GrantOfUsers(kBase);
    EXPECT_TRUE(IsFull(grant));
    EXPECT_NE(grant.mFlags & CONTAINER_INHERIT_ACE, 0u);
    if (!OnWine()) { // whose new keys take nothing over from the key above
        CreateKey(HKEY_LOCAL_MACHINE, kBase + "\\Made\\Later");
        EXPECT_TRUE(IsFull(GrantOfUsers(kBase + "\\Made\\Later")));
    }

    // Once more changes nothing: the entry is set, and not added to.
    EXPECT_TRUE(SetKeyPermissions(Location("Users:FullControl:surplus")));
    EXPECT_EQ(GrantOfUsers(kBase).mEntries, grant.mEntries);
}

TEST_F(KeyPermissionsTest, AnythingElseIsReportedAndChangesNothing)
{
    const DWORD before = GrantOfUsers(kBase).mMask;
    static const struct {
        const char *permissions, *report;
    } kRows[] = {
        {"", "bad arg(s)"},
        {"Users", "bad arg(s)"},
        {"Users:", "bad arg(s)"},
        {":FullControl", "bad arg(s)"},
        {"users:FullControl", "Unknown group specified"},
        {"Everyone:FullControl", "Unknown group specified"},
        {" Users:FullControl", "Unknown group specified"},
        {"Users:fullcontrol", "Unknown permissions specified"},
        {"Users:Read", "Unknown permissions specified"},
        {"Users;FullControl", "bad arg(s)"},
        {"%s%n:%s%n", "Unknown group specified"},
    };
    for (const auto &row : kRows) {
        EXPECT_FALSE(SetKeyPermissions(Location(row.permissions))) << row.permissions;
        EXPECT_EQ(mTrace.Take(), (Records{"keyBasePath: " + kBase + ", permissions: " + row.permissions,
                                          std::string("!\"SetKeyPermissions - ") + row.report + "\""}))
            << row.permissions;
    }
    RegLocation location = Location("Users:FullControl");
    location.mPath.clear();
    EXPECT_FALSE(SetKeyPermissions(location));
    EXPECT_EQ(mTrace.Take().back(), "!\"SetKeyPermissions - bad arg(s)\"");
    CRegKey open;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kBase.c_str(), 0, KEY_READ, open.Receive()), ERROR_SUCCESS);
    location = Location("Users:FullControl");
    location.mRootKey = reinterpret_cast<RegRoot>(open.Get());
    EXPECT_FALSE(SetKeyPermissions(location));
    EXPECT_EQ(mTrace.Take().back(), "!\"SetKeyPermissions - Unknown baseKey specified\"");
    EXPECT_EQ(GrantOfUsers(kBase).mMask, before);
}

TEST_F(KeyPermissionsTest, RootsOtherThanMachineAndUsersHaveNamesThatWindowsDoesNotKnow)
{
    static const struct {
        RegRoot root;
        const char *below; // present on every Windows
        bool known;
    } kRows[] = {{kRootUsers, ".DEFAULT", true},
                 {kRootCurrentUser, "Software", false},
                 {kRootClasses, "CLSID", false},
                 {kRootCurrentConfig, "Software", false}};
    for (const auto &row : kRows) {
        const HKEY root = reinterpret_cast<HKEY>(row.root);
        RegLocation location = Location("Users:FullControl");
        location.mRootKey = row.root;
        location.mPath = std::string(row.below) + "\\TavixPermissionsTest";
        CreateKey(root, location.mPath);
        const bool set = SetKeyPermissions(location);
        const Records records = mTrace.Take();
        RemoveKey(root, location.mPath);
        EXPECT_EQ(set, row.known) << location.mPath;
        ASSERT_EQ(records.size(), row.known ? 1u : 2u) << location.mPath;
        if (!row.known) {
            EXPECT_EQ(records[1].rfind("GetNamedSecurityInfo - error: ", 0), 0u) << records[1];
        }
    }
}

TEST_F(KeyPermissionsTest, PlatformErrorsAreTracedAndAnswered)
{
    EXPECT_EQ(SetKeySecurityDescriptor(nullptr, "Users", GENERIC_ALL), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(SetKeySecurityDescriptor("MACHINE\\Software", nullptr, GENERIC_ALL),
              static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(mTrace.Take(), Records(2, "!\"Bad arg(s) to SetKeySecurityDescriptor\""));
    const std::string missing = "MACHINE\\" + kBase + "\\Missing";
    EXPECT_EQ(SetKeySecurityDescriptor(missing.c_str(), "Users", GENERIC_ALL),
              static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(mTrace.Take(), Records{"GetNamedSecurityInfo - error: 2"});
    const std::string object = "MACHINE\\" + kBase;
    const DWORD error = SetKeySecurityDescriptor(object.c_str(), "No Such Group", GENERIC_ALL);
    EXPECT_NE(error, static_cast<DWORD>(ERROR_SUCCESS));
    EXPECT_EQ(mTrace.Take(), Records{"SetEntriesInAcl - error: " + std::to_string(error)});
}

TEST_F(KeyPermissionsTest, WriteThatNamesPermissionsSetsThemEachTimeAndTheValueInAnyCase)
{
    RegLocation location = At("Made");
    location.mPermissions = "Users:Nothing";
    {
        const CRegLocationScope scope(location);
        EXPECT_EQ(WriteRegString("", "v", "one", REG_SZ), TVXSTATUS_SUCCESS);
    }
    const std::string made = kBase + "\\Made";
    EXPECT_EQ(mTrace.Take(), (Records{"keyBasePath: " + made + ", permissions: Users:Nothing",
                                      "!\"SetKeyPermissions - Unknown permissions specified\""}));
    EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, made, "v"), "one");
    EXPECT_FALSE(IsFull(GrantOfUsers(made)));
    location.mPermissions = "Users:FullControl";
    {
        const CRegLocationScope scope(location);
        EXPECT_EQ(WriteRegString("", "v", "two", REG_SZ), TVXSTATUS_SUCCESS);
        EXPECT_EQ(mTrace.Take().size(), 1u);
        EXPECT_EQ(WriteRegString("", "v", "", REG_SZ), TVXSTATUS_SUCCESS); // a deletion sets nothing
    }
    EXPECT_EQ(mTrace.Take(), Records());
    EXPECT_TRUE(IsFull(GrantOfUsers(made)));
}

} // namespace
