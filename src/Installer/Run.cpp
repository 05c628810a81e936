// The sequence of a run, from the script to the raw result word.
#include <windows.h>

#include <shellapi.h>

#include "Common/DriverNames.h"
#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/Paths.h"
#include "Common/StringUtilities.h"
#include "Common/TokenSplitter.h"
#include "Common/Trace.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/ScriptAccess.h"

namespace {

constexpr uint32_t kResultFailed = 1;

// Length of the part of the script's version that has to be this program's own.
constexpr size_t kComparedVersion = 4;

struct DriverTypeRow {
    const char *mPrefType;
    int32_t mType;
    const char *mExpectation; // what is reported while the variable still holds another type
};

// Every type but the first is reported when it is read, since the variable holds the first by then: those who read
// traces expect that line in every run of the five.
constexpr DriverTypeRow kDriverTypes[] = {
    {"Pen_Tablet", EDriverConPen, nullptr},
    {"Tavix_Tablet", EDriverProPen, "mDriverType == EDriverProPen || mDriverType == EDriverDEBUG"},
    {"ISD_Tablet", EDriverISDPen, "mDriverType == EDriverISDPen || mDriverType == EDriverDEBUG"},
    {"Pen_Touch", EDriverConTouch, "mDriverType == EDriverConTouch || mDriverType == EDriverDEBUG"},
    {"Tavix_Touch", EDriverProTouch, "mDriverType == EDriverProTouch || mDriverType == EDriverDEBUG"},
    {"ISD_Touch", EDriverISDTouch, "mDriverType == EDriverISDTouch || mDriverType == EDriverDEBUG"},
};

// What a run without a window answers for the page that it cannot show. It sets the low bit in all its failures, which
// a run with a window does not.
uint32_t SilentOutcome(EInstallType type)
{
    switch (type) {
    case EInstallAllowed:
    case EUninstallAllowed:
        return 0;
    case ERebootBefore:
        return 9;
    case ENotSupported:
        return 33;
    case ENoISDHardware:
        return 65;
    case EUnhandledType:
        traceExpectation("!\"Unhandled Install type\"");
        return 0;
    case ENonAdmin:
    case EPreSplit:
        break;
    }
    return 1;
}

// Registry values that an OEM puts beside the package are taken over as they are; nobody waits for that.
void ImportOemRegistryFile()
{
    if (!PathExists(".\\oemextra.reg")) {
        return;
    }
    // Stays loaded: the shell may leave threads of its own behind.
    const HMODULE shell = LoadSystemLibrary("shell32.dll");
    const auto execute = shell != nullptr ? BindEntry<decltype(&ShellExecuteA)>(shell, "ShellExecuteA") : nullptr;
    if (execute != nullptr) {
        execute(nullptr, "open", "regedit.exe", "/s oemextra.reg", nullptr, SW_SHOWNORMAL);
    }
}

} // namespace

uint32_t CWinInstallMain::Run(HINSTANCE instance, HINSTANCE, int showCommand)
{
    BuildSupportedDevices();
    EnumerateSupportedDevices("USB", true, false);
    mInstance = instance;
    SetCurrentDirectoryA(ReadString("", "WorkingOverride", ExpandMacros("!.!")).c_str());
    SetConfigFile("");
    if (!CheckScriptVersion()) {
        return kResultFailed;
    }
    SetDialogData(ReadString("MAIN", "DialogData", ""));
    if (mDialogState == 0) {
        mSilent = ReadInteger("", "SILENT", mSilent);
        if (mSilent != 0) {
            trace(7, "Silent install requested from registry\n");
        }
    }
    if (!ReadDriverType()) {
        return kResultFailed;
    }
    ReadIncludes();
    ReadStaticFlags();
    if (!TakeOptions() || !TakeRunningMutex()) {
        return kResultFailed;
    }
    uint32_t elevatedResult = 0;
    if (TakePreflightDecisions(&elevatedResult)) {
        return elevatedResult;
    }
    ImportOemRegistryFile();
    return mSilent != 0 ? SilentRun() : WindowedRun(showCommand);
}

bool CWinInstallMain::CheckScriptVersion()
{
    const std::string version = ReadString("MAIN", "Version", "");
    if (version.compare(0, kComparedVersion, kScriptVersion, kComparedVersion) == 0) {
        return true;
    }
    trace(1, "Version mismatch: exe-%s, dat-%s\n", kScriptVersion, version.c_str());
    return false;
}

bool CWinInstallMain::ReadDriverType()
{
    mDriverType = EDriverConPen;
    const std::string text = ReadString("MAIN", "PrefType", "");
    for (const DriverTypeRow &row : kDriverTypes) {
        if (EqualsNoCase(text, row.mPrefType)) {
            if (row.mExpectation != nullptr) {
                traceExpectation(row.mExpectation);
            }
            mDriverType = row.mType;
            return true;
        }
    }
    trace(9, "Driver type not recognized: [%s]\n", text.c_str());
    return false;
}

void CWinInstallMain::ReadIncludes()
{
    TokenSplitter items(";", ReadString("MAIN", "Include", ""));
    for (std::string item = items.First(); !items.AtEnd(); item = items.Next()) {
        AddIncludeFile(ExpandMacros(item));
    }
}

// One run at a time on the machine, whatever the package and the session.
bool CWinInstallMain::TakeRunningMutex()
{
    CHandle mutex(CreateMutexA(nullptr, FALSE, "Global\\TvxInstallerRunningMutex"));
    const DWORD error = GetLastError();
    if (!mutex) {
        traceExpectation("!\"Could not create running mutex\"");
        return false;
    }
    if (error == ERROR_ALREADY_EXISTS) {
        traceExpectation("!\"Already running\"");
        return false;
    }
    mRunningMutex = mutex.Release();
    return true;
}

// The outcome of the steps does not reach the result, apart from the request to reboot.
uint32_t CWinInstallMain::SilentRun()
{
    if (mInstallType == EInstallAllowed || mInstallType == EUninstallAllowed) {
        DoWork();
    }
    return SilentOutcome(mInstallType) | ResultBits();
}

uint32_t CWinInstallMain::ResultBits() const
{
    return (mRebootRequired ? kResultRebootRequired : 0) | (mSuppressError ? kResultSuppressError : 0) |
           (mDeclined ? kResultDeclined : 0);
}
