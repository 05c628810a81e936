#include "WithoutRights.h"

#include <cstring>

#include "Files.h"
#include "Machine.h"

namespace {

// Makes an entry of a system library answer FALSE at once. All processes have the library at the same place, as a rule;
// where one has not, the bytes there are others.
bool MakeAnswerFalse(HANDLE process, FARPROC entry)
{
    static const unsigned char code[] = {0x31, 0xC0, 0xC2, 0x08, 0x00}; // xor eax, eax; ret 8
    void *const address = reinterpret_cast<void *>(entry);
    unsigned char former[sizeof code];
    return ReadProcessMemory(process, address, former, sizeof former, nullptr) &&
           memcmp(address, former, sizeof former) == 0 &&
           WriteProcessMemory(process, address, code, sizeof code, nullptr) &&
           FlushInstructionCache(process, address, sizeof code);
}

// Changes the process at its first break, behind the loading of its libraries, and lets it go.
bool TakeRights(HANDLE process, const std::string &goneProgram)
{
    DEBUG_EVENT event;
    while (WaitForDebugEvent(&event, 30000)) {
        const DWORD code = event.dwDebugEventCode;
        if (code == EXCEPTION_DEBUG_EVENT) {
            const bool changed =
                MakeAnswerFalse(process, GetProcAddress(GetModuleHandleA("advapi32.dll"), "EqualSid")) &&
                (goneProgram.empty() || MoveFileA(goneProgram.c_str(), (goneProgram + ".gone").c_str()));
            ContinueDebugEvent(event.dwProcessId, event.dwThreadId, DBG_CONTINUE);
            return DebugActiveProcessStop(event.dwProcessId) && changed;
        }
        CloseHandle(code == CREATE_PROCESS_DEBUG_EVENT ? event.u.CreateProcessInfo.hFile
                    : code == LOAD_DLL_DEBUG_EVENT     ? event.u.LoadDll.hFile
                                                       : nullptr);
        ContinueDebugEvent(event.dwProcessId, event.dwThreadId, DBG_CONTINUE);
    }
    return false;
}

} // namespace

WithoutRightsResult RunWithoutRights(Package &package, const std::string &tail, bool gone)
{
    WithoutRightsResult result;
    RunResult &parent = result.mParent;
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    const std::string program = package.Path("TavixSetup.exe");
    std::string line = "\"" + program + "\" " + tail;
    const std::string tmp = EnvironmentText("TMP");
    const std::string temp = EnvironmentText("TEMP");
    SetEnvironmentVariableA("TMP", package.Temp().c_str());
    SetEnvironmentVariableA("TEMP", package.Temp().c_str());
    parent.mStarted = CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, DEBUG_ONLY_THIS_PROCESS, nullptr,
                                     package.Folder().c_str(), &startup, &process) != FALSE;
    SetEnvironmentVariableA("TMP", tmp.c_str());
    SetEnvironmentVariableA("TEMP", temp.c_str());
    if (!parent.mStarted || !TakeRights(process.hProcess, gone ? program : "")) {
        ADD_FAILURE() << "error " << GetLastError() << " when starting the installer and taking its rights";
    }
    parent.mProcessId = process.dwProcessId;
    parent.mTimedOut = WaitForSingleObject(process.hProcess, 30000) != WAIT_OBJECT_0;
    EXPECT_FALSE(parent.mTimedOut) << "the installer does not end";
    TerminateProcess(process.hProcess, 0xFFFFFFFF); // one that does not end
    GetExitCodeProcess(process.hProcess, &parent.mExitCode);
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
