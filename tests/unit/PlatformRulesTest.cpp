#include "Common/PlatformRules.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "TraceRecorder.h"

namespace {

// What a Windows of these numbers ends up as; `report` is the assertion that comes with it, if any.
struct VersionCase {
    uint32_t platformId, majorVersion, minorVersion;
    EPlatform platform;
    int32_t osType;
    const char *report;
};

constexpr VersionCase kVersions[] = {
    {2, 5, 0, EPlatformObsolete, -1, "!\"Obsolete platform ID\""},
    {2, 5, 1, EPlatformXP, 20, nullptr},
    {2, 5, 2, EPlatform2003, 20, nullptr},
    {2, 5, 3, EPlatformXP, 20, "!\"Unknown minor version (assume XP)\""},
    {2, 6, 0, EPlatformVista, 30, nullptr},
    {2, 6, 1, EPlatformWin7, 40, nullptr},
    {2, 6, 2, EPlatformWin8, 60, nullptr},
    {2, 6, 3, EPlatformWin81, 61, nullptr},
    {2, 6, 4, EPlatformWin7, 40, "!\"Unknown minor version (assume Win7)\""},
    {2, 3, 51, EPlatformObsolete, -1, "!\"Obsolete platform ID\""},
    {2, 4, 0, EPlatformObsolete, -1, "!\"Obsolete platform ID\""},
    {2, 10, 0, EPlatformWin7, 40, "!\"Unknown NT Platform (assume Win7)\""},
    {2, 7, 1, EPlatformWin7, 40, "!\"Unknown NT Platform (assume Win7)\""},
    {2, 2, 0, EPlatformWin7, 40, "!\"Unknown NT Platform (assume Win7)\""},
    {1, 4, 10, EPlatformObsolete, -1, "!\"Unknown platform ID\""},
    {3, 6, 1, EPlatformObsolete, -1, "!\"Unknown platform ID\""},
    {0, 0, 0, EPlatformObsolete, -1, "!\"Unknown platform ID\""},
};

TEST(PlatformRules, EachVersionHasItsPlatformAndReportsWhatIsUnknown)
{
    for (const VersionCase &version : kVersions) {
        SCOPED_TRACE(std::to_string(version.platformId) + ": " + std::to_string(version.majorVersion) + "." +
                     std::to_string(version.minorVersion));
        TakeTraceRecords();
        const EPlatform platform = PlatformFromVersion(version.platformId, version.majorVersion, version.minorVersion);
        EXPECT_EQ(platform, version.platform);
        EXPECT_EQ(OSTypeFromPlatform(platform, EEditionFull, false), version.osType);
        const std::vector<std::string> records = TakeTraceRecords();
        ASSERT_EQ(records.size(), version.report != nullptr ? 1u : 0u);
        if (version.report != nullptr) {
            EXPECT_EQ(records[0].find("Assert:(" + std::string(version.report) + ") in "), 0u) << records[0];
        }
    }
}

TEST(PlatformRules, ProductTypesTellTheEdition)
{
    const std::map<uint32_t, EEdition> listed = {{2, EEditionHomeBasic},  {5, EEditionHomeBasic},
                                                 {67, EEditionHomeBasic}, {11, EEditionStarter},
                                                 {47, EEditionStarter},   {66, EEditionStarter}};
    for (uint32_t type = 0; type < 256; ++type) {
        const auto found = listed.find(type);
        EXPECT_EQ(EditionFromProductType(type), found != listed.end() ? found->second : EEditionFull) << type;
    }
}

TEST(PlatformRules, EditionCountsOnWindows7AndTabletOnXP)
{
    for (int32_t number = EPlatformUnset; number <= EPlatformObsolete; ++number) {
        const EPlatform platform = static_cast<EPlatform>(number);
        const int32_t plain = OSTypeFromPlatform(platform, EEditionFull, false);
        const bool seven = platform == EPlatformWin7;
        const bool xpFamily = platform == EPlatformXP || platform == EPlatform2003;
        EXPECT_EQ(OSTypeFromPlatform(platform, EEditionHomeBasic, false), seven ? 50 : plain) << number;
        EXPECT_EQ(OSTypeFromPlatform(platform, EEditionStarter, false), seven ? 51 : plain) << number;
        EXPECT_EQ(OSTypeFromPlatform(platform, EEditionFull, true), xpFamily ? 21 : plain) << number;
    }
    EXPECT_EQ(OSTypeFromPlatform(EPlatformUnset, EEditionFull, false), -1);
}

TEST(PlatformRules, DisplayTextHasNoNameForWindows81)
{
    EXPECT_EQ(PlatformText(EPlatformUnset, EEditionStarter, 3), "Unknown");
    EXPECT_EQ(PlatformText(EPlatformObsolete, EEditionStarter, 3), "Not supported");
    EXPECT_EQ(PlatformText(EPlatformXP, EEditionFull, 3), "Windows XP, Full Edition, SP3");
    EXPECT_EQ(PlatformText(EPlatform2003, EEditionFull, 2), "Windows 2k3, Full Edition, SP2");
    EXPECT_EQ(PlatformText(EPlatformVista, EEditionHomeBasic, 0), "Windows Vista, Home Basic Edition");
    EXPECT_EQ(PlatformText(EPlatformWin7, EEditionStarter, 1), "Windows 7, Starter Edition, SP1");
    EXPECT_EQ(PlatformText(EPlatformWin8, EEditionFull, 0), "Windows 8, Full Edition");
    EXPECT_EQ(PlatformText(EPlatformWin81, EEditionFull, 0), ", Full Edition");
}

// Gives the process its unset OS type back.
class SystemState : public testing::Test, protected CSystemState {
protected:
    void SetUp() override
    {
        mOSType = kOSTypeUnset;
        TakeTraceRecords();
    }
    void TearDown() override
    {
        mOSType = kOSTypeUnset;
        gTraceToDebugOut = true;
    }
};

TEST_F(SystemState, AskedTooEarlyIsUnknownAndReported)
{
    EXPECT_EQ(GetOSType(), -1);
    EXPECT_EQ(GetOSTypeName(), "Unknown");
    const std::vector<std::string> records = TakeTraceRecords();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].find("Assert:(!\"OSType requested before it was set\") in "), 0u) << records[0];
}

