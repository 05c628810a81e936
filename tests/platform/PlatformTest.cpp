#include "Common/winplats.h"

#include <windows.h>

#include <string>

#include <gtest/gtest.h>

#include "Common/CWinSystemState.h"
#include "Common/DriverNames.h"
#include "Common/UserLanguage.h"
#include "Common/importWin32API.h"
#include "TraceCapture.h"

namespace {

// The version as Windows itself has it, whatever it tells programs that know only older ones.
OSVERSIONINFOEXW TrueVersion()
{
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    BindEntry<LONG(WINAPI *)(OSVERSIONINFOEXW *)>(GetModuleHandleA("ntdll.dll"), "RtlGetVersion")(&version);
    return version;
}

TEST(Platform, ExactlyTheQuestionOfTheRunningWindowsIsAnsweredWithYes)
{
    const OSVERSIONINFOEXW version = TrueVersion();
    const DWORD number = version.dwMajorVersion * 100 + version.dwMinorVersion;
    // Windows 10 and later tell programs without their identifier in the manifest that they are 8.1.
    const bool answers[] = {number == 501, number == 502, number == 600, number == 601, number == 602, number >= 603};
    EXPECT_EQ(IsPlatformXP(), answers[0]) << number;
    EXPECT_EQ(IsPlatform2003(), answers[1]) << number;
    EXPECT_EQ(IsPlatformVista(), answers[2]) << number;
    EXPECT_EQ(IsPlatformWin7(), answers[3]) << number;
    EXPECT_EQ(IsPlatformWin8(), answers[4]) << number;
    EXPECT_EQ(IsPlatformWin81(), answers[5]) << number;
    EXPECT_FALSE(IsPlatformUnset());
    EXPECT_EQ(IsPlatformXPFamily(), answers[0] || answers[1]);
    EXPECT_EQ(IsPlatformVistaOrLater(), number >= 600);
    EXPECT_EQ(IsFullEdition() + IsStarterEdition() + IsHomeBasicEdition(), 1);
    EXPECT_EQ(GetServicePack(), version.wServicePackMajor);
    const std::string pack = ", SP" + std::to_string(version.wServicePackMajor);
    const bool shown = version.wServicePackMajor != 0 && number > 500; // older ones are "Not supported" and no more
    EXPECT_EQ(GetPlatformText().find(pack) != std::string::npos, shown) << GetPlatformText();
}

TEST(Platform, OSTypeIsDeterminedOnceUnlessForced)
{
    const CTraceCapture capture;
    CSystemState::SetFakeOSType(1000);
    CWinSystemState::DetermineOSType(false);
    EXPECT_EQ(CSystemState::GetOSType(), 1000);
    CWinSystemState::DetermineOSType(true);
    const int32_t determined = CSystemState::GetOSType();
    EXPECT_EQ(determined, OSTypeFromPlatform(GetPlatform(), GetEdition(), IsPlatformXPFamily() && IsTabletPC()));
    EXPECT_EQ(determined >= kOSTypeVista, IsPlatformVistaOrLater());
    CSystemState::SetFakeOSType(kOSTypeUnset);
    CWinSystemState::DetermineOSType(false);
    EXPECT_EQ(CSystemState::GetOSType(), determined);
}

TEST(Platform, EntriesThatAreBoundByNameAnswerAsTheFunctionsThemselves)
{
    EXPECT_EQ(IsTabletPC(), GetSystemMetrics(SM_TABLETPC) != 0);
    EXPECT_EQ(GetUserUILanguageId(), GetUserDefaultUILanguage());
    EXPECT_EQ(GetUserLocaleId(), GetUserDefaultLCID());
}

TEST(Platform, WideDriverNamesAreTheNarrowOnesWidened)
{
    EXPECT_EQ(GetDriverSplitNameW(EDS_PipeAPI, EDriverISDTouch), L"\\\\.\\pipe\\ISD_APIInterface_");
    EXPECT_EQ(GetDriverSplitNameW(EDS_TouchCPLName, EDriverConPen), L"");
}

} // namespace
