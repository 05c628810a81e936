#include "Machine.h"

bool OnWine()
{
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

bool On64BitWindows()
{
    // Bound at run time: the first Windows XP lacks it.
    using Asker = BOOL(WINAPI *)(HANDLE, BOOL *);
    const auto ask = reinterpret_cast<Asker>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "IsWow64Process")));
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
    : mKey("Software\\Wine\\AppDefaults\\" + program)
{
    if (OnWine()) {
        mFormer = ReadValue(HKEY_CURRENT_USER, mKey, "Version");
        mChanged = WriteValue(HKEY_CURRENT_USER, mKey, "Version", RegText(name));
    }
}

WindowsVersion::~WindowsVersion()
{
    if (!mChanged) {
        return;
    }
    if (mFormer) {
        WriteValue(HKEY_CURRENT_USER, mKey, "Version", *mFormer);
    } else {
        RemoveValue(HKEY_CURRENT_USER, mKey, "Version");
    }
}
