#include "Common/DriverNames.h"

#include <array>

#include "Common/Trace.h"

int32_t CDriverType::mDriverType = 0;
std::map<int32_t, std::map<int32_t, std::string>> gDriverSplitNamesMap;

namespace {

// What an identifier can be keyed by, in the order of SplitNames::mValues.
constexpr std::array<int32_t, 10> kKeys = {
    1, 2, 3, EDriverConPen, EDriverConTouch, EDriverProPen, EDriverProTouch, EDriverISDPen, EDriverISDTouch, 0,
};

// The names of one identifier; null where there is no entry.
struct SplitNames {
    std::array<const char *, kKeys.size()> mValues;
};

// One name whatever the type.
constexpr SplitNames ForAll(const char *name)
{
    return {{nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, name}};
}

// A name for each line, the same for pen and touch, and the default.
constexpr SplitNames ByLine(const char *consumer, const char *professional, const char *isd, const char *other)
{
    return {{consumer, professional, isd, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, other}};
}

// A name for each full type, and the default.
constexpr SplitNames ByType(const char *consumerPen, const char *consumerTouch, const char *professionalPen,
                            const char *professionalTouch, const char *isdPen, const char *isdTouch, const char *other)
{
    return {{nullptr, nullptr, nullptr, consumerPen, consumerTouch, professionalPen, professionalTouch, isdPen,
             isdTouch, other}};
}

struct SplitNamesRow {
    EDriverSplitName mName;
    const char *mNameText;
    SplitNames mNames;
};

// The names of the whole package; this program reads only some of them. Two conventions stand side by side:
// files, classes and keys say Pen for the Consumer line and Tavix for the Professional one, services, events
// and pipes say Con and Pro. The installed drivers know these texts, the misspelled window class included.
#define SPLIT_NAMES(name, ...)                                                                                         \
    {                                                                                                                  \
        name, #name, __VA_ARGS__                                                                                       \
    }
constexpr SplitNamesRow kRows[] = {
    SPLIT_NAMES(EDS_UDAName,
                ByLine("Pen_TabletUser.exe", "Tavix_TabletUser.exe", "ISD_TabletUser.exe", "TabUserW.exe")),
    SPLIT_NAMES(EDS_TabletName, ByLine("Pen_Tablet.exe", "Tavix_Tablet.exe", "ISD_Tablet.exe", "Tablet.exe")),
    SPLIT_NAMES(EDS_CPLName, ByLine("Consumer_CPL.exe", "Professional_CPL.exe", "ISD_ControlPanel.exe", "")),
    SPLIT_NAMES(EDS_DatName, ByType("Pen_Tablet.dat", "PenTouch.xml", "Tavix_Tablet.dat", "TavixTouch.xml",
                                    "ISD_Tablet.dat", "ISDTouch.xml", "Tablet.dat")),
    SPLIT_NAMES(EDS_ServiceName,
                ByLine("VTabletServiceCon", "VTabletServicePro", "VTabletServiceISD", "TabletService")),
    SPLIT_NAMES(EDS_ServiceDisplayName,
                ByLine("Zelno Consumer Service", "Zelno Professional Service", "Zelno ISD Service", "TabletService")),
    SPLIT_NAMES(EDS_ServiceDescription, ForAll("Driver for Tavix Tablets")),
    SPLIT_NAMES(EDS_WindowClass, ByLine("PenTabUserDrvWinClass", "TavixTabUserDrvWinClass", "ISDTabUserDrvWinClass",
                                        "TabUsaerDrvWinClass")),
    SPLIT_NAMES(EDS_TabletKey, ForAll(R"(SOFTWARE\Tablet)")),
    SPLIT_NAMES(EDS_ServiceKey, ByLine(R"(SYSTEM\CurrentControlSet\Services\VTabletServiceCon)",
                                       R"(SYSTEM\CurrentControlSet\Services\VTabletServicePro)",
                                       R"(SYSTEM\CurrentControlSet\Services\VTabletServiceISD)",
                                       R"(SYSTEM\CurrentControlSet\Services\TabletService)")),
    SPLIT_NAMES(EDS_ServiceParamsKey, ByLine(R"(SYSTEM\CurrentControlSet\Services\VTabletServiceCon\Service)",
                                             R"(SYSTEM\CurrentControlSet\Services\VTabletServicePro\Service)",
                                             R"(SYSTEM\CurrentControlSet\Services\VTabletServiceISD\Service)",
                                             R"(SYSTEM\CurrentControlSet\Services\TabletService\PARAMETERS)")),
    SPLIT_NAMES(EDS_DriverParamsKey, ByType(R"(SYSTEM\CurrentControlSet\Services\VTabletServiceCon\Pen)",
                                            R"(SYSTEM\CurrentControlSet\Services\VTabletServiceCon\Touch)",
                                            R"(SYSTEM\CurrentControlSet\Services\VTabletServicePro\Pen)",
                                            R"(SYSTEM\CurrentControlSet\Services\VTabletServicePro\Touch)",
                                            R"(SYSTEM\CurrentControlSet\Services\VTabletServiceISD\Pen)",
                                            R"(SYSTEM\CurrentControlSet\Services\VTabletServiceISD\Touch)",
                                            R"(SYSTEM\CurrentControlSet\Services\TabletService\PARAMETERS)")),
    SPLIT_NAMES(EDS_EventKey, ByLine(R"(SYSTEM\CurrentControlSet\Services\Eventlog\Application\VTabletServiceCon)",
                                     R"(SYSTEM\CurrentControlSet\Services\Eventlog\Application\VTabletServicePro)",
                                     R"(SYSTEM\CurrentControlSet\Services\Eventlog\Application\VTabletServiceISD)",
                                     R"(SYSTEM\CurrentControlSet\Services\Eventlog\Application\TabletService)")),
    SPLIT_NAMES(EDS_PrefsKey, ByLine(R"(SYSTEM\CurrentControlSet\Services\VTabletServiceCon\Prefs)",
                                     R"(SYSTEM\CurrentControlSet\Services\VTabletServicePro\Prefs)",
                                     R"(SYSTEM\CurrentControlSet\Services\VTabletServiceISD\Prefs)",
                                     R"(SYSTEM\CurrentControlSet\Services\TabletService\Prefs)")),
    SPLIT_NAMES(EDS_DriverRunning, ByType("PenTabletRunningMutex", "PenTouchRunningMutex", "TavixTabletRunningMutex",
                                          "TavixTouchRunningMutex", "ISDTabletRunningMutex", "ISDTouchRunningMutex",
                                          "TabletRunningMutex")),
    SPLIT_NAMES(EDS_UserRunning, ByLine("FastUserConRunningMutex", "FastUserProRunningMutex", "FastUserISDRunningMutex",
                                        "FastUserRunningMutex")),
    SPLIT_NAMES(EDS_QuitSystem, ByType(R"(Global\TavixConSPenQuitEvent)", R"(Global\TavixConSTouchQuitEvent)",
                                       R"(Global\TavixProSPenQuitEvent)", R"(Global\TavixProSTouchQuitEvent)",
                                       R"(Global\TavixISDSPenQuitEvent)", R"(Global\TavixISDSTouchQuitEvent)",
                                       R"(Global\TavixSQuitEvent)")),
    SPLIT_NAMES(EDS_QuitUser, ByType(R"(Global\TavixConUPenQuitEvent)", R"(Global\TavixConUTouchQuitEvent)",
                                     R"(Global\TavixProUPenQuitEvent)", R"(Global\TavixProUTouchQuitEvent)",
                                     R"(Global\TavixISDUPenQuitEvent)", R"(Global\TavixISDUTouchQuitEvent)",
                                     R"(Global\TavixUQuitEvent)")),
    SPLIT_NAMES(EDS_QuitLocal, ByType("TavixConLPenQuitEvent", "TavixConLTouchQuitEvent", "TavixProLPenQuitEvent",
                                      "TavixProLTouchQuitEvent", "TavixISDLPenQuitEvent", "TavixISDLTouchQuitEvent",
                                      "TavixLQuitEvent")),
    SPLIT_NAMES(EDS_GQuitDriver, ByLine(R"(Global\TavixConGlobalQuitAllEvent)", R"(Global\TavixProGlobalQuitAllEvent)",
                                        R"(Global\TavixISDGlobalQuitAllEvent)", R"(Global\TavixGlobalQuitAllEvent)")),
    SPLIT_NAMES(EDS_StartCDA, ByLine(R"(Global\TavixConStartEvent)", R"(Global\TavixProStartEvent)",
                                     R"(Global\TavixISDStartEvent)", R"(Global\TavixStartEvent)")),
    SPLIT_NAMES(EDS_StopCDA, ByLine(R"(Global\TavixConStopEvent)", R"(Global\TavixProStopEvent)",
                                    R"(Global\TavixISDStopEvent)", R"(Global\TavixStopEvent)")),
    SPLIT_NAMES(EDS_OEMDefaultsName, ByType("PenTabletDefaults.xml", "PenTouchTabletDefaults.xml",
                                            "TavixTabletDefaults.xml", "TavixTouchTabletDefaults.xml",
                                            "ISDTabletDefaults.xml", "ISDTouchDefaults.xml", "TabletDefaults.xml")),
    SPLIT_NAMES(EDS_UserDefaultsName,
                ByType("PenTabletUserDefaults.xml", "PenTouchTabletUserDefaults.xml", "TavixTabletUserDefaults.xml",
                       "TavixTouchTabletUserDefaults.xml", "ISDTabletUserDefaults.xml", "ISDTouchUserDefaults.xml",
                       "TabletUserDefaults.xml")),
    SPLIT_NAMES(EDS_TouchDrvLibrary,
                ByLine("Pen_Touch_Tablet.dll", "Tavix_Touch_Tablet.dll", "ISD_Touch_Tablet.dll", "")),
    SPLIT_NAMES(EDS_PenDrvLibrary, ByLine("Pen_Tablet.dll", "Tavix_Tablet.dll", "ISD_Tablet.dll", "")),
    SPLIT_NAMES(EDS_DrvLibrary, ByType("Pen_Tablet.dll", "Pen_Touch_Tablet.dll", "Tavix_Tablet.dll",
                                       "Tavix_Touch_Tablet.dll", "ISD_Tablet.dll", "ISD_Touch_Tablet.dll", "")),
    SPLIT_NAMES(EDS_RootLibrary, ForAll("Wintab32.dll")),
    SPLIT_NAMES(EDS_CPLDefaultName, ByLine("Tavix Properties", "Tavix Tablet Properties", "Pen Tablet Properties", "")),
    SPLIT_NAMES(EDS_ZncName, ByLine("PenTablet.znc", "TavixTablet.znc", "ISDTablet.znc", "")),
    SPLIT_NAMES(EDS_MainWinName, ForAll("CPLMainWindow")),
    SPLIT_NAMES(EDS_RegCPLName, ByLine("PenTabCPLName", "TavixTabCPLName", "ISDTabCPLName", "")),
    SPLIT_NAMES(EDS_RegCPLComment, ByLine("PenTabCPLComment", "TavixTabCPLComment", "ISDTabCPLComment", "")),
    SPLIT_NAMES(EDS_RegDocLocation, ByLine("PenDocLocation", "TavixDocLocation", "ISDDocLocation", "")),
    SPLIT_NAMES(EDS_DriverPath, ByLine(R"(Tablet\Pen)", R"(Tablet\Tavix)", R"(Tablet\ISD)", "")),
    SPLIT_NAMES(EDS_TouchName, ByLine("Pen_TouchUser.exe", "Tavix_TouchUser.exe", "ISD_TouchUser.exe", "")),
    SPLIT_NAMES(EDS_UninstallKey,
                ByLine(R"(Software\Microsoft\Windows\CurrentVersion\Uninstall\Pen Tablet Driver)",
                       R"(Software\Microsoft\Windows\CurrentVersion\Uninstall\Tavix Tablet Driver)",
                       R"(Software\Microsoft\Windows\CurrentVersion\Uninstall\ISD Tablet Driver)", "")),
    SPLIT_NAMES(EDS_UsersManualName, ByLine("User's Manual.pdf", "User's Manual.pdf", "", "")),
    SPLIT_NAMES(EDS_HIDRouterINF, ByLine("tvxhidrouter_con.inf", "tvxhidrouter_pro.inf", "tvxhidrouter_isd.inf", "")),
    SPLIT_NAMES(EDS_KickINK, ByLine(R"(Global\TavixCon_KickWISPTIS)", R"(Global\TavixPro_KickWISPTIS)",
                                    R"(Global\TavixISD_KickWISPTIS)", R"(Global\TavixKickWISPTIS)")),
    SPLIT_NAMES(EDS_ReloadAppGestures,
                ByType(R"(Global\TavixConLoadAppGestPenEvent)", R"(Global\TavixConLoadAppGestTouchEvent)",
                       R"(Global\TavixProLoadAppGestPenEvent)", R"(Global\TavixProLoadAppGestTouchEvent)",
                       R"(Global\TavixISDLoadAppGestPenEvent)", R"(Global\TavixISDLoadAppGestTouchEvent)",
                       R"(Global\TavixLoadAppGestEvent)")),
    SPLIT_NAMES(EDS_PipeCPLIn, ByLine(R"(\\.\pipe\Con_CPLInterface_I_)", R"(\\.\pipe\Pro_CPLInterface_I_)",
                                      R"(\\.\pipe\ISD_CPLInterface_I_)", R"(\\.\pipe\CPLInterface_I_)")),
    SPLIT_NAMES(EDS_PipeCPLOut, ByLine(R"(\\.\pipe\Con_CPLInterface_O_)", R"(\\.\pipe\Pro_CPLInterface_O_)",
                                       R"(\\.\pipe\ISD_CPLInterface_O_)", R"(\\.\pipe\CPLInterface_O_)")),
    SPLIT_NAMES(EDS_PipeAPI, ByLine(R"(\\.\pipe\Con_APIInterface_)", R"(\\.\pipe\Pro_APIInterface_)",
                                    R"(\\.\pipe\ISD_APIInterface_)", R"(\\.\pipe\APIInterface_)")),
    SPLIT_NAMES(EDS_TouchCPLName, ByLine("", "", "ISD_ControlPanel.exe", "")),
    SPLIT_NAMES(EDS_CenterName, ForAll("TavixDesktopCenter.exe")),
    SPLIT_NAMES(EDS_DisplaySettingsName, ForAll("LCDSettings.exe")),
    SPLIT_NAMES(EDS_PrefUtilName, ForAll("PrefUtil.exe")),
    SPLIT_NAMES(EDS_DriverUninstallerName, ForAll("remove.exe")),
};
#undef SPLIT_NAMES

constexpr bool RowsStandInOrder()
{
    int32_t name = 0;
    for (const SplitNamesRow &row : kRows) {
        if (row.mName != name++) {
            return false;
        }
    }
    return name == ESDNameCount;
}
static_assert(RowsStandInOrder(), "every identifier has its row, in the order of their numbers");

void BuildDriverSplitNames()
{
    for (const SplitNamesRow &row : kRows) {
        if (AssertsToDebugOut() && gDriverSplitNamesMap.count(row.mName)) {
            const std::string expression = std::string("!gDriverSplitNamesMap.count(") + row.mNameText + ")";
            reportAssertion(expression.c_str(), __FILE__, __LINE__);
        }
        std::map<int32_t, std::string> &names = gDriverSplitNamesMap[row.mName];
        for (size_t at = 0; at < kKeys.size(); ++at) {
            if (row.mNames.mValues[at] != nullptr) {
                names[kKeys[at]] = row.mNames.mValues[at];
            }
        }
    }
    TVX_ASSERT(ESDNameCount == gDriverSplitNamesMap.size());
}

} // namespace

