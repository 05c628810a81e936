#include "WithoutRights.h"

#include <psapi.h>

#include <cstring>

#include "Files.h"

namespace {

// The environment of this program with another folder for temporary files, for as long as a process is made in it.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string &folder) : mTmp(Exchange("TMP", folder)), mTemp(Exchange("TEMP", folder))
    {
    }
    ~TemporaryFolder()
    {
        Exchange("TMP", mTmp);
        Exchange("TEMP", mTemp);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

private:
    static std::string Exchange(const char *name, const std::string &value)
    {
        char former[MAX_PATH] = {};
        GetEnvironmentVariableA(name, former, sizeof former);
        SetEnvironmentVariableA(name, value.c_str());
        return former;
    }
    std::string mTmp;
    std::string mTemp;
};

// Where an entry of this program's own libraries lies in another process; null when the library is not there.
void *RemoteAddress(HANDLE process, const char *library, const char *entry)
{
    const auto own = reinterpret_cast<char *>(GetProcAddress(LoadLibraryA(library), entry));
    HMODULE home = nullptr; // the entry may be a forwarder into another library
    char name[MAX_PATH] = {};
    if (own == nullptr ||
        !GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, own,
                            &home) ||
        !GetModuleBaseNameA(GetCurrentProcess(), home, name, sizeof name)) {
        return nullptr;
    }
    HMODULE modules[256];
    DWORD size = 0;
    if (!EnumProcessModules(process, modules, sizeof modules, &size)) {
        return nullptr;
    }
    for (DWORD i = 0; i < size / sizeof(HMODULE) && i < 256; ++i) {
        char other[MAX_PATH] = {};
        GetModuleBaseNameA(process, modules[i], other, sizeof other);
        if (lstrcmpiA(name, other) == 0) {
            return reinterpret_cast<char *>(modules[i]) + (own - reinterpret_cast<char *>(home));
        }
    }
    return nullptr;
}

// Makes an entry with two arguments answer FALSE at once.
bool MakeAnswerFalse(HANDLE process, const char *library, const char *entry)
{
    static const unsigned char code[] = {0x31, 0xC0, 0xC2, 0x08, 0x00}; // xor eax, eax; ret 8
    void *const address = RemoteAddress(process, library, entry);
    SIZE_T written = 0;
    return address != nullptr && WriteProcessMemory(process, address, code, sizeof code, &written) &&
           written == sizeof code && FlushInstructionCache(process, address, sizeof code);
}

// Carries the process from its first break, behind the loading of its libraries, to its end.
DWORD DebugToTheEnd(HANDLE process, const std::function<void()> &whenLoaded, bool *timedOut_O)
{
    bool changed = false;
    DEBUG_EVENT event;
    while (WaitForDebugEvent(&event, 30000)) {
        DWORD answer = DBG_CONTINUE;
        if (event.dwDebugEventCode == EXIT_PROCESS_DEBUG_EVENT) {
            const DWORD exitCode = event.u.ExitProcess.dwExitCode;
            ContinueDebugEvent(event.dwProcessId, event.dwThreadId, DBG_CONTINUE);
            EXPECT_TRUE(changed) << "the process ended before its rights were taken";
            return exitCode;
        }
        if (event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT) {
            const bool isBreak = event.u.Exception.ExceptionRecord.ExceptionCode == EXCEPTION_BREAKPOINT;
            if (isBreak && !changed) {
                EXPECT_TRUE(MakeAnswerFalse(process, "advapi32.dll", "EqualSid")) << "error " << GetLastError();
                if (whenLoaded) {
                    whenLoaded();
                }
                changed = true;
            }
            answer = isBreak ? DBG_CONTINUE : DBG_EXCEPTION_NOT_HANDLED;
        } else if (event.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT) {
            CloseHandle(event.u.CreateProcessInfo.hFile);
        } else if (event.dwDebugEventCode == LOAD_DLL_DEBUG_EVENT) {
            CloseHandle(event.u.LoadDll.hFile);
        }
        ContinueDebugEvent(event.dwProcessId, event.dwThreadId, answer);
    }
    *timedOut_O = true;
    ADD_FAILURE() << "the process neither ends nor tells anything";
    TerminateProcess(process, 0xFFFFFFFF);
    return 0xFFFFFFFF;
}

} // namespace

WithoutRightsResult RunWithoutRights(Package &package, const std::string &tail, const std::function<void()> &whenLoaded)
{
    WithoutRightsResult result;
    RunResult &parent = result.mParent;
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::string line = "\"" + package.Path("TavixSetup.exe") + "\" " + tail;
    line.push_back('\0');
    {
        const TemporaryFolder environment(package.Temp());
        parent.mStarted = CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, DEBUG_ONLY_THIS_PROCESS,
                                         nullptr, package.Folder().c_str(), &startup, &process) != FALSE;
    }
    if (!parent.mStarted) {
        ADD_FAILURE() << "error " << GetLastError() << " when starting the installer under the debugger";
        return result;
    }
    parent.mProcessId = process.dwProcessId;
    parent.mExitCode = DebugToTheEnd(process.hProcess, whenLoaded, &parent.mTimedOut);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    if (FileExists(package.Temp("TavixInstallO.txt"))) {
        parent.mOutputFile = ReadText(package.Temp("TavixInstallO.txt"));
    }
    const std::string own = "Install" + std::to_string(parent.mProcessId) + ".txt";
    for (const std::string &name : Tree(package.Temp())) {
        if (name == own) {
            parent.mTraceText = ReadText(package.Temp(name));
            parent.mTrace = ParseTrace(parent.mTraceText);
        } else if (Fits("Install*.txt", name)) {
            result.mOtherTraces.push_back(ParseTrace(ReadText(package.Temp(name))));
        }
    }
    return result;
}
