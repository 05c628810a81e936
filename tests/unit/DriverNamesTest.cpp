#include "Common/DriverNames.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Common/Trace.h"
#include "TraceRecorder.h"

namespace {

// The names as their conventions make them: {a|b|c} stands for the words of the Consumer, Professional and
// ISD line. A name without a touch pattern is the same for both halves.
constexpr const char *kEmpty = "";
const std::string kFile = "{Pen|Tavix|ISD}";
const std::string kShort = "{Con|Pro|ISD}";
const std::string kServices = "SYSTEM\\CurrentControlSet\\Services\\";
const std::string kService = "VTabletService" + kShort;
const std::string kGlobal = "Global\\Tavix";
const std::string kPipe = "\\\\.\\pipe\\";

struct Convention {
    EDriverSplitName name;
    std::string pen;
    std::string other; // the default
    std::string touch = std::string();
};

const Convention kConventions[] = {
    {EDS_UDAName, kFile + "_TabletUser.exe", "TabUserW.exe"},
    {EDS_TabletName, kFile + "_Tablet.exe", "Tablet.exe"},
    {EDS_CPLName, "{Consumer_CPL|Professional_CPL|ISD_ControlPanel}.exe", kEmpty},
    {EDS_DatName, kFile + "_Tablet.dat", "Tablet.dat", kFile + "Touch.xml"},
    {EDS_ServiceName, kService, "TabletService"},
    {EDS_ServiceDisplayName, "Zelno {Consumer|Professional|ISD} Service", "TabletService"},
    {EDS_ServiceDescription, "Driver for Tavix Tablets", "Driver for Tavix Tablets"},
    {EDS_WindowClass, kFile + "TabUserDrvWinClass", "TabUsaerDrvWinClass"},
    {EDS_TabletKey, "SOFTWARE\\Tablet", "SOFTWARE\\Tablet"},
    {EDS_ServiceKey, kServices + kService, kServices + "TabletService"},
    {EDS_ServiceParamsKey, kServices + kService + "\\Service", kServices + "TabletService\\PARAMETERS"},
    {EDS_DriverParamsKey, kServices + kService + "\\Pen", kServices + "TabletService\\PARAMETERS",
     kServices + kService + "\\Touch"},
    {EDS_EventKey, kServices + "Eventlog\\Application\\" + kService,
     kServices + "Eventlog\\Application\\TabletService"},
    {EDS_PrefsKey, kServices + kService + "\\Prefs", kServices + "TabletService\\Prefs"},
    {EDS_DriverRunning, kFile + "TabletRunningMutex", "TabletRunningMutex", kFile + "TouchRunningMutex"},
    {EDS_UserRunning, "FastUser" + kShort + "RunningMutex", "FastUserRunningMutex"},
    {EDS_QuitSystem, kGlobal + kShort + "SPenQuitEvent", kGlobal + "SQuitEvent", kGlobal + kShort + "STouchQuitEvent"},
    {EDS_QuitUser, kGlobal + kShort + "UPenQuitEvent", kGlobal + "UQuitEvent", kGlobal + kShort + "UTouchQuitEvent"},
    {EDS_QuitLocal, "Tavix" + kShort + "LPenQuitEvent", "TavixLQuitEvent", "Tavix" + kShort + "LTouchQuitEvent"},
    {EDS_GQuitDriver, kGlobal + kShort + "GlobalQuitAllEvent", kGlobal + "GlobalQuitAllEvent"},
    {EDS_StartCDA, kGlobal + kShort + "StartEvent", kGlobal + "StartEvent"},
    {EDS_StopCDA, kGlobal + kShort + "StopEvent", kGlobal + "StopEvent"},
    {EDS_OEMDefaultsName, kFile + "TabletDefaults.xml", "TabletDefaults.xml",
     "{PenTouchTablet|TavixTouchTablet|ISDTouch}Defaults.xml"},
    {EDS_UserDefaultsName, kFile + "TabletUserDefaults.xml", "TabletUserDefaults.xml",
     "{PenTouchTablet|TavixTouchTablet|ISDTouch}UserDefaults.xml"},
    {EDS_TouchDrvLibrary, kFile + "_Touch_Tablet.dll", kEmpty},
    {EDS_PenDrvLibrary, kFile + "_Tablet.dll", kEmpty},
    {EDS_DrvLibrary, kFile + "_Tablet.dll", kEmpty, kFile + "_Touch_Tablet.dll"},
    {EDS_RootLibrary, "Wintab32.dll", "Wintab32.dll"},
    {EDS_CPLDefaultName, "{Tavix|Tavix Tablet|Pen Tablet} Properties", kEmpty},
    {EDS_ZncName, kFile + "Tablet.znc", kEmpty},
    {EDS_MainWinName, "CPLMainWindow", "CPLMainWindow"},
    {EDS_RegCPLName, kFile + "TabCPLName", kEmpty},
    {EDS_RegCPLComment, kFile + "TabCPLComment", kEmpty},
    {EDS_RegDocLocation, kFile + "DocLocation", kEmpty},
    {EDS_DriverPath, "Tablet\\" + kFile, kEmpty},
    {EDS_TouchName, kFile + "_TouchUser.exe", kEmpty},
    {EDS_UninstallKey, "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + kFile + " Tablet Driver", kEmpty},
    {EDS_UsersManualName, "{User's Manual.pdf|User's Manual.pdf|}", kEmpty},
    {EDS_HIDRouterINF, "tvxhidrouter_{con|pro|isd}.inf", kEmpty},
    {EDS_KickINK, kGlobal + kShort + "_KickWISPTIS", kGlobal + "KickWISPTIS"},
    {EDS_ReloadAppGestures, kGlobal + kShort + "LoadAppGestPenEvent", kGlobal + "LoadAppGestEvent",
     kGlobal + kShort + "LoadAppGestTouchEvent"},
    {EDS_PipeCPLIn, kPipe + kShort + "_CPLInterface_I_", kPipe + "CPLInterface_I_"},
    {EDS_PipeCPLOut, kPipe + kShort + "_CPLInterface_O_", kPipe + "CPLInterface_O_"},
    {EDS_PipeAPI, kPipe + kShort + "_APIInterface_", kPipe + "APIInterface_"},
    {EDS_TouchCPLName, "{||ISD_ControlPanel.exe}", kEmpty},
    {EDS_CenterName, "TavixDesktopCenter.exe", "TavixDesktopCenter.exe"},
    {EDS_DisplaySettingsName, "LCDSettings.exe", "LCDSettings.exe"},
    {EDS_PrefUtilName, "PrefUtil.exe", "PrefUtil.exe"},
    {EDS_DriverUninstallerName, "remove.exe", "remove.exe"},
};

// The pattern with the words of `line`, 1 to 3.
std::string ForLine(const std::string &pattern, int line)
{
    const size_t open = pattern.find('{');
    if (open == std::string::npos) {
        return pattern;
    }
    const size_t close = pattern.find('}', open);
    size_t word = open + 1;
    for (int skipped = 1; skipped < line; ++skipped) {
        word = pattern.find('|', word) + 1;
    }
    const size_t wordEnd = std::min(pattern.find('|', word), close);
    return pattern.substr(0, open) + pattern.substr(word, wordEnd - word) + pattern.substr(close + 1);
}

class DriverNames : public testing::Test {
protected:
    void SetUp() override
    {
        gDriverSplitNamesMap.clear();
        TakeTraceRecords();
    }
    void TearDown() override
    {
        gAssertsToDebugOut = true;
        gDriverSplitNamesMap.clear();
    }
};

TEST_F(DriverNames, EveryNameFollowsItsConventionForEveryTypeAndFallsBackInOrder)
{
    std::set<int32_t> seen;
    for (const Convention &convention : kConventions) {
        SCOPED_TRACE(convention.name);
        seen.insert(convention.name);
        const bool byHalf = !convention.touch.empty();
        for (int line = 1; line <= 3; ++line) {
            const std::string pen = ForLine(convention.pen, line);
            EXPECT_EQ(GetDriverSplitName(convention.name, 0x100 + line), pen);
            EXPECT_EQ(GetDriverSplitName(convention.name, 0x200 + line),
                      byHalf ? ForLine(convention.touch, line) : pen);
            // A line alone, and halves that have no key: the line's name where there is one.
            for (const int32_t type : {line, 0x300 + line, 0x10100 + line}) {
                EXPECT_EQ(GetDriverSplitName(convention.name, type), byHalf ? convention.other : pen) << type;
            }
            // Without a half the key of the half is 0, and the default comes before the line.
            EXPECT_EQ(GetDriverSplitName(convention.name, EDriverDEBUG + line), convention.other) << line;
        }
        for (const int32_t type : {0, 0x100, 0x200, 4, 0x104, 0x20F, static_cast<int32_t>(EDriverDEBUG), -1}) {
            EXPECT_EQ(GetDriverSplitName(convention.name, type), convention.other) << type;
        }
    }
    EXPECT_EQ(seen.size(), static_cast<size_t>(ESDNameCount));
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{});
}

TEST_F(DriverNames, FirstLookUpFillsTheWholeMap)
{
    ASSERT_TRUE(gDriverSplitNamesMap.empty());
    GetDriverSplitName(EDS_UDAName, EDriverConPen);
    size_t entries = 0;
    for (const auto &[name, keys] : gDriverSplitNamesMap) {
        EXPECT_TRUE(keys.count(0)) << name;
        entries += keys.size();
    }
    EXPECT_EQ(gDriverSplitNamesMap.size(), 49u);
    EXPECT_EQ(entries, 202u);
    EXPECT_EQ(gDriverSplitNamesMap.begin()->first, 0);
    EXPECT_EQ(gDriverSplitNamesMap.rbegin()->first, 48);
    // Names that other programs know by number.
    EXPECT_EQ(EDS_ServiceName, 4);
    EXPECT_EQ(EDS_RootLibrary, 27);
    EXPECT_EQ(EDS_DriverUninstallerName, 48);
}

TEST_F(DriverNames, KeyOfAHalfStandsBetweenTypeAndLine)
{
    GetDriverSplitName(EDS_UDAName, 0);
    gDriverSplitNamesMap[100] = {{257, "type"}, {256, "half"}, {2, "line"}, {0, "other"}};
    const auto name = static_cast<EDriverSplitName>(100);
    EXPECT_EQ(GetDriverSplitName(name, 257), "type");
    EXPECT_EQ(GetDriverSplitName(name, 258), "half");
    EXPECT_EQ(GetDriverSplitName(name, 514), "line");
    EXPECT_EQ(GetDriverSplitName(name, 513), "other");
}

TEST_F(DriverNames, WhatIsMissingIsEmptyAndReported)
{
    GetDriverSplitName(EDS_UDAName, 0);
    gDriverSplitNamesMap[100] = {{1, "line"}};
    const auto noDefault = static_cast<EDriverSplitName>(100);
    const std::pair<EDriverSplitName, const char *> cases[] = {
        {static_cast<EDriverSplitName>(-1), "Assert:(gDriverSplitNamesMap.count(name_I)) in "},
        {ESDNameCount, "Assert:(gDriverSplitNamesMap.count(name_I)) in "},
        {noDefault, "Assert:(Found an entry but could not find a value.) in "},
    };
    for (const auto &[name, report] : cases) {
        SCOPED_TRACE(report);
        EXPECT_EQ(GetDriverSplitName(name, EDriverProPen), "");
        const std::vector<std::string> records = TakeTraceRecords();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].find(report), 0u) << records[0];
        gAssertsToDebugOut = false;
        EXPECT_EQ(GetDriverSplitName(name, EDriverProPen), "");
        EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{});
        gAssertsToDebugOut = true;
    }
}

TEST_F(DriverNames, TypesHaveDisplayNames)
{
    const std::map<int32_t, std::string> names = {
        {0, "Default"},  {1, "Consumer"},         {2, "Professional"},         {3, "ISD"},
        {256, "Pen"},    {257, "Consumer Pen"},   {258, "Professional Pen"},   {259, "ISD Pen"},
        {512, "Touch"},  {513, "Consumer Touch"}, {514, "Professional Touch"}, {515, "ISD Touch"},
        {32768, "Debug"}};
    for (const int32_t type :
         {-1, 0, 1, 2, 3, 4, 255, 256, 257, 258, 259, 260, 511, 512, 513, 514, 515, 516, 768, 32768, 33025}) {
        const auto found = names.find(type);
        EXPECT_EQ(DriverTypeName(type), found != names.end() ? found->second : "Unknown") << type;
    }
}

} // namespace
