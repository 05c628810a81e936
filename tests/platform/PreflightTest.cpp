// What the pre-flight leaves in the object, and the check of a group's files, which no run calls by itself.
#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

#include "../system/Registry.h"
#include "Common/DriverNames.h"
#include "Common/TraceFile.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/ScriptAccess.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

class Preflight : public testing::Test {
protected:
    Preflight()
    {
        GetCurrentDirectoryA(sizeof mFormerFolder, mFormerFolder);
        mFormerScript = mConfigFile;
    }
    ~Preflight() override
    {
        mConfigFile = mFormerScript;
        mDriverType = mFormerType;
        SetCurrentDirectoryA(mFormerFolder);
    }
    void Script(const std::string &text) { mConfigFile = mScratch.Write("installer.dat", text); }

    CScratchFolder mScratch;
    std::string mFormerScript;
    int32_t mFormerType = mDriverType;
    char mFormerFolder[MAX_PATH] = {};
};

TEST_F(Preflight, KeepsWhatRegistryAndScriptSayOfOemDataAndOfTheKindOfPackage)
{
    const struct {
        std::string registry, script;
        uint32_t allowOem;
        uint32_t kind;
    } rows[] = {
        {"", "", 0, 0},
        {"1", "", 1, 0},
        {"", "AllowOEM=1\r\nVISD=1\r\n", 1, 3},
        {"1", "AllowOEM=0\r\nTOUCH=1\r\nVISD=1\r\n", 0, 2},
        {"0", "AllowOEM=2\r\n", 2, 0},
    };
    for (const auto &row : rows) {
        Settings settings;
        if (!row.registry.empty()) {
            settings.Number("AllowOEM", std::stoul(row.registry));
        }
        Script("[MAIN]\r\nVersion=1.10\r\nPrefType=Pen_Tablet\r\nLanguages=English\r\n" + row.script);
        std::string trace;
        {
            CWinInstallMain main("/s", false);
            trace = TraceSinkPath();
            EXPECT_EQ(main.Run(GetModuleHandleA(nullptr), nullptr, SW_HIDE), 0u);
            EXPECT_EQ(main.mAllowOEM, row.allowOem) << row.registry << " " << row.script;
            EXPECT_EQ(main.mDriverKind, row.kind) << row.script;
            EXPECT_EQ(main.mProductMask, 3u);
        }
        DeleteFileA(trace.c_str());
    }
}

TEST_F(Preflight, AGroupHasItsFilesWhenMainKnowsItAndAllOfItsListAreThere)
{
    mScratch.Write("here.txt", "");
    Script("[MAIN]\r\nPlain=1\r\nListed=1\r\nMissing=1\r\nGap=1\r\nEmpty=\r\n"
           "[OSSupportedFiles]\r\nListed=!WINDOWS!;!SYSTEM!\\\\kernel32.dll;here.txt\r\n"
           "Missing=here.txt;!TEMP!no such file;also missing\r\nGap=here.txt;;here.txt\r\nUnknown=here.txt\r\n");
    char temp[MAX_PATH] = {};
    GetTempPathA(sizeof temp, temp);
    const struct {
        const char *group;
        bool answer;
        std::string traced;
    } rows[] = {
        {"Plain", true, ""},
        {"Listed", true, ""},
        {"Missing", false, std::string("File ") + temp + "no such file missing"},
        {"Gap", false, "File  missing"},
        {"Empty", false, "Command Empty missing from main section"},
        {"Unknown", false, "Command Unknown missing from main section"},
    };
    std::string ownTrace;
    {
        CWinInstallMain main("", false);
        ownTrace = TraceSinkPath();
        CTraceCapture records;
        SetCurrentDirectoryA(mScratch.Path("").c_str());
        for (const auto &row : rows) {
            records.Take();
            EXPECT_EQ(main.CheckGroupFiles(row.group), row.answer) << row.group;
            const std::vector<std::string> expected =
                row.traced.empty() ? std::vector<std::string>() : std::vector<std::string>{row.traced};
            EXPECT_EQ(records.Take(), expected) << row.group;
        }
        SetCurrentDirectoryA(mFormerFolder);
    }
    DeleteFileA(ownTrace.c_str());
}

} // namespace
