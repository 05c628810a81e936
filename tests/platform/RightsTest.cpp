// What the token of the process says about its user, and starting this program once more as an administrator. Tokens
// that no user of the test machine has come from a detour.
#include "Installer/AdminType.h"
#include "Installer/Elevation.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>

#include <cstdlib>
#include <string>
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

const char kCode[] = "TAVIX_ELEVATED_EXIT_CODE";

// What the elevated process does instead of running tests.
const bool gIsChild = [] {
    char code[20] = {};
    if (GetEnvironmentVariableA(kCode, code, sizeof code) != 0) {
        ExitProcess(static_cast<UINT>(std::strtol(code, nullptr, 10)));
    }
    return false;
}();

TEST(Elevation, PassesOnTheExitCodeOfTheProcessAndFiveForANegativeOne)
{
    ASSERT_FALSE(gIsChild);
    for (const auto &[code, result] :
         {std::pair("0", 0u), {"11", 11}, {"70000", 70000}, {"-1", 5}, {"-1073741819", 5}}) {
        SetEnvironmentVariableA(kCode, code);
        EXPECT_EQ(RunElevated(L""), result) << code;
    }
    SetEnvironmentVariableA(kCode, nullptr);
}

BOOL gShellAnswer = FALSE;

BOOL WINAPI ExpectRunAs(SHELLEXECUTEINFOW *info)
{
    wchar_t module[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, module, MAX_PATH);
    EXPECT_EQ(info->cbSize, sizeof(SHELLEXECUTEINFOW));
    EXPECT_EQ(info->fMask, static_cast<ULONG>(SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI));
    EXPECT_EQ(std::wstring(info->lpVerb), L"runas");
    EXPECT_EQ(std::wstring(info->lpFile), module);
    EXPECT_EQ(std::wstring(info->lpParameters), L"/s \x00e9");
    EXPECT_EQ(info->nShow, 10);
    SetLastError(ERROR_CANCELLED);
    return gShellAnswer;
}

TEST(Elevation, ARefusalIsFiveAndSoIsASuccessWithoutAProcess)
{
    const CEntryDetour detour("shell32.dll", "ShellExecuteExW", ExpectRunAs);
    for (const BOOL answer : {FALSE, TRUE}) {
        gShellAnswer = answer;
        EXPECT_EQ(RunElevated(L"/s \x00e9"), 5u);
    }
}

} // namespace