std::string GetDriverSplitName(EDriverSplitName name_I, int32_t type)
{
    if (gDriverSplitNamesMap.empty()) {
        BuildDriverSplitNames();
    }
    TVX_ASSERT(gDriverSplitNamesMap.count(name_I));
    const auto names = gDriverSplitNamesMap.find(name_I);
    if (names == gDriverSplitNamesMap.end()) {
        return std::string();
    }
    for (const int32_t key : {type, type & kDriverHalfMask, type & kDriverLineMask, 0}) {
        const auto found = names->second.find(key);
        if (found != names->second.end()) {
            return found->second;
        }
    }
    if (AssertsToDebugOut()) {
        reportAssertion("Found an entry but could not find a value.", __FILE__, __LINE__);
    }
    return std::string();
}

std::string DriverTypeName(int32_t type)
{
    switch (type) {
    case 0:
        return "Default";
    case 1:
        return "Consumer";
    case 2:
        return "Professional";
    case 3:
        return "ISD";
    case kDriverPenHalf:
        return "Pen";
    case EDriverConPen:
        return "Consumer Pen";
    case EDriverProPen:
        return "Professional Pen";
    case EDriverISDPen:
        return "ISD Pen";
    case kDriverTouchHalf:
        return "Touch";
    case EDriverConTouch:
        return "Consumer Touch";
    case EDriverProTouch:
        return "Professional Touch";
    case EDriverISDTouch:
        return "ISD Touch";
    case EDriverDEBUG:
        return "Debug";
    default:
        return "Unknown";
    }
}
