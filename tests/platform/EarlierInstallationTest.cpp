// The parts of the checks that only show from inside: the location stack, driver types without a package, long lists.
#include "Installer/EarlierInstallation.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../system/PendingRenames.h"
#include "Common/DriverNames.h"
#include "Common/RegAccess.h"
#include "Common/Status.h"
#include "Common/TraceFile.h"
#include "Installer/CWinInstallMain.h"
#include "TraceCapture.h"

namespace {

const char kVirtualHid[] = "SYSTEM\\CurrentControlSet\\Services\\vhidmini";

class EarlierInstallation : public testing::Test {
protected:
    EarlierInstallation() : mOwnTrace(TraceSinkPath()) { mDriverType = EDriverConPen; }
    ~EarlierInstallation() override
    {
        mDriverType = mFormerType;
        DeleteFileA(mOwnTrace.c_str());
    }
    bool Traced(const std::string &message)
    {
        const std::vector<std::string> messages = mTrace.Take();
        return std::count(messages.begin(), messages.end(), message) != 0;
    }

    int32_t mFormerType = mDriverType;
    CWinInstallMain mMain{"", false};
    std::string mOwnTrace;
    CTraceCapture mTrace;
    PendingRenames mPending;
};

TEST_F(EarlierInstallation, ACleanMachineLeavesTheLocationStackEmpty)
{
    EXPECT_FALSE(IsServiceConfigDirty());
    EXPECT_FALSE(mMain.MustRebootBeforeInstall());
    mPending.Set();
    EXPECT_FALSE(mMain.MustRebootBeforeInstall());
    EXPECT_TRUE(Traced("PendingFileRenameOperations exists"));
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);
}

TEST_F(EarlierInstallation, TheStopAtTheVirtualHidDriverKeepsItsLocation)
{
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, kVirtualHid);
    WriteValue(HKEY_LOCAL_MACHINE, kVirtualHid, "DisplayName", RegText("tavix virtual hid driver"));
    EXPECT_TRUE(mMain.MustRebootBeforeInstall());
    EXPECT_TRUE(Traced("Deleted previous vhidmini key"));
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_SUCCESS);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);
    EXPECT_FALSE(mMain.MustRebootBeforeInstall());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kVirtualHid));
}

// More than the reader's buffer takes is a failed read.
TEST_F(EarlierInstallation, AListOfRenamesThatCannotBeReadIsNone)
{
    mPending.Set("C:\\" + std::string(10240, 'a'));
    EXPECT_FALSE(mMain.MustRebootBeforeInstall());
    EXPECT_FALSE(Traced("PendingFileRenameOperations exists"));
}

TEST_F(EarlierInstallation, ATypeWithoutAPackageNeverFindsTheVirtualHidDriverObsoleteAndLooksAtNothing)
{
    for (const int32_t type : {0, 0x8000, 0x104, 0x10F}) {
        mDriverType = type;
        mTrace.Take();
        EXPECT_FALSE(mMain.VHIDObsolete()) << type;
        EXPECT_TRUE(mTrace.Take().empty()) << type;
    }
    mDriverType = EDriverISDTouch;
    EXPECT_TRUE(mMain.VHIDObsolete());
}

} // namespace