TEST_F(SystemState, NamesAndNumbersBelongTogether)
{
    const std::map<int32_t, std::string> types = {
        {20, "Windows XP"},           {21, "Windows XP TE"},     {30, "Windows Vista"}, {40, "Windows 7"},
        {50, "Windows 7 Home Basic"}, {51, "Windows 7 Starter"}, {60, "Windows 8"},     {61, "Windows 8.1"},
        {1000, "OSX 10.4"},           {1010, "OSX 10.5"},        {1020, "OSX 10.6"},    {1030, "OSX 10.7"},
        {1040, "OSX 10.8"},           {1050, "OSX 10.9"},        {-1, "Unknown"}};
    for (const auto &[type, name] : types) {
        SetFakeOSType(type);
        EXPECT_EQ(GetOSType(), type);
        EXPECT_EQ(GetOSTypeName(), name);
        EXPECT_EQ(OSTypeFromName(name), type);
    }
    EXPECT_EQ(OSTypeFromName("Unset"), 2000);
    for (const char *name : {"windows 7", "Windows 7 ", "Windows", ""}) {
        EXPECT_EQ(OSTypeFromName(name), -1) << name;
    }
    SetFakeOSType(45);
    EXPECT_EQ(GetOSTypeName(), "Unknown");
}

TEST_F(SystemState, FakingIsTracedUnlessTracingIsOff)
{
    SetFakeOSType(61);
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"Faking Windows platform: 61"});
    gTraceToDebugOut = false;
    SetFakeOSType(60);
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{});
    EXPECT_EQ(GetOSType(), 60);
}

} // namespace
