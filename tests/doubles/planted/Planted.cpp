// A library that nobody should load: it leaves a file beside itself that tells who did.
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) {
        char path[MAX_PATH + 8] = {};
        GetModuleFileNameA(module, path, MAX_PATH);
        CloseHandle(CreateFileA(lstrcatA(path, ".loaded"), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    }
    return TRUE;
}
