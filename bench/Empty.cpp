// Does nothing: what it costs to start any program of this kind, which nothing that a program does can take away.
#include <windows.h>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int)
{
    return 0;
}
