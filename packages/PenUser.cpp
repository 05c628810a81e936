// Pen_TabletUser.exe of the sample package: gives the user who runs it a file of settings, and keeps one that is there.
#include <windows.h>

#include <string>

int WINAPI WinMain(HINSTANCE, HINSTANCE, char *, int)
{
    char data[MAX_PATH] = {};
    GetEnvironmentVariableA("APPDATA", data, sizeof data);
    const std::string folder = std::string(data) + "\\VTablet";
    CreateDirectoryA(folder.c_str(), nullptr);
    const HANDLE file = CreateFileA((folder + "\\Pen_Tablet.dat").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    const std::string text = "[Pen]\r\nPressure=3\r\n";
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
    return 0;
}
