// The central object: the state of one run and the sequence from the command line to the result.
// Its members are defined in the files of the work they do; see the groups below.
#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Common/importWin32API.h"
#include "Common/LanguageProvider.h"
#include "Devices/SupportedDevice.h"
#include "Installer/InstallType.h"

// Bits of the raw result word of Run().
constexpr uint32_t kResultRebootRequired = 2;
constexpr uint32_t kResultDeclined = 16;
constexpr uint32_t kResultRebootNow = 0x100;
constexpr uint32_t kResultSuppressError = 0x200;

class CWinInstallMain {
public:
    // Set-up of a run. `commandLine` is the effective command line (response text, blank, own tail);
    // `removeRole` says that the module was started under the name of the uninstaller.
    CWinInstallMain(const std::string &commandLine, bool removeRole);
    ~CWinInstallMain();
    CWinInstallMain(const CWinInstallMain &) = delete;
    CWinInstallMain &operator=(const CWinInstallMain &) = delete;

    // The whole run. Answers the raw result word: an outcome number with the bits above or-ed in.
    uint32_t Run(HINSTANCE instance, HINSTANCE previousInstance, int showCommand);

    // --- steps: Installer/RunSteps.cpp -------------------------------------------------------------
    uint16_t RunSteps(const std::string &group);
    bool CallGroup(const std::string &group, const std::string &file);
    std::string ConditionalTarget(const std::string &text);
    DWORD DoWork();

    // --- progress: UI/Threads.cpp ------------------------------------------------------------------
    void StartProgressThread();
    void SetBarPosition(uint32_t value, bool relative);

    // --- macros: Installer/MacroValues.cpp ---------------------------------------------------------
    std::string ExpandMacros(const std::string &text);

    // --- flags and rules over the devices found: Installer/Flags.cpp -------------------------------
    void SetFlag(const std::string &name, int32_t value);
    int32_t GetFlag(const std::string &name) const;
    void ReadStaticFlags();
    bool NeedMTAPI() const;
    bool PenService() const;
    bool TouchService() const;
    bool PenPresent() const;

    // --- devices: Devices/DeviceWalk.cpp -----------------------------------------------------------
    void BuildSupportedDevices();
    DWORD EnumerateSupportedDevices(const char *enumerator, bool present, bool remove);
    bool IsProductAttached(const std::string &text) const;

    // --- earlier installations: Installer/EarlierInstallation.cpp ----------------------------------
    bool MustRebootBeforeInstall();
    bool DetectPreISDSplit();
    bool VHIDObsolete();

    // --- pre-flight: Installer/Preflight.cpp -------------------------------------------------------
    // Checks the files that a group needs; see the definition.
    bool CheckGroupFiles(const std::string &group);

    // --- files: Actions/ ---------------------------------------------------------------------------
    // `likelyNew`: nothing is expected at the target, whose directory exists; saves looking.
    void CopyFileCore(const std::string &source, const std::string &target, bool disableRedirect,
                      bool likelyNew = false);
    bool CopyIfNewer(const std::string &source, const std::string &target, bool disableRedirect);
    std::string ResolveCustomPath(const std::string &path) const;
    bool CopyOemInf(const std::string &source);
    bool CopyDirectory(const std::string &source, const std::string &target);
    bool CopyDirectoryTree(const std::string &source, const std::string &target);
    bool EmptyDirectory(const std::string &path);
    bool DeleteFileStep(const std::string &path, bool disableRedirect);

    // --- state of the run --------------------------------------------------------------------------
    HMODULE mRichEdit32 = nullptr;
    HMODULE mRichEdit20 = nullptr;
    HANDLE mRunningMutex = nullptr;
    HINSTANCE mInstance = nullptr;
    HANDLE mWorkerThread = nullptr;
    HANDLE mProgressThread = nullptr; // non-null from the outermost RunSteps on: marks inner calls
    HWND mhWnd = nullptr;
    uint32_t mDialogState = 0; // non-zero: a walk through all pages; also switches the silent options off
    bool mUninstall = false;
    bool mRebootRequired = false;
    bool mRebootNow = false;
    bool mSuppressError = false;
    bool mFromIFE = false;
    bool mDeclined = false;
    std::map<std::string, uint32_t> mCommandMap;
    std::map<std::string, int32_t> mFlags;
    bool mPreSplitDetected = false;
    std::string mCommandLine;
    std::string mCommandOverride;
    uint32_t mBarValue = 0;
    uint32_t mBarStep = 1;
    uint32_t mBarTarget = 0;
    HWND mProgressBar = nullptr;
    LanguageProvider mLanguage;
    uint32_t mAllowOEM = 0;
    std::string mCommand;
    EInstallType mInstallType = EInstallAllowed;
    uint32_t mSilent = 0;
    uint32_t mWinTE = 0;
    uint32_t mProductMask = 3;
    uint32_t mInk = 0;
    uint32_t mWin64 = 0;
    uint32_t mDriverKind = 0; // 0 plain, 1 ISD, 3 VISD, 2 TOUCH
    std::string mOemDataFile = ".\\isdoem.dat";
    std::string mProductName;
    bool mAgreed = false;
    CSetupApi &mSetupApi = SetupApi();
    bool mTraceNamed = false;
    std::string mDebugFilePath;
    uint32_t mDevicePresence = 0; // flags of all devices found, or-ed; only ever gains bits
    std::vector<SupportedDevice> mDeviceList;

private:
    // --- devices: Devices/DeviceWalk.cpp -----------------------------------------------------------
    void MarkFound(SupportedDevice &device_I_O);

    // --- set-up and teardown: Installer/Setup.cpp --------------------------------------------------
    void BuildCommandTable();
    void OpenTraceFile();
    void PlaceTraceFile();

    // --- the options of the command line: Installer/Options.cpp ------------------------------------
    // Answers false when the run ends here (a file was converted to hexadecimal text).
    bool TakeOptions();
    void TakeSilentFamilyOption(const std::string &token);
    void AdoptLanguage(uint32_t number, const std::string &argument);
    void SettleLanguage();

    // --- the sequence: Installer/Run.cpp -----------------------------------------------------------
    bool CheckScriptVersion();
    bool ReadDriverType();
    void ReadIncludes();
    bool TakeRunningMutex();
    uint32_t SilentRun();
    uint32_t WindowedRun(int showCommand);
    uint32_t ResultBits() const;

    // --- pre-flight: Installer/Preflight.cpp -------------------------------------------------------
    // Settles group, switches and page. Answers true when the run ends here with *result_O, because
    // an elevated process has done it.
    bool TakePreflightDecisions(uint32_t *result_O);
    void ReadPreflightSwitches(uint32_t *allowObsoleteOS_O);
    void ChooseGroup();
    uint32_t RelaunchElevated();
};

// The one object of the process, set when its set-up has finished, cleared in its teardown.
// The threads and the window procedure reach the object only through this pointer.
extern CWinInstallMain *volatile gWinInstallMain;

// Version of the script language that this program reads; only the first four characters count.
constexpr char kScriptVersion[] = "1.10.01";
// Version of this program, the value of the macro APP VERSION.
constexpr char kAppVersion[] = "5.3.5-5";
