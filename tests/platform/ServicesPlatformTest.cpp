// Services, user programs and other programs on the real machine. What takes long runs side by side.
#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>

#include <map>
#include <thread>

#include "../system/TestService.h"
#include "Common/DriverNames.h"
#include "Common/Handles.h"
#include "Common/TextConversions.h"
#include "EntryDetour.h"
#include "ScratchFolder.h"
#include "Services/ExecuteFile.h"
#include "Services/Preferences.h"
#include "Services/ProcessActions.h"
#include "TraceCapture.h"

namespace {

std::shared_ptr<void> Play(const std::string &name, const std::string &words)
{
    EXPECT_NE(OpenTestService(name, BuiltDouble("service.exe ") + words), nullptr) << GetLastError();
    return DropServiceLater(name);
}

TEST(ServicesPlatform, EveryWaitEndsAsItShould)
{
    const CScratchFolder folder;
    const auto driver = Play("VTabletServiceCon", "starting=9 step=90 hint=9999 stopping=9"),
               flat = Play("VTabletServicePro", "starting=9 step=9999 hint=300 flat"),
               dead = Play("VTabletServiceISD", "dies");
    std::map<std::string, CHandle> events;
    for (const char *name : {"Global\\TavixConStartEvent", "Global\\TavixConStopEvent"}) {
        events[name].Reset(CreateEventA(nullptr, TRUE, FALSE, name));
    }
    std::thread starter([&] {
        WaitForSingleObject(events["Global\\TavixConStartEvent"].Get(), INFINITE);
        for (const char *name : {"PEN_TABLETUSER.EXE", "Pen_TouchUser.exe", "pen_tablet.exe"}) {
            CopyFileA(BuiltDouble("program.exe").c_str(), folder.Path(name).c_str(), TRUE);
            ExecuteFile(folder.Path(name), "event=Global\\TavixConStopEvent", 0, false, false, false);
        }
    });
    EXPECT_TRUE(StartDrivers(false, EDriverConTouch));
    EXPECT_TRUE(StopDrivers(false, EDriverConTouch));
    EXPECT_EQ(GetProcessIDUsingSnapshot(L"Pen_TabletUser.exe"), 0u);
    EXPECT_FALSE(StartUserProc(EDriverISDPen)); // nobody has made the event
    EXPECT_TRUE(StartDrivers(true, EDriverConPen));
    EXPECT_FALSE(StartDrivers(true, EDriverConPen)); // runs already
    EXPECT_FALSE(StartService(EDriverProPen) || StartService(EDriverISDTouch));
    EXPECT_TRUE(StopService(EDriverISDPen)); // does not run
    RemoveAll(EDriverConPen, true);
    EXPECT_EQ(TestServiceStatus("VTabletServiceCon").dwCurrentState, 4u);
    starter.join();
}

TEST(ProgramsPlatform, ArePausedBehindAndNotWhenTheShellRefuses)
{
    const CEntryDetour noBox(
        "user32.dll", "MessageBoxW", +[](HWND, LPCWSTR, LPCWSTR, UINT) WINAPI { return IDOK; });
    const CScratchFolder folder;
    const std::string program = BuiltDouble("program.exe");
    const DWORD start = GetTickCount();
    EXPECT_TRUE(ExecuteFile(program, std::string(32000, 'x'), 500, true, false, true));
    EXPECT_GE(GetTickCount() - start, 500u);
    EXPECT_FALSE(ExecuteFile(folder.Path("none"), "", 90000, true, true, false));
    EXPECT_FALSE(ExecuteFile(folder.Write("text.exe", "no program"), "", 90000, true, true, false));
    EXPECT_LT(GetTickCount() - start, 90000u);
    EXPECT_EQ(ExecuteElevated(L"C:\\none.exe", L"\x4e2d", true), -1);
    EXPECT_EQ(ExecuteElevated(AnsiToWide(program), L"code=9", false), 0);
    CTraceCapture trace;
    const CEntryDetour passedOn(
        "shell32.dll", "ShellExecuteExA", +[](SHELLEXECUTEINFOA *) WINAPI { return TRUE; });
    SetLastError(77);
    EXPECT_TRUE(ExecuteFile(program, "", 0, true, false, false)); // nothing to wait for
    EXPECT_EQ(trace.Take().at(1), ", Ran Yes 77");
}

} // namespace
