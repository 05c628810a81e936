// Set-up and teardown of a run.
#include <windows.h>

#include "Actions/Redirection.h"
#include "Actions/RegAccess.h"
#include "Common/CWinSystemState.h"
#include "Common/Handles.h"
#include "Common/ModulePath.h"
#include "Common/Paths.h"
#include "Common/Status.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Common/TraceFile.h"
#include "Common/winplats.h"
#include "Installer/AdminType.h"
#include "Installer/CommandLine.h"
#include "Installer/CommandTable.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/ScriptAccess.h"

CWinInstallMain *volatile gWinInstallMain = nullptr;

namespace {

constexpr int kDebugLevelStep = 100;

// IsWow64Process came with Windows XP SP2: without it this is a 32-bit Windows.
bool IsUnder64BitWindows()
{
    CKernel32 kernel;
    BOOL wow64 = FALSE;
    return kernel.IsWow64Process(GetCurrentProcess(), &wow64) && wow64;
}

std::string NameBehindLastBackslash(const std::string &path)
{
    const size_t last = path.rfind('\\');
    return last == std::string::npos ? path : path.substr(last + 1);
}

} // namespace

CWinInstallMain::CWinInstallMain(const std::string &commandLine, bool removeRole)
    : mUninstall(removeRole), mCommandLine(commandLine), mLanguage("userUI")
{
    const DWORD errorBefore = GetLastError();
    mWin64 = IsUnder64BitWindows() ? 1 : 0;
    trace(5, "Checking %s 64bit %s %i\n", "IsWow64Process", YesNo(mWin64 != 0), static_cast<int>(errorBefore));
    CWinSystemState::DetermineOSType(false);
    BuildCommandTable();
    BuildSupportedDevices();
    gTraceToDebugOut = ReadInteger("", "TraceToDebugOut", 1) != 0;
    gAssertsToDebugOut = ReadInteger("", "AssertsToDebugOut", 1) != 0;
    OpenTraceFile();

    const uint32_t level = ReadInteger("", "DiagnosticLevel", 0);
    if (level != 0) {
        gDiagnosticLevel = static_cast<int>(level);
        trace(0, "Diagnostic level set to %i\n", gDiagnosticLevel);
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

void CWinInstallMain::BuildCommandTable()
{
    for (const CommandRow &row : gCommands) {
        mCommandMap.insert({row.mName, row.mNumber});
    }
}

// The name of the trace file comes from /debug, from the settings, or is the default; without a point anywhere in it
// the process id makes it unique.
void CWinInstallMain::OpenTraceFile()
{
    std::string path;
    const std::vector<std::string> tokens = SplitCommandLine(mCommandLine);
    for (size_t at = 0; at < tokens.size(); ++at) {
        if (IsOption(tokens[at], "/debug") || IsOption(tokens[at], "/d")) {
            gDiagnosticLevel += kDebugLevelStep;
            path = at + 1 < tokens.size() ? tokens[at + 1] : std::string();
            break;
        }
    }
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
    const bool opened = OpenTraceSink(FullPath(path));
    if (!gTraceToDebugOut) {
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

CWinInstallMain::~CWinInstallMain()
{
    CHandle(mProgressThread).Reset();
    CHandle(mWorkerThread).Reset();
    if (mhWnd != nullptr) {
        traceExpectation("!mhWnd");
    }
    CLibrary(mRichEdit32).Reset();
    CLibrary(mRichEdit20).Reset();
    CHandle(mRunningMutex).Reset();
    while (PopRegLocation() == TVXSTATUS_SUCCESS) {
    }
    ReleaseSearchList();
    gWinInstallMain = nullptr;
    PlaceTraceFile();
}

// A file that was named for this run is copied where the script wants the trace; the default one is moved.
void CWinInstallMain::PlaceTraceFile()
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
