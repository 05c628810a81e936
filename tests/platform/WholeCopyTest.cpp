// A target is whole whenever the process stops.
#include <gtest/gtest.h>

#include "../system/Registry.h"
#include "CallWatch.h"
#include "Common/Handles.h"
#include "Files/FileCopy.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

const char kVictimCall[] = "TAVIX_VICTIM_CALL";
const char kVictimFolder[] = "TAVIX_VICTIM_FOLDER";
constexpr DWORD kKilled = 77;

std::string Variable(const char *name)
{
    char value[MAX_PATH] = "";
    GetEnvironmentVariableA(name, value, sizeof value);
    return value;
}

// Copies and stops dead at one of the calls: a process for the test below.
TEST(WholeCopy, DISABLED_Victim)
{
    const std::string folder = Variable(kVictimFolder);
    const int last = atoi(Variable(kVictimCall).c_str());
    int calls = 0;
    bool reboot = false;
    const CCallWatch watch([&] {
        if (++calls == last) {
            TerminateProcess(GetCurrentProcess(), kKilled);
        }
    });
    CopyFileCore(folder + "\\source", folder + "\\target", false, reboot);
}

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

DWORD RunVictim(int call, const std::string &folder)
{
    char program[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, program, sizeof program);
    std::string line =
        std::string(program) + " --gtest_also_run_disabled_tests --gtest_filter=WholeCopy.DISABLED_Victim";
    SetEnvironmentVariableA(kVictimCall, std::to_string(call).c_str());
    SetEnvironmentVariableA(kVictimFolder, folder.c_str());
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    DWORD code = 1;
    if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        WaitForSingleObject(process.hProcess, INFINITE);
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    return code;
}

TEST(WholeCopy, AKillAtAnyCallLeavesTheOldFileOrTheNewOneAndTheNextCopyTidiesUp)
{
    const CScratchFolder folder;
    const std::string content(100000, 'n');
    folder.Write("source", content);
    const std::string target = folder.Path("target");
    DWORD code = kKilled;
    int call = 0;
    int old = 0;
    for (; code == kKilled && call < 300; ++call) {
        folder.Write("target", "old");
        code = RunVictim(call + 1, folder.Path("."));
        const std::string found = ReadText(target);
        ASSERT_TRUE(found == "old" || found == content) << "call " << call << ": " << found.size() << " bytes";
        old += found == "old" ? 1 : 0;
    }
    EXPECT_EQ(code, 0u);
    EXPECT_GT(old, 10);
    EXPECT_GT(call - old, 1); // the copy was whole before its last call
    EXPECT_EQ(Tree(folder.Path(".")), (std::vector<std::string>{"source", "target"}));
}

// The same without a process for each: a look at the disk before each call.
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
