// The questions about the running Windows that no step asks; the versions themselves are cases of the whole program.
#include "Common/winplats.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "Common/CWinSystemState.h"
#include "Common/DriverNames.h"
#include "Common/UserLanguage.h"
#include "TraceCapture.h"

namespace {

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
    EXPECT_EQ(GetDriverSplitNameW(EDS_PipeAPI, EDriverISDTouch), L"\\\\.\\pipe\\ISD_APIInterface_");
}

} // namespace
