// What the token of the process says about its user. Tokens that no user of the test machine has come from a detour.
#include "Installer/AdminType.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <vector>

#include "EntryDetour.h"

namespace {

constexpr DWORD kOwner = SE_GROUP_OWNER;
constexpr DWORD kDenyOnly = SE_GROUP_USE_FOR_DENY_ONLY;

// The answer of the token: its groups, administrators or not, with their attributes; and what is wrong with it.
using Groups = std::vector<std::pair<bool, DWORD>>;
enum EFault { ENone, ENoSize, ENoData, ETooMany };
Groups gGroups;
EFault gFault = ENone;
unsigned char gAdministrators[SECURITY_MAX_SID_SIZE];

BOOL WINAPI AnswerGroups(HANDLE, TOKEN_INFORMATION_CLASS kind, void *data, DWORD size, DWORD *size_O)
{
    static SID users = {SID_REVISION, 1, {SECURITY_NT_AUTHORITY}, {SECURITY_AUTHENTICATED_USER_RID}};
    EXPECT_EQ(kind, TokenGroups);
    *size_O = gFault == ENoSize ? 0 : offsetof(TOKEN_GROUPS, Groups) + gGroups.size() * sizeof(SID_AND_ATTRIBUTES);
    if (size < *size_O || size == 0 || gFault == ENoData) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    auto *answer = static_cast<TOKEN_GROUPS *>(data);
    answer->GroupCount = gFault == ETooMany ? 0x10000000 : gGroups.size();
    for (size_t i = 0; i < gGroups.size(); ++i) {
        answer->Groups[i] = {gGroups[i].first ? static_cast<PSID>(gAdministrators) : &users, gGroups[i].second};
    }
    return TRUE;
}

TEST(AdminType, TheFirstEntryOfTheAdministratorsDecides)
{
    DWORD size = sizeof gAdministrators;
    ASSERT_TRUE(CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, gAdministrators, &size));
    BOOL member = FALSE; // of the real token
    ASSERT_TRUE(CheckTokenMembership(nullptr, gAdministrators, &member));
    EXPECT_EQ(GetUserAdminType() == 1, member != FALSE);
    const CEntryDetour detour("advapi32.dll", "GetTokenInformation", AnswerGroups);
    for (const auto &[groups, type] : {std::pair(Groups(), 0u),
                                       {{{false, kOwner | 7}}, 0},
                                       {{{false, 7}, {true, kOwner | 7}}, 1},
                                       {{{false, kOwner}, {true, kDenyOnly}}, 2}, // the token is filtered
                                       {{{true, 0}}, 2},
                                       {{{true, ~kOwner}}, 2},
                                       {{{true, kDenyOnly}, {true, kOwner}}, 2},
                                       {{{true, kOwner}, {true, kDenyOnly}}, 1}}) {
        gGroups = groups;
        SetLastError(1234);
        EXPECT_EQ(GetUserAdminType(), type) << ::testing::PrintToString(groups);
        EXPECT_EQ(GetLastError(), 0u);
    }
    // Nobody is administrator without usable data.
    for (const auto &[fault, type] : {std::pair(ENoSize, 0u), {ENoData, 0u}, {ETooMany, 0u}, {ENone, 1u}}) {
        gFault = fault;
        EXPECT_EQ(GetUserAdminType(), type) << fault;
    }
    const CEntryDetour noToken(
        "advapi32.dll", "OpenProcessToken", +[](HANDLE, DWORD access, HANDLE *) WINAPI -> BOOL {
            EXPECT_EQ(access, static_cast<DWORD>(TOKEN_QUERY | READ_CONTROL));
            return FALSE;
        });
    EXPECT_EQ(GetUserAdminType(), 0u);
}

} // namespace
