// A target is whole whenever the process stops.
#include <gtest/gtest.h>

#include "../system/Registry.h"
#include "CallWatch.h"
#include "Common/Handles.h"
#include "Files/FileCopy.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

// Reads a file that others hold open for any purpose, as long as they share it. By its wide name: the narrow calls keep
// theirs in one buffer of the thread, which is in use at the call that is looked into.
std::string ReadShared(const std::wstring &path)
{
    const CHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                   nullptr, OPEN_EXISTING, 0, nullptr));
    std::string text(2000000, '\0');
    DWORD read = 0;
    ReadFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &read, nullptr);
    text.resize(file ? read : 0);
    return text;
}

// What a kill at a call of the system leaves is what stands on the disk in front of that call.
TEST(WholeCopy, TheTargetIsWholeBeforeEveryCall)
{
    const RegistrySnapshot pending(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Session Manager");
    CTraceCapture trace;
    for (const size_t size : {size_t{10}, size_t{1000000}}) {
        for (const std::string way : {"new", "old", "held", "left-over"}) {
            const CScratchFolder folder;
            const std::string content(size, 'n');
            const std::string target = folder.Path("f\\target");
            const std::wstring wide(target.begin(), target.end());
            folder.Write("source", content);
            if (way != "new") {
                folder.Write("f\\target", "old");
            }
            std::unique_ptr<LockedFile> lock(way == "held" ? new LockedFile(target) : nullptr);
            if (way == "left-over") {
                folder.Write("f\\~TvxCopy.tmp", "torn");
            }
            int calls = 0;
            int torn = 0;
            bool reboot = false;
            {
                const CCallWatch watch([&] {
                    const DWORD attributes = GetFileAttributesW(wide.c_str());
                    const std::string text = ReadShared(wide); // empty for one that is open to nobody else
                    const bool whole = lock != nullptr || text == content || (way != "new" && text == "old") ||
                                       (way == "new" && attributes == INVALID_FILE_ATTRIBUTES);
                    ++calls;
                    torn += whole ? 0 : 1;
                });
                CopyFileCore(folder.Path("source"), target, false, reboot);
            }
            lock.reset();
            EXPECT_GT(calls, 10) << way;
            EXPECT_EQ(torn, 0) << way << " of " << calls;
            EXPECT_EQ(reboot, way == "held");
            EXPECT_EQ(ReadText(target), way == "held" ? "old" : content);
            EXPECT_EQ(Tree(folder.Path("f")), way == "held" ? (std::vector<std::string>{"target", "targeu"})
                                                            : std::vector<std::string>{"target"});
            EXPECT_TRUE(way != "held" || ReadText(folder.Path("f\\targeu")) == content);
        }
    }
}

// A planted link under the name that copies are made under is not written through.
TEST(WholeCopy, ALinkUnderItsOwnNameGoes)
{
    const CScratchFolder folder;
    bool reboot = false;
    CreateHardLinkA(folder.Path("~TvxCopy.tmp").c_str(), folder.Write("other", "other").c_str(), nullptr);
    EXPECT_TRUE(CopyFileCore(folder.Write("source", "new"), folder.Path("target"), false, reboot));
    EXPECT_EQ(ReadText(folder.Path("other")), "other");
    EXPECT_EQ(Tree(folder.Path(".")), (std::vector<std::string>{"other", "source", "target"}));
}

} // namespace
