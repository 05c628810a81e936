#include "Machine.h"

#include "Files.h"

namespace {

// The key of the user, opened anew at each use: in a long row of tests the one that Wine keeps for the process was
// found closed.
HKEY CurrentUser()
{
    RegDisablePredefinedCache();
    return HKEY_CURRENT_USER;
}

} // namespace

bool OnWine()
{
    return Entry<void *>("ntdll.dll", "wine_get_version") != nullptr;
}

std::string EnvironmentText(const char *name)
{
    std::string text(GetEnvironmentVariableA(name, nullptr, 0), '\0');
    text.resize(GetEnvironmentVariableA(name, text.data(), static_cast<DWORD>(text.size())));
    return text;
}

std::string DoublePath(const std::string &name)
{
    return EnvironmentText("TAVIX_DOUBLES") + "\\" + name;
}

bool Execute(std::string line)
{
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process)) {
        return false;
    }
    // For a program of the system below Wine there is no process, and the other handle is whatever stood there.
    const bool ended = process.hProcess == nullptr || WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0;
    CloseHandle(process.hProcess != nullptr ? process.hThread : nullptr);
    CloseHandle(process.hProcess);
    return ended;
}

std::string HostPath(const std::string &path)
{
    const auto convert = Entry<char *(__cdecl *)(const wchar_t *)>("kernel32.dll", "wine_get_unix_file_name");
    char *const found = convert != nullptr ? convert(std::wstring(path.begin(), path.end()).c_str()) : nullptr;
    const std::string host = found != nullptr ? found : "";
    HeapFree(GetProcessHeap(), 0, found);
    return host;
}

bool OnHost(const std::string &command)
{
    // A program of the host has no exit code here: a file brings it.
    const std::string answer = FreeTempName("on-host");
    WriteText(answer, "");
    Execute("\\\\?\\unix\\bin\\sh -c \"(" + command + ") >/dev/null 2>&1 </dev/null; echo $? >'" + HostPath(answer) +
            "'\"");
    for (int i = 0; OnWine() && i < 500 && ReadText(answer).find('\n') == std::string::npos; ++i) {
        Sleep(20);
    }
    const bool well = ReadText(answer) == "0\n";
    DeleteFileA(answer.c_str());
    return well;
}

WindowsVersion::WindowsVersion(const std::string &name, const std::string &program)
    : mFormer(CurrentUser(), "Software\\Wine\\AppDefaults\\" + program)
{
    const std::string key = "Software\\Wine\\AppDefaults\\" + program;
    WriteValue(HKEY_CURRENT_USER, key, "Version", RegText(name));
}
