#include "Machine.h"

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

bool On64BitWindows()
{
    // Bound at run time: the first Windows XP lacks it.
    const auto ask = Entry<BOOL(WINAPI *)(HANDLE, BOOL *)>("kernel32.dll", "IsWow64Process");
    BOOL answer = FALSE;
    return ask != nullptr && ask(GetCurrentProcess(), &answer) && answer;
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

WindowsVersion::WindowsVersion(const std::string &name, const std::string &program)
    : mFormer(CurrentUser(), "Software\\Wine\\AppDefaults\\" + program)
{
    const std::string key = "Software\\Wine\\AppDefaults\\" + program;
    WriteValue(HKEY_CURRENT_USER, key, "Version", RegText(name));
}
