#include "Installer/Elevation.h"

#include <windows.h>

#include <shellapi.h>

#include <vector>

#include "Common/Handles.h"
#include "Common/importWin32API.h"

namespace {

constexpr uint32_t kNotElevated = 5;
constexpr int32_t kLaunchFailed = -1;

// Empty when the platform does not tell.
std::wstring WideModulePath()
{
    std::vector<wchar_t> path(0x8000); // no path is longer
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
}

// The process, or none when the shell does not start it.
CHandle StartElevated(const std::wstring &commandLine)
{
    // Stays loaded: the shell may leave threads of its own behind.
    const HMODULE shell = LoadSystemLibrary("shell32.dll");
    const auto execute = BindEntry<decltype(&ShellExecuteExW)>(shell, "ShellExecuteExW");
    const std::wstring module = WideModulePath();
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    // This process ends behind the child, so the shell has to be done when it returns. Its refusals are ours to tell.
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    info.lpVerb = L"runas";
    info.lpFile = module.c_str();
    info.lpParameters = commandLine.c_str();
    info.nShow = SW_SHOWDEFAULT;
    if (execute == nullptr || module.empty() || !execute(&info)) {
        return CHandle();
    }
    return CHandle(info.hProcess);
}

int32_t WaitForResult(const CHandle &process)
{
    DWORD exitCode = 0;
    if (!process || WaitForSingleObject(process.Get(), INFINITE) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process.Get(), &exitCode)) {
        return kLaunchFailed;
    }
    return static_cast<int32_t>(exitCode);
}

} // namespace

uint32_t RunElevated(const std::wstring &commandLine)
{
    const int32_t result = WaitForResult(StartElevated(commandLine));
    return result < 0 ? kNotElevated : static_cast<uint32_t>(result);
}
