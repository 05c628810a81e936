// What the decisions in front of a run leave in the object, and what no run shows from outside.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../system/PendingRenames.h"
#include "Common/DriverNames.h"
#include "Actions/RegAccess.h"
#include "Common/Status.h"
#include "Common/TraceFile.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/EarlierInstallation.h"
#include "Installer/ScriptAccess.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

// Takes the globals and the trace's own file back that an object of the installer leaves behind.
class Preflight : public testing::Test {
protected:
    ~Preflight() override
    {
        mConfigFile = mFormerScript;
        mDriverType = mFormerType;
        for (const std::string &trace : mTraces) {
            DeleteFileA(trace.c_str());
        }
    }
    void Script(const std::string &text) { mConfigFile = mScratch.Write("installer.dat", text); }

    CScratchFolder mScratch;
    std::vector<std::string> mTraces;
    const std::string mFormerScript = mConfigFile;
    const int32_t mFormerType = mDriverType;
};

TEST_F(Preflight, KeepsWhatRegistryAndScriptSayOfOemDataAndOfTheKindOfPackage)
{
    const struct {
        DWORD registry; // 99 for none
        const char *script;
        uint32_t allowOem, kind;
    } rows[] = {{99, "", 0, 0},
                {1, "ISD=1\r\n", 1, 1},
                {99, "AllowOEM=1\r\nISD=7\r\nVISD=1\r\n", 1, 3},
                {1, "AllowOEM=0\r\nISD=1\r\nTOUCH=1\r\nVISD=1\r\n", 0, 2},
                {0, "AllowOEM=2\r\nTOUCH=9\r\n", 2, 2}};
    const char key[] = "Software\\TAVIX\\Installer";
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, key);
    for (const auto &row : rows) {
        RemoveValue(HKEY_LOCAL_MACHINE, key, "AllowOEM");
        if (row.registry != 99) {
            WriteValue(HKEY_LOCAL_MACHINE, key, "AllowOEM", RegNumber(row.registry));
        }
        Script(std::string("[MAIN]\r\nVersion=1.10\r\nPrefType=Pen_Tablet\r\nLanguages=English\r\n") + row.script);
        CWinInstallMain main("/s", false);
        mTraces.push_back(TraceSinkPath());
        main.Run(GetModuleHandleA(nullptr), nullptr, SW_HIDE);
        EXPECT_EQ(main.mAllowOEM, row.allowOem) << row.script;
        EXPECT_EQ(main.mDriverKind, row.kind) << row.script;
    }
}

TEST_F(Preflight, AGroupHasItsFilesWhenMainKnowsItAndAllOfItsListAreThere)
{
    Script("[MAIN]\r\nPlain=1\r\nListed=1\r\nMissing=1\r\nGap=1\r\nEmpty=\r\n"
           "[OSSupportedFiles]\r\nListed=!WINDOWS!;!SYSTEM!\\\\kernel32.dll\r\n"
           "Missing=!WINDOWS!;no such file;also missing\r\nGap=!WINDOWS!;;!WINDOWS!\r\nUnknown=!WINDOWS!\r\n");
    static const char *const kRows[][2] = {{"Plain", ""},
                                           {"Listed", ""},
                                           {"Missing", "File no such file missing"},
                                           {"Gap", "File  missing"},
                                           {"Empty", "Command Empty missing from main section"},
                                           {"Unknown", "Command Unknown missing from main section"}};
    CWinInstallMain main("", false);
    mTraces.push_back(TraceSinkPath());
    CTraceCapture capture;
    for (const auto &[group, traced] : kRows) {
        EXPECT_EQ(main.CheckGroupFiles(group), *traced == '\0') << group;
        std::string records; // without those of a thread that may be ending
        for (const std::string &record : capture.Take()) {
            records += record.compare(0, 5, "File ") == 0 || record.compare(0, 8, "Command ") == 0 ? record : "";
        }
        EXPECT_EQ(records, traced) << group;
    }
}

TEST_F(Preflight, OnlyTheStopAtTheVirtualHidDriverKeepsItsRegistryLocation)
{
    const char key[] = "SYSTEM\\CurrentControlSet\\Services\\vhidmini";
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, key);
    CWinInstallMain main("", false);
    mTraces.push_back(TraceSinkPath());
    mDriverType = EDriverConPen;
    const PendingRenames renames;
    renames.Set();
    EXPECT_FALSE(IsServiceConfigDirty());
    EXPECT_FALSE(main.MustRebootBeforeInstall());
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);
    WriteValue(HKEY_LOCAL_MACHINE, key, "DisplayName", RegText("tavix virtual hid driver"));
    EXPECT_TRUE(main.MustRebootBeforeInstall());
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_SUCCESS);
    EXPECT_EQ(PopRegLocation(), TVXSTATUS_KEY_NOT_FOUND);
    for (const int32_t type : {0, 0x8000, 0x104, 0x10F}) { // without a package of their own
        mDriverType = type;
        const CTraceCapture trace;
        EXPECT_FALSE(main.VHIDObsolete()) << type;
    }
}

} // namespace
