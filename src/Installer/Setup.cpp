// Set-up and teardown of a run.
#include <windows.h>

#include "Commands/CommandTable.h"
#include "Common/CWinSystemState.h"
#include "Common/FileOwner.h"
#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/ModulePath.h"
#include "Common/Paths.h"
#include "Common/Redirection.h"
#include "Common/Status.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Common/TraceFile.h"
#include "Common/winplats.h"
#include "Devices/DeviceWalk.h"
#include "Installer/AdminType.h"
#include "Installer/CommandLine.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/Options.h"
#include "Installer/RunHandles.h"
#include "Registry/RegAccess.h"
#include "Script/MacroValues.h"
#include "Script/ScriptAccess.h"

namespace {

constexpr int kDebugLevelStep = 100;
// What a step may need at the bottom of all groups: keys and folders nest by the hundred.
constexpr uintptr_t kStackKept = 512 * 1024;

// What the steps ask of this machine.
class CMachineHost : public IRunHost {
public:
    bool PathExists(const std::string &path) override { return ::PathExists(path); }
    std::optional<std::string> MacroValue(const CRunState &state, const std::string &upperName) override
    {
        return ::MacroValue(state, upperName);
    }
    // A stack is one piece of address space, reserved when its thread began and used from its end down.
    bool IsStackLow() override
    {
        MEMORY_BASIC_INFORMATION piece = {};
        const auto here = reinterpret_cast<uintptr_t>(&piece);
        return VirtualQuery(&piece, &piece, sizeof piece) != 0 &&
               here - reinterpret_cast<uintptr_t>(piece.AllocationBase) < kStackKept;
    }
};

IRunHost &MachineHost()
{
    static CMachineHost host;
    return host;
}

// IsWow64Process came with Windows XP SP2: without it this is a 32-bit Windows.
bool IsUnder64BitWindows()
{
    CKernel32 kernel;
    BOOL wow64 = FALSE;
    return kernel.IsWow64Process(GetCurrentProcess(), &wow64) && wow64;
}

// Whether the default trace file is to be made anew. Others know its name as well as we do and may have laid something
// under it; that goes, so that nothing is written through a link. In a folder of the user's own a file that is there
// is the trace of an earlier run under the same process id.
bool TraceBeginsAnew(const std::string &path)
{
    CHandle file(CreateFileA(path.c_str(), READ_CONTROL, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                             nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!OthersMayWrite(path.substr(0, path.rfind('\\') + 1)) &&
        (!file || (IsOwnFile(file.Get()) && !IsLinkedFile(file.Get())))) {
        return false;
    }
    file.Reset();
    RemoveName(path);
    return true;
}

std::string NameBehindLastBackslash(const std::string &path)
{
    const size_t last = path.rfind('\\');
    return last == std::string::npos ? path : path.substr(last + 1);
}

} // namespace

CWinInstallMain::CWinInstallMain(const std::string &commandLine, bool removeRole)
    : CRunState(MachineHost(), ScriptFiles(), gCommands, kCommandCount), mHandles(std::make_unique<Handles>(*this))
{
    mCommandLine = commandLine;
    mUninstall = removeRole;
    mLanguage = LanguageProvider("userUI");
    SetProgress(&mHandles->mProgress);

    const DWORD errorBefore = GetLastError();
    mWin64 = IsUnder64BitWindows() ? 1 : 0;
    trace(5, "Checking %s 64bit %s %i\n", "IsWow64Process", YesNo(mWin64 != 0), static_cast<int>(errorBefore));
    CWinSystemState::DetermineOSType(false);
    BuildSupportedDevices(*this);
    SetTracesToDebugOut(ReadInteger("", "TraceToDebugOut", 1) != 0);
    SetAssertsToDebugOut(ReadInteger("", "AssertsToDebugOut", 1) != 0);
    OpenTraceFile();

    const uint32_t level = ReadInteger("", "DiagnosticLevel", 0);
    if (level != 0) {
        SetDiagnosticLevel(static_cast<int>(level));
        trace(0, "Diagnostic level set to %i\n", DiagnosticLevel());
    }
    trace(0, "OSPlatform %s\n", GetPlatformText().c_str());
    trace(0, "User Admin Type %i\n", static_cast<int>(GetUserAdminType()));
    mDialogState = ReadInteger("", "DialogTesting", 0);

    const std::string override = ReadString("", "DummerTest", ReadString("", "LanguageOverride", ""));
    if (!override.empty()) {
        const LanguageProvider wanted(override);
        if (wanted.IsSupported()) {
            mLanguage = wanted;
        }
    }
    trace(5, "Language is %s\n", mLanguage.GetName().c_str());
    gWinInstallMain = this;
}

// The name of the trace file comes from /debug, from the settings, or is the default; without a point anywhere in it
// the process id makes it unique.
void CWinInstallMain::OpenTraceFile()
{
    const DebugRequest debug = FindDebugOption(SplitCommandLine(mCommandLine));
    if (debug.mAsked) {
        SetDiagnosticLevel(DiagnosticLevel() + kDebugLevelStep);
    }
    std::string path = debug.mFile;
    if (path.empty()) {
        path = ReadString("", "TraceFileName", "", true);
    }
    mTraceNamed = !path.empty();
    if (!mTraceNamed) {
        path = JoinPath(ExpandMacros("!TEMP!"), "Install");
    }
    if (path.find('.') == std::string::npos) {
        path += std::to_string(GetCurrentProcessId()) + ".txt";
    }
    // The run changes its working directory later, and the file has to be found again at the end.
    const std::string full = FullPath(path);
    const bool opened = OpenTraceSink(full, !mTraceNamed && TraceBeginsAnew(full));
    if (!TracesToDebugOut()) {
        return;
    }
    if (opened) {
        traceAlways("Sending trace to file %s\n", path.c_str());
    } else {
        traceAlways("Oops - Could not open logfile: %s\n", path.c_str());
    }
    SYSTEMTIME now;
    GetLocalTime(&now);
    traceAlways("%s %i/%i/%i %i:%i\n", NameBehindLastBackslash(UpperAscii(ModulePath())).c_str(), now.wMonth, now.wDay,
                now.wYear, now.wHour, now.wMinute);
}

void CWinInstallMain::TearDown()
{
    mHandles->mProgress.Close();
    mHandles->mWindow.Close();
    mHandles->mRunningMutex.Reset();
    if (!mHandles->mWindow.IsAtWork()) { // a step may be in the middle of these lists
        while (PopRegLocation() == TVXSTATUS_SUCCESS) {
        }
        Script().ReleaseSearchList();
    }
    gWinInstallMain = nullptr;
    PlaceTraceFile();
}

// A file that was named for this run is copied where the script wants the trace; the default one is moved.
void CWinInstallMain::PlaceTraceFile() const
{
    const std::string path = TraceSinkPath();
    CloseTraceSink();
    if (mDebugFilePath.empty() || path.empty()) {
        return;
    }
    const STDisableRedirect redirect(true);
    if (mTraceNamed) {
        CopyFileA(path.c_str(), mDebugFilePath.c_str(), FALSE);
    } else {
        MoveFileExA(path.c_str(), mDebugFilePath.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED);
    }
}
