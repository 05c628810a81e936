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
        : mEntry(reinterpret_cast<char *>(GetProcAddress(LoadLibraryA(library), entry)))
    {
        DWORD former = 0;
        VirtualProtect(mEntry, sizeof mFormer, PAGE_EXECUTE_READWRITE, &former);
        std::memcpy(mFormer, mEntry, sizeof mFormer);
        const INT_PTR distance = reinterpret_cast<char *>(replacement) - mEntry - INT_PTR{sizeof mFormer};
        *mEntry = '\xE9'; // jmp, relative to the instruction behind it
        std::memcpy(mEntry + 1, &distance, sizeof distance);
    }
    ~CEntryDetour() { std::memcpy(mEntry, mFormer, sizeof mFormer); }
    CEntryDetour(const CEntryDetour &) = delete;
    CEntryDetour &operator=(const CEntryDetour &) = delete;

private:
    char *mEntry;
    char mFormer[5];
};
