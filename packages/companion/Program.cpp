// The companion as a program: the verb and what belongs to it stand on the command line, the answer is the exit code. A
// program without a console, so that no window opens.
#include <windows.h>

#include <string>

#include "Companion.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR parameters, int)
{
    return static_cast<int>(CarryOut((std::string("program ") + parameters).c_str()));
}
