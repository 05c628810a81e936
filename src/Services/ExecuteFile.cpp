#include "Services/ExecuteFile.h"

#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

#include <optional>
#include <vector>

#include "Common/ComApartment.h"
#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Common/Redirection.h"
#include "Common/TextConversions.h"
#include "Common/importWin32API.h"
#include "Services/DirectTrace.h"

namespace {

constexpr int32_t kNoProcess = -1;
constexpr INT_PTR kLargestShellError = 32;

// The shell's own flag for a caller that has no message loop; the headers have a newer name for it.
constexpr ULONG kDdeWait = SEE_MASK_NOASYNC;

// Empty when the platform does not tell.
std::wstring WideModulePath()
{
    std::vector<wchar_t> path(0x8000); // no path is longer
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
}

// COM on this thread for the length of a scope.
class CComScope {
public:
    explicit CComScope(DWORD flags) : mResult(Ole32().CoInitializeEx(nullptr, flags)) {}
    ~CComScope()
    {
        if (SUCCEEDED(mResult)) {
            const DWORD error = GetLastError();
            Ole32().CoUninitialize();
            SetLastError(error);
        }
    }
    CComScope(const CComScope &) = delete;
    CComScope &operator=(const CComScope &) = delete;

private:
    HRESULT mResult;
};

int32_t WaitForExitCode(const CHandle &process)
{
    DWORD exitCode = static_cast<DWORD>(kNoProcess);
    WaitForSingleObject(process.Get(), INFINITE);
    GetExitCodeProcess(process.Get(), &exitCode);
    return static_cast<int32_t>(exitCode);
}

// Wide text for a record; the runtime's own conversion would drop a record for a letter outside its locale.
std::string Shown(const wchar_t *text)
{
    return text != nullptr ? WideToAnsi(text) : "(null)";
}

} // namespace

bool ExecuteFile(const std::string &file, const std::string &parameters, int32_t pause, bool wait, bool disableRedirect,
                 bool hidden)
{
    std::optional<STDisableRedirect> redirect;
    if (disableRedirect) {
        redirect.emplace(true);
    }
    trace(7, "File %s, Params %s, pause %i\n", file.c_str(), parameters.c_str(), static_cast<int>(pause));
    if (!PathExists(file)) {
        trace(7, ", Missing\n");
        return false;
    }
    const DWORD errorBefore = GetLastError();
    EnterComApartment(); // some extensions of the shell are objects
    SHELLEXECUTEINFOA info = {};
    static_assert(sizeof info == 60, "the size that the shell compares");
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS | kDdeWait;
    info.lpFile = file.c_str();
    info.lpParameters = parameters.c_str();
    info.nShow = hidden ? SW_HIDE : SW_SHOWNORMAL;
    const bool started = Shell32().ShellExecuteExA(&info) != FALSE;
    trace(7, ", Ran %s %i\n", YesNo(started), static_cast<int>(errorBefore));
    if (!started) {
        return false;
    }
    const CHandle process(info.hProcess);
    if (process && wait) {
        trace(7, ", waiting for finish...\n");
        WaitForSingleObject(process.Get(), INFINITE);
    }
    trace(7, ", Done\n");
    if (pause > 0) {
        Sleep(static_cast<DWORD>(pause));
    }
    return true;
}

int32_t ExecuteElevated(const std::wstring &file, const std::wstring &parameters, bool wait)
{
    const CComScope com(COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    const std::wstring program = file.empty() ? WideModulePath() : file;
    SHELLEXECUTEINFOW info = {};
    static_assert(sizeof info == 60, "the size that the shell compares");
    info.cbSize = sizeof info;
    // Who waits may end behind the program, so the shell has to be done when it returns. Its refusals are ours to tell.
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | (wait ? kDdeWait : SEE_MASK_ASYNCOK);
    info.lpVerb = L"runas";
    info.lpFile = program.c_str();
    info.lpParameters = parameters.c_str();
    info.nShow = SW_SHOWDEFAULT;
    const std::string name = WideToAnsi(program);
    TVX_TRACE_DIRECT("Executing '%s %s' with elevated rights\n", name.c_str(), WideToAnsi(parameters).c_str());
    const bool success = Shell32().ShellExecuteExW(&info) != FALSE;
    const DWORD error = GetLastError();
    TVX_TRACE_DIRECT("Execute %s returned %08X,%i,%i\n", success ? "success" : "failure", PointerDigits(info.hProcess),
                     static_cast<int>(reinterpret_cast<INT_PTR>(info.hInstApp)), static_cast<int>(error));
    const CHandle process(info.hProcess);
    if (!process) {
        return kNoProcess;
    }
    if (!wait) {
        return 0;
    }
    TVX_TRACE_DIRECT("Waiting for '%s'...\n", name.c_str());
    const int32_t exitCode = WaitForExitCode(process);
    TVX_TRACE_DIRECT("'%s' finished. %i\n", name.c_str(), static_cast<int>(exitCode));
    return exitCode;
}

bool ExecuteFromShell(const wchar_t *file, const wchar_t *parameters, const wchar_t *verb, intptr_t,
                      const wchar_t *folder, int show)
{
    TVX_TRACE_DIRECT("IN ExecuteFromShell\n");
    // Nothing hangs on the answer; where Windows lacks the entry the trace says so.
    BOOL wow64 = FALSE;
    CKernel32().IsWow64Process(GetCurrentProcess(), &wow64);
    const CComScope com(COINIT_APARTMENTTHREADED);
    const auto result =
        reinterpret_cast<INT_PTR>(Shell32().ShellExecuteW(nullptr, verb, file, parameters, folder, show));
    if (result <= kLargestShellError) {
        TVX_TRACE_DIRECT("ShellExecute: '%s %s' %s failed with code %d\n", Shown(file).c_str(),
                         Shown(parameters).c_str(), Shown(verb).c_str(), static_cast<int>(result));
        return false;
    }
    return true;
}
