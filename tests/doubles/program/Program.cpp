// A program that tells how it was started. Its arguments are words, of which it looks for these:
//
//     tell=FILE    appends to the file: its arguments, "|", the state that its window is to have
//     delay=MS     goes on after that time
//     event=NAME   goes on when the event of this name is set
//     done=FILE    appends to the file that it ends
//     code=N       ends with this exit code
//     crash        ends by a crash
#include <windows.h>

#include <cstdlib>
#include <string>

namespace {

std::string gArguments;

std::string Word(const std::string &name)
{
    const size_t at = gArguments.find(name + "=");
    const size_t begin = at + name.size() + 1;
    return at == std::string::npos ? "" : gArguments.substr(begin, gArguments.find_first_of(" \"", begin) - begin);
}

void Append(const std::string &file, const std::string &text)
{
    DWORD written = 0;
    const HANDLE handle =
        CreateFileA(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(handle);
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, char *arguments, int show)
{
    gArguments = arguments;
    Append(Word("tell"), gArguments + "|" + std::to_string(show) + "\n");
    Sleep(static_cast<DWORD>(std::atoi(Word("delay").c_str())));
    if (!Word("event").empty()) {
        WaitForSingleObject(CreateEventA(nullptr, TRUE, FALSE, Word("event").c_str()), INFINITE);
    }
    Append(Word("done"), "done\n");
    if (gArguments.find("crash") != std::string::npos) {
        *static_cast<volatile int *>(nullptr) = 0;
    }
    return std::atoi(Word("code").c_str());
}
