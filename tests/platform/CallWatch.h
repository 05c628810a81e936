// Sees every call of this thread into the system: what a process that is stopped leaves behind is what stands on the
// disk at one of these calls.
#pragma once

#include <windows.h>

#include <cstring>
#include <functional>
#include <vector>

// Puts a stub in front of each entry of ntdll that calls the system, for the length of the object. `seen` is called
// before the system is, and its own calls are not seen.
class CCallWatch {
public:
    explicit CCallWatch(std::function<void()> seen) : mSeen(std::move(seen)), mThread(GetCurrentThreadId())
    {
        constexpr DWORD kRoom = 0x20000;
        char *stub = static_cast<char *>(VirtualAlloc(nullptr, kRoom, MEM_COMMIT, PAGE_EXECUTE_READWRITE));
        mStubs = stub;
        gWatch = this;
        char *const base = reinterpret_cast<char *>(GetModuleHandleA("ntdll.dll"));
        const auto *dos = reinterpret_cast<IMAGE_DOS_HEADER *>(base);
        const auto *nt = reinterpret_cast<IMAGE_NT_HEADERS32 *>(base + dos->e_lfanew);
        const auto *exports =
            reinterpret_cast<IMAGE_EXPORT_DIRECTORY *>(base + nt->OptionalHeader.DataDirectory[0].VirtualAddress);
        const auto *names = reinterpret_cast<DWORD *>(base + exports->AddressOfNames);
        const auto *ordinals = reinterpret_cast<WORD *>(base + exports->AddressOfNameOrdinals);
        const auto *functions = reinterpret_cast<DWORD *>(base + exports->AddressOfFunctions);
        for (DWORD at = 0; at < exports->NumberOfNames; ++at) {
            const char *const name = base + names[at];
            char *const entry = base + functions[ordinals[at]];
            if (name[0] == 'N' && name[1] == 't' && *entry == '\xB8' && stub + 32 < mStubs + kRoom) {
                stub = Patch(entry, stub);
            }
        }
        mOn = true;
    }
    ~CCallWatch()
    {
        mOn = false;
        for (const auto &[entry, code] : mFormer) {
            Write(entry, code.data());
        }
        gWatch = nullptr; // the stubs stay: another thread may be in one
    }
    CCallWatch(const CCallWatch &) = delete;
    CCallWatch &operator=(const CCallWatch &) = delete;

private:
    static void __cdecl OnCall()
    {
        if (gWatch != nullptr && gWatch->mOn && GetCurrentThreadId() == gWatch->mThread) {
            const DWORD error = GetLastError();
            gWatch->mOn = false;
            gWatch->mSeen();
            gWatch->mOn = true;
            SetLastError(error);
        }
    }
    static void Distance(char *at, const void *to)
    {
        const INT_PTR distance = static_cast<const char *>(to) - at - 4;
        std::memcpy(at, &distance, 4);
    }
    static void Write(char *entry, const char *code)
    {
        DWORD former = 0;
        VirtualProtect(entry, 5, PAGE_EXECUTE_READWRITE, &former);
        std::memcpy(entry, code, 5);
    }
    // The entry begins with the load of its number, five bytes that go to the end of the stub.
    char *Patch(char *entry, char *stub)
    {
        std::vector<char> code(entry, entry + 5);
        std::memcpy(stub, "\x60\x9C\xE8", 3); // pusha, pushf, call
        Distance(stub + 3, reinterpret_cast<void *>(&OnCall));
        std::memcpy(stub + 7, "\x9D\x61", 2); // popf, popa
        std::memcpy(stub + 9, code.data(), 5);
        stub[14] = '\xE9';
        Distance(stub + 15, entry + 5);
        char jump[5] = {'\xE9'};
        const INT_PTR distance = stub - entry - 5;
        std::memcpy(jump + 1, &distance, 4);
        mFormer.emplace_back(entry, std::move(code));
        Write(entry, jump);
        return stub + 19;
    }

    static inline CCallWatch *gWatch = nullptr;
    std::function<void()> mSeen;
    DWORD mThread;
    char *mStubs = nullptr;
    std::vector<std::pair<char *, std::vector<char>>> mFormer;
    bool mOn = false;
};
