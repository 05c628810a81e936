// The sequence of a run, from the script to the raw result word.
#include <windows.h>

#include <utility>

#include "Common/Paths.h"
#include "Common/TextConversions.h"
#include "Common/TokenSplitter.h"
#include "Common/Trace.h"
#include "Devices/DeviceWalk.h"
#include "Installer/CommandLine.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/DriverTypes.h"
#include "Installer/Elevation.h"
#include "Installer/MachineFacts.h"
#include "Installer/Options.h"
#include "Installer/Outcomes.h"
#include "Installer/RunHandles.h"
#include "Script/ScriptAccess.h"
#include "Script/ScriptVersion.h"
#include "Shell/ResourceDll.h"
#include "Services/ExecuteFile.h"
#include "UI/Work.h"

namespace {

// The program by its full path, from the folder where the system finds it first; no other of its name is started.
std::string RegistryEditor()
{
    char folder[MAX_PATH] = "";
    GetSystemDirectoryA(folder, sizeof folder);
    std::string path = JoinPath(folder, "regedit.exe");
    if (PathExists(path)) {
        return path;
    }
    GetWindowsDirectoryA(folder, sizeof folder);
    return JoinPath(folder, "regedit.exe");
}

// Registry values that an OEM puts beside the package are taken over as they are; nobody waits for that.
void ImportOemRegistryFile()
{
    if (PathExists(".\\oemextra.reg")) {
        ExecuteFromShell(AnsiToWide(RegistryEditor()).c_str(), L"/s oemextra.reg", L"open", 0, nullptr, SW_HIDE);
    }
}

} // namespace

uint32_t CWinInstallMain::Run(HINSTANCE instance, HINSTANCE, int showCommand)
{
    BuildSupportedDevices(*this);
    EnumerateSupportedDevices(*this, "USB", true, false);
    mHandles->mInstance = instance;
    SetCurrentDirectoryA(ReadString("", "WorkingOverride", ExpandMacros("!.!")).c_str());
    Script().SetConfigFile("");
    if (!CheckScriptVersion()) {
        return kResultFailed;
    }
    Script().SetDialogData(ReadString("MAIN", "DialogData", ""));
    if (mDialogState == 0) {
        mSilent = ReadInteger("", "SILENT", mSilent);
        if (mSilent != 0) {
            trace(7, "Silent install requested from registry\n");
        }
    }
    if (!SettleDriverType(ReadString("MAIN", "PrefType", ""))) {
        return kResultFailed;
    }
    ReadIncludes();
    TakeStaticFlags(ReadString("STATIC_FLAGS", "", ""));
    const HexRequest hex = TakeOptions(SplitCommandLine(mCommandLine), *this, mInk, mLanguage);
    if (!hex.mFile.empty()) {
        FileToHex(hex.mFile, hex.mFile + ".txt");
    }
    SettleLanguage(ReadString("MAIN", "Languages", ""), mLanguage);
    if (hex.mAsked || !TakeRunningMutex()) {
        return kResultFailed;
    }
    CMachineFacts facts(*this);
    if (TakePreflightDecisions(*this, facts) == EPreflightElevate) {
        return RunElevatedCopy();
    }
    ImportOemRegistryFile();
    return mSilent != 0 ? SilentRun() : WindowedRun(showCommand);
}

bool CWinInstallMain::CheckScriptVersion()
{
    const std::string version = ReadString("MAIN", "Version", "");
    if (IsScriptVersion(version)) {
        return true;
    }
    trace(1, "Version mismatch: exe-%s, dat-%s\n", kScriptVersion, version.c_str());
    return false;
}

void CWinInstallMain::ReadIncludes()
{
    TokenSplitter items(";", ReadString("MAIN", "Include", ""));
    for (std::string item = items.First(); !items.AtEnd(); item = items.Next()) {
        Script().AddIncludeFile(ExpandMacros(item));
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
    mHandles->mRunningMutex = std::move(mutex);
    return true;
}

// The child has the whole command line, the text of the response file included: that file is gone by now.
uint32_t CWinInstallMain::RunElevatedCopy()
{
    trace(2, "Launching elevated process and exiting\n");
    mHandles->mRunningMutex.Reset(); // the child is going to take it
    return RunElevated(AnsiToWide(mCommandLine));
}

// The outcome of the steps does not reach the result, apart from the request to reboot.
uint32_t CWinInstallMain::SilentRun()
{
    if (mInstallType == EInstallAllowed || mInstallType == EUninstallAllowed) {
        DoWork(*this);
    }
    return SilentResult(*this, *this);
}

// The pages decide what becomes of the run; the worker runs its group.
uint32_t CWinInstallMain::WindowedRun(int showCommand)
{
    if (!mHandles->mWindow.Create(mHandles->mInstance, showCommand)) {
        return kResultFailed;
    }
    mHandles->mWindow.RunMessageLoop();
    return WindowedResult(*this, *this);
}
