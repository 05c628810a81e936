// Conditions on machines that no test machine is: a tablet PC, and one with devices of which the product list has none.
#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "Common/TraceFile.h"
#include "EntryDetour.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/ScriptAccess.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

#include <gtest/gtest.h>

namespace {

int gTablet = 0;

TEST(Conditions, ServicesAndEditionFollowPlatformPackageAndDevices)
{
    const struct {
        const char *mGroup;
        int32_t mPlatform;
        int mTablet;
        uint32_t mKind, mPresence;
        const char *mOutcomes;
    } rows[] = {
        {"Edition", 20, 0, 0, 0, ", IsXP goto step, IsXPPro goto step, Not XPTE"},
        {"Edition", 21, 89, 0, 0, ", IsXP goto step, Not XPPro, IsXPTE goto step"},
        {"Edition", 30, 1, 0, 0, ", Not XP, Not XPPro, Not XPTE"},
        // An integrated device on Windows 8 has its touch served by Windows, unless it shows itself by an interface.
        {"Services", 60, 0, 1, 0x1, ", Install touch service, Do not install pen service"},
        {"Services", 60, 0, 1, 0x801, ", Do not install touch, Do not install pen service"},
        {"Services", 61, 0, 1, 0x1001, ", Do not install touch, Do not install pen service"},
        {"Services", 60, 0, 1, 0x803, ", Do not install touch, Install pen service"},
        {"Services", 60, 0, 1, 0x4, ", Do not install touch, Install pen service"},
        {"Services", 51, 0, 1, 0x801, ", Install touch service, Install pen service"},
        {"Services", 60, 0, 3, 0x1001, ", Install touch service, Install pen service"},
        {"Services", 30, 0, 0, 0x1810, ", Do not install touch, Do not install pen service"},
    };
    const CScratchFolder scratch;
    const std::string formerScript = mConfigFile;
    mConfigFile = scratch.Write("installer.dat", "[Edition]\r\nIsXP\r\nIsXPPro\r\nIsXPTE\r\n"
                                                 "[Services]\r\nInstallTouchCheck\r\nInstallPenCheck\r\n");
    const CEntryDetour detour(
        "user32.dll", "GetSystemMetrics", +[](int metric) WINAPI -> int { return metric == 86 ? gTablet : 0; });
    CWinInstallMain main("", false);
    const std::string ownTrace = TraceSinkPath();
    CTraceCapture capture;
    for (const auto &row : rows) {
        CSystemState::SetFakeOSType(row.mPlatform);
        gTablet = row.mTablet;
        main.mDriverKind = row.mKind;
        main.mDevicePresence = row.mPresence;
        capture.Take();
        main.RunSteps(row.mGroup);
        std::string outcomes;
        for (const std::string &record : capture.Take()) {
            outcomes += record.compare(0, 2, ", ") == 0 && record.compare(0, 6, ", True") != 0 ? record : "";
        }
        EXPECT_EQ(outcomes, row.mOutcomes) << "row " << &row - rows;
    }
    CSystemState::SetFakeOSType(kOSTypeUnset);
    mConfigFile = formerScript;
    DeleteFileA(ownTrace.c_str());
}

} // namespace
