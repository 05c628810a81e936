// The file renames that wait for the next start of Windows: none while the object lives, or those that the test sets.
#pragma once

#include <gtest/gtest.h>

#include "Registry.h"

class PendingRenames {
public:
    PendingRenames() : mFormer(ReadValue(HKEY_LOCAL_MACHINE, kKey, kName))
    {
        RemoveValue(HKEY_LOCAL_MACHINE, kKey, kName);
    }
    ~PendingRenames()
    {
        RemoveValue(HKEY_LOCAL_MACHINE, kKey, kName);
        if (mFormer) {
            WriteValue(HKEY_LOCAL_MACHINE, kKey, kName, *mFormer);
        }
    }
    PendingRenames(const PendingRenames &) = delete;
    PendingRenames &operator=(const PendingRenames &) = delete;

    // The deletion of one file that no machine has.
    void Set(const std::string &path = "C:\\nowhere\\old.txt") const
    {
        const std::string bytes = "\\??\\" + path + std::string(3, '\0');
        EXPECT_TRUE(WriteValue(HKEY_LOCAL_MACHINE, kKey, kName, RegData{REG_MULTI_SZ, bytes}));
    }

    // Source and target in turns, "" as the target of a deletion, without the mark in front of each path.
    static std::vector<std::string> List()
    {
        const std::optional<RegData> data = ReadValue(HKEY_LOCAL_MACHINE, kKey, kName);
        std::vector<std::string> list;
        for (size_t at = 0; data && at + 1 < data->mBytes.size(); at = data->mBytes.find('\0', at) + 1) {
            const std::string name = data->mBytes.c_str() + at;
            list.push_back(name.compare(0, 4, "\\??\\") == 0 ? name.substr(4) : name);
        }
        return list;
    }

private:
    static constexpr char kKey[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager";
    static constexpr char kName[] = "PendingFileRenameOperations";
    std::optional<RegData> mFormer;
};
