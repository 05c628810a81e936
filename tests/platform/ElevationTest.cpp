// Starting this program once more as an administrator.
#include "Installer/Elevation.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>

#include <cstdlib>
#include <string>

#include "EntryDetour.h"

namespace {

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
    const struct {
        const char *code;
        uint32_t result;
    } rows[] = {{"0", 0}, {"11", 11}, {"70000", 70000}, {"-1", 5}, {"-1073741819", 5}};
    for (const auto &row : rows) {
        SetEnvironmentVariableA(kCode, row.code);
        EXPECT_EQ(RunElevated(L""), row.result) << row.code;
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
