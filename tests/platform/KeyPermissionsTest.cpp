// The access lists of keys, which the traces of whole runs do not show.
#include "RegistryTest.h"

#include <aclapi.h>
#include <sddl.h>

#include <algorithm>
#include <sstream>

#include "../system/TraceLog.h"
#include "Actions/KeyPermissions.h"

namespace {

using KeyPermissionsTest = RegistryTest;

RegLocation Location(const std::string &permissions)
{
    RegLocation location = Plain(kBase);
    location.mPermissions = permissions;
    return location;
}

// The entries of a key's access list for the group of ordinary users, "(A;flags;rights;;;BU)" each.
std::vector<std::string> EntriesOfUsers(const std::string &path)
{
    std::string object = "MACHINE\\" + path;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    char *text = nullptr;
    GetNamedSecurityInfoA(&object[0], SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr, nullptr,
                          &descriptor);
    EXPECT_TRUE(ConvertSecurityDescriptorToStringSecurityDescriptorA(descriptor, SDDL_REVISION_1,
                                                                     DACL_SECURITY_INFORMATION, &text, nullptr));
    std::vector<std::string> entries;
    std::istringstream list(text);
    for (std::string entry; std::getline(list, entry, '(');) {
        if (Fits("A;*;BU)", entry)) {
            entries.push_back(entry);
        }
    }
    LocalFree(text);
    LocalFree(descriptor);
    return entries;
}

// Whether one of them gives every right; its flags fit the pattern.
bool IsFull(const std::string &path, const std::string &flags = "*")
{
    const std::vector<std::string> entries = EntriesOfUsers(path);
    return std::any_of(entries.begin(), entries.end(), [&flags](const std::string &entry) {
        return Fits("A;" + flags + ";KA;;;BU)", entry) || Fits("A;" + flags + ";GA;;;BU)", entry);
    });
}

TEST_F(KeyPermissionsTest, UsersGetFullControlOfTheKeyAndOfNewSubKeys)
{
    EXPECT_FALSE(IsFull(kBase));
    EXPECT_TRUE(SetKeyPermissions(Location("Users:FullControl")));
    EXPECT_EQ(mTrace.Take(), Records{"keyBasePath: " + kBase + ", permissions: Users:FullControl"});
    EXPECT_TRUE(IsFull(kBase, "*CI*"));
    if (!OnWine()) { // whose new keys take nothing over from the key above
        CreateKey(HKEY_LOCAL_MACHINE, kBase + "\\Made\\Later");
        EXPECT_TRUE(IsFull(kBase + "\\Made\\Later"));
    }
    // Once more changes nothing: the entry is set, and not added to.
    const std::vector<std::string> entries = EntriesOfUsers(kBase);
    EXPECT_TRUE(SetKeyPermissions(Location("Users:FullControl:surplus")));
    EXPECT_EQ(EntriesOfUsers(kBase), entries);
}

TEST_F(KeyPermissionsTest, AnythingElseIsReportedAndChangesNothing)
{
    const std::vector<std::string> before = EntriesOfUsers(kBase);
    for (const char *permissions : {"", "Users", "Users:", ":FullControl", "Users;FullControl", "users:FullControl"}) {
        EXPECT_FALSE(SetKeyPermissions(Location(permissions))) << permissions;
        EXPECT_EQ(mTrace.Take().back(), *permissions == 'u' ? "!\"SetKeyPermissions - Unknown group specified\""
                                                            : "!\"SetKeyPermissions - bad arg(s)\"");
    }
    RegLocation location = Location("Users:FullControl");
    location.mRootKey = 0x12345;
    EXPECT_FALSE(SetKeyPermissions(location));
    EXPECT_EQ(mTrace.Take().back(), "!\"SetKeyPermissions - Unknown baseKey specified\"");
    location.mPath.clear();
    EXPECT_FALSE(SetKeyPermissions(location));
    EXPECT_EQ(mTrace.Take().back(), "!\"SetKeyPermissions - bad arg(s)\"");
    EXPECT_NE(SetKeySecurityDescriptor(nullptr, "Users", GENERIC_ALL), 0u);
    EXPECT_EQ(SetKeySecurityDescriptor("MACHINE\\Software", nullptr, GENERIC_ALL), 87u); // invalid parameter
    EXPECT_EQ(mTrace.Take(), Records(2, "!\"Bad arg(s) to SetKeySecurityDescriptor\""));
    const DWORD error = SetKeySecurityDescriptor(("MACHINE\\" + kBase).c_str(), "No Such Group", GENERIC_ALL);
    EXPECT_NE(error, 0u);
    EXPECT_EQ(mTrace.Take(), Records{"SetEntriesInAcl - error: " + std::to_string(error)});
    EXPECT_EQ(EntriesOfUsers(kBase), before);
}

} // namespace
