// A service that behaves as the words behind its program's name tell:
//
//     starting=N, stopping=N   reports N times that it is about to, with a checkpoint that rises, before it does
//     step=MS                  time between two such reports, 50 when missing
//     hint=MS                  its wait hint, 200 when missing
//     flat                     the checkpoint stands still
//     refuses                  takes no stop
//     dies                     ends without any report
#include <windows.h>

#include <cstdlib>
#include <cstring>

namespace {

const char *gWords = "";
HANDLE gStop = nullptr;
SERVICE_STATUS_HANDLE gService = nullptr;

// The number behind a word, 1 for a word without one, `otherwise` for one that is missing.
DWORD Word(const char *word, DWORD otherwise = 0)
{
    const char *const at = std::strstr(gWords, word);
    return at == nullptr                  ? otherwise
           : at[std::strlen(word)] == '=' ? std::strtoul(at + std::strlen(word) + 1, nullptr, 10)
                                          : 1;
}

void Report(DWORD state, DWORD checkPoint = 0)
{
    SERVICE_STATUS status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted = state == SERVICE_RUNNING && Word("refuses") == 0 ? SERVICE_ACCEPT_STOP : 0;
    status.dwCheckPoint = checkPoint;
    status.dwWaitHint = Word("hint", 200);
    SetServiceStatus(gService, &status);
}

void ReportPending(DWORD state, DWORD count)
{
    for (DWORD report = 1; report <= count; ++report) {
        Report(state, Word("flat") != 0 ? 1 : report);
        Sleep(Word("step", 50));
    }
}

void WINAPI Control(DWORD control)
{
    if (control == SERVICE_CONTROL_STOP) {
        Report(SERVICE_STOP_PENDING, 1);
        SetEvent(gStop);
    }
}

void WINAPI ServiceMain(DWORD, char **)
{
    if (Word("dies") != 0) {
        ExitProcess(3);
    }
    gStop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    gService = RegisterServiceCtrlHandlerA("", Control);
    ReportPending(SERVICE_START_PENDING, Word("starting"));
    Report(SERVICE_RUNNING);
    WaitForSingleObject(gStop, INFINITE);
    ReportPending(SERVICE_STOP_PENDING, Word("stopping"));
    Report(SERVICE_STOPPED);
}

} // namespace

int main()
{
    char name[] = "";
    gWords = GetCommandLineA();
    const SERVICE_TABLE_ENTRYA services[] = {{name, ServiceMain}, {nullptr, nullptr}};
    return StartServiceCtrlDispatcherA(services) ? 0 : 1;
}
