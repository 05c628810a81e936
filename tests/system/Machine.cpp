#include "Machine.h"

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
    : mFormer(HKEY_CURRENT_USER, "Software\\Wine\\AppDefaults\\" + program)
{
    WriteValue(HKEY_CURRENT_USER, "Software\\Wine\\AppDefaults\\" + program, "Version", RegText(name));
}
