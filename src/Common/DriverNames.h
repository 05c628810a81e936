// The names that the package gives to services, keys, events, files and so on. They depend on the driver
// line and on the device half, and are asked for by identifier and driver type instead of being spelled.
#pragma once

#include <cstdint>
#include <map>
#include <string>

// What a package drives, as one number: a line of products in kDriverLineMask (1 Consumer, 2 Professional, 3 ISD) and a
// half of the driver in the second hexadecimal digit from the left (0x100 pen, 0x200 touch). Either can stand alone.
enum EDriverType : int32_t {
    EDriverConPen = 257,
    EDriverProPen = 258,
    EDriverISDPen = 259,
    EDriverConTouch = 513,
    EDriverProTouch = 514,
    EDriverISDTouch = 515,
    EDriverDEBUG = 32768,
};

constexpr int32_t kDriverLineMask = 0xF;
constexpr int32_t kDriverHalfMask = 0xF00;
constexpr int32_t kDriverPenHalf = 0x100;
constexpr int32_t kDriverTouchHalf = 0x200;

// The driver type of this run, for the whole process; 0 until the run has settled it.
class CDriverType {
public:
    static int32_t Get() { return mDriverType; }
    static void Set(int32_t type) { mDriverType = type; }

private:
    static int32_t mDriverType;
};

enum EDriverSplitName : int32_t {
    EDS_UDAName = 0,
    EDS_TabletName,
    EDS_CPLName,
    EDS_DatName,
    EDS_ServiceName,
    EDS_ServiceDisplayName,
    EDS_ServiceDescription,
    EDS_WindowClass,
    EDS_TabletKey,
    EDS_ServiceKey,
    EDS_ServiceParamsKey,
    EDS_DriverParamsKey,
    EDS_EventKey,
    EDS_PrefsKey,
    EDS_DriverRunning,
    EDS_UserRunning,
    EDS_QuitSystem,
    EDS_QuitUser,
    EDS_QuitLocal,
    EDS_GQuitDriver,
    EDS_StartCDA,
    EDS_StopCDA,
    EDS_OEMDefaultsName,
    EDS_UserDefaultsName,
    EDS_TouchDrvLibrary,
    EDS_PenDrvLibrary,
    EDS_DrvLibrary,
    EDS_RootLibrary,
    EDS_CPLDefaultName,
    EDS_ZncName,
    EDS_MainWinName,
    EDS_RegCPLName,
    EDS_RegCPLComment,
    EDS_RegDocLocation,
    EDS_DriverPath,
    EDS_TouchName,
    EDS_UninstallKey,
    EDS_UsersManualName,
    EDS_HIDRouterINF,
    EDS_KickINK,
    EDS_ReloadAppGestures,
    EDS_PipeCPLIn,
    EDS_PipeCPLOut,
    EDS_PipeAPI,
    EDS_TouchCPLName,
    EDS_CenterName,
    EDS_DisplaySettingsName,
    EDS_PrefUtilName,
    EDS_DriverUninstallerName,
    ESDNameCount,
};

// Names by identifier and key; a key is a full driver type, a line alone, or 0 for the default. Filled by
// the first look-up and only read from then on. An empty name is an entry like any other: it says that the
// line has no such thing.
extern std::map<int32_t, std::map<int32_t, std::string>> gDriverSplitNamesMap;

// The name of `name_I` for `type`: the entry of the whole type, else of its half, else of its line, else
// the default. Empty, with an assertion, for an unknown identifier.
std::string GetDriverSplitName(EDriverSplitName name_I, int32_t type);

// The same as wide text.
std::wstring GetDriverSplitNameW(EDriverSplitName name_I, int32_t type);

// Display name of a driver type for the trace, such as "Consumer Pen"; "Unknown" for any other code.
std::string DriverTypeName(int32_t type);
