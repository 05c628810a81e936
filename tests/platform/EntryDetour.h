// Puts a function of the test in the place of an entry of Windows, for what no machine of the tests would answer.
#pragma once

#include <windows.h>

#include <cstring>

// Writes a jump over the beginning of the entry, in this process only, and takes it away at the end. The replacement
// has to have the entry's own type.
class CEntryDetour {
public:
    template <typename TEntry>
    CEntryDetour(const char *library, const char *entry, TEntry replacement)
        : mEntry(reinterpret_cast<void *>(GetProcAddress(LoadLibraryA(library), entry)))
    {
        unsigned char jump[kSize] = {0xE9}; // jmp, relative to the instruction behind it
        const INT_PTR distance =
            reinterpret_cast<INT_PTR>(replacement) - reinterpret_cast<INT_PTR>(mEntry) - static_cast<INT_PTR>(kSize);
        std::memcpy(jump + 1, &distance, sizeof distance);
        if (mEntry != nullptr) {
            std::memcpy(mFormer, mEntry, kSize);
            Write(jump);
        }
    }
    ~CEntryDetour()
    {
        if (mEntry != nullptr) {
            Write(mFormer);
        }
    }
    CEntryDetour(const CEntryDetour &) = delete;
    CEntryDetour &operator=(const CEntryDetour &) = delete;

private:
    static constexpr size_t kSize = 5;
    void Write(const unsigned char *code)
    {
        DWORD former = 0;
        VirtualProtect(mEntry, kSize, PAGE_EXECUTE_READWRITE, &former);
        std::memcpy(mEntry, code, kSize);
        VirtualProtect(mEntry, kSize, former, &former);
        FlushInstructionCache(GetCurrentProcess(), mEntry, kSize);
    }
    void *mEntry;
    unsigned char mFormer[kSize] = {};
};
