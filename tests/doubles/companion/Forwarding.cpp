// A companion with one export, which hands the call to the library companion.dll that it loads by its name.
#include <windows.h>

extern "C" __declspec(dllexport) unsigned DevInstall(const char *device, const char *inf)
{
    const HMODULE library = LoadLibraryA("companion.dll");
    const auto entry = reinterpret_cast<unsigned (*)(const char *, const char *)>(
        reinterpret_cast<void *>(GetProcAddress(library, "DevInstall")));
    return library != nullptr ? entry(device, inf) : GetLastError();
}
