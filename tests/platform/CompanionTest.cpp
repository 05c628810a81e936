// The companion's last error and texts of any length, where no page of cases reaches; what the registry tells of
// tablets.
#include "Devices/Companion.h"

#include <regex>

#include <gtest/gtest.h>

#include "../system/Registry.h"
#include "Devices/Quillo.h"
#include "EntryDetour.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

// The companion's log and answers stand in the folder of temporary files, which is the current directory, too.
class Companion : public testing::Test {
protected:
    Companion()
    {
        GetCurrentDirectoryA(sizeof mFormerFolder, mFormerFolder);
        GetEnvironmentVariableA("TMP", mFormerTemp, sizeof mFormerTemp);
        SetCurrentDirectoryA(mFolder.Path("").c_str());
        SetEnvironmentVariableA("TMP", mFolder.Path("").c_str());
    }
    ~Companion() override
    {
        SetEnvironmentVariableA("TMP", mFormerTemp);
        SetCurrentDirectoryA(mFormerFolder);
    }

    // What the companion was asked since the last call.
    std::string Asked()
    {
        const std::string path = mFolder.Path("TavixCompanion.log");
        const std::string asked = std::regex_replace(ReadBytes(path), std::regex("\r"), "");
        DeleteFileA(path.c_str());
        return asked;
    }

    const std::string mProgram = BuiltDouble("companion\\companion.exe");
    CScratchFolder mFolder;
    char mFormerFolder[MAX_PATH + 1] = "";
    char mFormerTemp[MAX_PATH + 1] = "";
};

TEST_F(Companion, AnswerOfEitherConventionIsTheLastErrorWhateverTheCompanionDidToThat)
{
    mFolder.Write("TavixCompanion.txt", "0 good\n4294967295 bad\n"); // a text that is not found leaves another error
    bool reboot = false;
    for (const std::string device : {"good", "bad"}) {
        const bool good = device == "good";
        const DWORD answer = good ? 0 : 0xFFFFFFFF;
        for (const std::string library : {"companion.dll", "stdcall.dll"}) {
            const std::string path = BuiltDouble("companion\\" + library);
            EXPECT_EQ(CallDevInstall(path, device, ".\\a.inf"), good);
            EXPECT_EQ(GetLastError(), answer);
            EXPECT_EQ(CallDevUpdate(path, device, ".\\a.inf", reboot), good);
            EXPECT_EQ(CallDevRemoveSelectedDriver(path, device), good);
            EXPECT_EQ(GetLastError(), answer);
            EXPECT_EQ(ChangeFriendlyName(path, 1, 2, 255, device), good);
            EXPECT_EQ(GetLastError(), good ? 0u : 50u);
            EXPECT_EQ(Asked(),
                      std::regex_replace("library DevInstall [*] [.\\a.inf]\nlibrary DevUpdate [*] [.\\a.inf]\n"
                                         "library DevRemoveSelectedDriver [*]\n"
                                         "library ChangeFriendlyName [1] [2] [255] [*]\n",
                                         std::regex("\\*"), device));
        }
        EXPECT_EQ(CallDevUpdate(mProgram, device, ".\\a.inf", reboot), good);
        EXPECT_EQ(CallDevInstall(mProgram, device, ".\\a.inf"), good);
        EXPECT_EQ(GetLastError(), answer);
        const std::string inf = " \"" + mFolder.Path("a.inf") + "\"\n";
        EXPECT_EQ(Asked(), "program Update \"" + device + "\"" + inf + "program Install " + device + inf);
    }
    EXPECT_FALSE(reboot);
    EXPECT_FALSE(CallDevInstall("none.dll", "good", ""));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    EXPECT_FALSE(CallDevRemove(BuiltDouble("companion\\crashing.dll"), "good"));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
}

TEST_F(Companion, TextsOfAnyLengthArriveAndPathsOfAnyLengthAreRefused)
{
    const std::string length(32000, 'x');
    EXPECT_TRUE(CallDevInstall(BuiltDouble("companion\\companion.dll"), length, length));
    EXPECT_TRUE(CallDevRemove(mProgram, length));
    EXPECT_EQ(Asked(), "library DevInstall [" + length + "] [" + length + "]\nprogram Remove " + length + "\n");
    EXPECT_FALSE(CallDevInstall(length, "A", "B") || CallDevInstall("C:\\" + length + ".dll", "A", "B"));
    EXPECT_EQ(RunCompanion("C:\\" + length + ".exe", "A"), 0u); // like one that cannot be started
}

// The file's name says what the shell answers.
BOOL WINAPI AnsweringShell(SHELLEXECUTEINFOA *info)
{
    EXPECT_TRUE(info->cbSize == 60 && info->fMask == 0x140 && info->nShow == 1 && info->lpVerb == nullptr);
    return std::string(info->lpFile) == "no handle.exe";
}

TEST_F(Companion, ProgramThatCannotBeStartedCountsAsHavingWorkedAndOneWithoutAHandleDoesNot)
{
    const CEntryDetour shell("shell32.dll", "ShellExecuteExA", AnsweringShell);
    EXPECT_TRUE(CallDevInstall("not started.exe", "A", "B") && CallDevRemove("not started.exe", "A"));
    EXPECT_EQ(RunCompanion("no handle.exe", "Rescan"), 50u);
}

TEST(Quillo, AnyDeviceOfTheFamilyThatWasEverAttachedCounts)
{
    const std::string usb = "SYSTEM\\CurrentControlSet\\Enum\\USB";
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, usb);
    CTraceCapture trace;
    for (const std::string product : {"0240", "0110", "0129"}) {
        RemoveKey(HKEY_LOCAL_MACHINE, usb);
        CreateKey(HKEY_LOCAL_MACHINE, usb + "\\VID_7A1C&PID_" + product);
        const bool quillo = product != "0240";
        EXPECT_EQ(IsQuilloPresent(), quillo) << product;
        EXPECT_EQ(trace.Take().at(0), quillo ? "Is Quillo Present: Yes" : "Is Quillo Present: No");
    }
}

} // namespace
