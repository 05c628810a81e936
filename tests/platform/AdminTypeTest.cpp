// What the token of the process says about its user; tokens that no user of the test machine has come from a detour.
#include "Installer/AdminType.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

#include "EntryDetour.h"

namespace {

constexpr DWORD kOwner = SE_GROUP_OWNER;
constexpr DWORD kDenyOnly = SE_GROUP_USE_FOR_DENY_ONLY;

struct Group {
    bool mAdministrators; // otherwise the group of the users
    DWORD mAttributes;
};

// The answer of the token: groups, how many it claims, and what it says of the size.
std::vector<Group> gGroups;
DWORD gClaimedCount = 0;
bool gNoSize = false;
bool gNoData = false;

SID gUsers = {SID_REVISION, 1, {SECURITY_NT_AUTHORITY}, {SECURITY_AUTHENTICATED_USER_RID}};
unsigned char gAdministrators[SECURITY_MAX_SID_SIZE];

BOOL WINAPI AnswerGroups(HANDLE, TOKEN_INFORMATION_CLASS kind, void *data, DWORD size, DWORD *size_O)
{
    EXPECT_EQ(kind, TokenGroups);
    const DWORD needed =
        gNoSize ? 0 : static_cast<DWORD>(offsetof(TOKEN_GROUPS, Groups) + gGroups.size() * sizeof(SID_AND_ATTRIBUTES));
    *size_O = needed;
    if (size < needed || size == 0 || gNoData) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    auto *const answer = static_cast<TOKEN_GROUPS *>(data);
    answer->GroupCount = gClaimedCount != 0 ? gClaimedCount : static_cast<DWORD>(gGroups.size());
    for (size_t i = 0; i < gGroups.size(); ++i) {
        PSID sid = gGroups[i].mAdministrators ? static_cast<PSID>(gAdministrators) : &gUsers;
        answer->Groups[i] = {sid, gGroups[i].mAttributes};
    }
    return TRUE;
}

TEST(AdminType, TheFirstEntryOfTheAdministratorsDecides)
{
    DWORD size = sizeof gAdministrators;
    ASSERT_TRUE(CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, gAdministrators, &size));
    const struct {
        const char *name;
        std::vector<Group> groups;
        uint32_t type;
    } rows[] = {
        {"no groups", {}, 0},
        {"not among the administrators", {{false, kOwner | 7}}, 0},
        {"administrator", {{false, 7}, {true, kOwner | 7}}, 1},
        {"nothing but owner", {{true, kOwner}}, 1},
        {"filtered", {{false, kOwner}, {true, kDenyOnly}}, 2},
        {"no attributes", {{true, 0}}, 2},
        {"all attributes but owner", {{true, ~kOwner}}, 2},
        {"first of two", {{true, kDenyOnly}, {true, kOwner}}, 2},
    };
    const CEntryDetour detour("advapi32.dll", "GetTokenInformation", AnswerGroups);
    for (const auto &row : rows) {
        gGroups = row.groups;
        SetLastError(1234);
        EXPECT_EQ(GetUserAdminType(), row.type) << row.name;
        EXPECT_EQ(GetLastError(), 0u) << row.name;
    }
}

TEST(AdminType, WithoutUsableDataNobodyIsAdministrator)
{
    DWORD size = sizeof gAdministrators;
    ASSERT_TRUE(CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, gAdministrators, &size));
    gGroups = {{true, kOwner}};
    const CEntryDetour detour("advapi32.dll", "GetTokenInformation", AnswerGroups);
    EXPECT_EQ(GetUserAdminType(), 1u);
    gNoSize = true;
    EXPECT_EQ(GetUserAdminType(), 0u);
    gNoSize = false;
    gNoData = true;
    EXPECT_EQ(GetUserAdminType(), 0u);
    gNoData = false;
    gClaimedCount = 0x10000000; // more than its buffer holds
    EXPECT_EQ(GetUserAdminType(), 0u);
    gClaimedCount = 0;
    {
        const CEntryDetour noToken(
            "advapi32.dll", "OpenProcessToken", +[](HANDLE, DWORD access, HANDLE *) WINAPI -> BOOL {
                EXPECT_EQ(access, static_cast<DWORD>(TOKEN_QUERY | READ_CONTROL));
                return FALSE;
            });
        EXPECT_EQ(GetUserAdminType(), 0u);
    }
    EXPECT_EQ(GetUserAdminType(), 1u);
}

// The real token of the process. Wine leaves the owner attribute to a group that is for denial only; on Windows such a
// token is the filtered one.
TEST(AdminType, AgreesWithTheSystemAboutThisProcess)
{
    DWORD size = sizeof gAdministrators;
    ASSERT_TRUE(CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, gAdministrators, &size));
    BOOL member = FALSE;
    ASSERT_TRUE(CheckTokenMembership(nullptr, gAdministrators, &member));
    EXPECT_EQ(GetUserAdminType() == 1, member != FALSE);
}

} // namespace
