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
    RunningSetup run = package.Start(tail, DEBUG_ONLY_THIS_PROCESS);
    EXPECT_TRUE(TakeRights(run.Process(), gone ? package.Path("TavixSetup.exe") : "")) << GetLastError();
    WithoutRightsResult result{run.Wait(), {}};
    for (const std::string &name : Tree(package.Temp())) {
        if (Fits("Install*.txt", name) && name != "Install" + std::to_string(run.ProcessId()) + ".txt") {
            result.mOtherTraces.push_back(ParseTrace(ReadText(package.Temp(name))));
        }
    }
    return result;
}
