#include "OnHost.h"

#include "Files.h"
#include "Machine.h"

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
    const std::string host = HostPath(answer);
    if (host.empty()) {
        return false;
    }
    std::string line =
        "\\\\?\\unix\\bin\\sh -c \"(" + command + ") >/dev/null 2>&1 </dev/null; echo $? >'" + host + "'\"";
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    for (int i = 0; i < 500 && ReadText(answer).find('\n') == std::string::npos; ++i) {
        Sleep(20);
    }
    const bool well = ReadText(answer) == "0\n";
    DeleteFileA(answer.c_str());
    return well;
}
