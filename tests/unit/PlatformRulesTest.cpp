#include "Common/PlatformRules.h"

#include "Common/CSystemState.h"
#include "Common/Trace.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

TEST(PlatformRules, EachVersionHasItsPlatformAndReportsWhatIsUnknown)
{
    ExpectTable("platform", [](const std::string &version) {
        unsigned id = 0, major = 0, minor = 0;
        EXPECT_EQ(sscanf(version.c_str(), "%u %u %u", &id, &major, &minor), 3);
        const EPlatform platform = PlatformFromVersion(id, major, minor);
        return WithAssertions(std::to_string(platform));
    });
}

TEST(PlatformRules, PlatformEditionAndTabletMakeTheOSTypeAndTheText)
{
    ExpectTable("os-type", [](const std::string &number) {
        const auto platform = static_cast<EPlatform>(std::stoi(number));
        return std::to_string(OSTypeFromPlatform(platform, EEditionFull, false)) + " " +
               std::to_string(OSTypeFromPlatform(platform, EEditionHomeBasic, false)) + " " +
               std::to_string(OSTypeFromPlatform(platform, EEditionStarter, false)) + " " +
               std::to_string(OSTypeFromPlatform(platform, EEditionFull, true));
    });
    ExpectTable("platform-text", [](const std::string &text) {
        int platform = 0, edition = 0, servicePack = 0;
        EXPECT_EQ(sscanf(text.c_str(), "%d %d %d", &platform, &edition, &servicePack), 3);
        return PlatformText(static_cast<EPlatform>(platform), static_cast<EEdition>(edition), servicePack);
    });
    std::string others;
    for (uint32_t type = 0; type < 256; ++type) {
        const EEdition edition = EditionFromProductType(type);
        others += edition != EEditionFull ? std::to_string(type) + "=" + std::to_string(edition) + " " : "";
    }
    EXPECT_EQ(others, "2=2 5=2 11=1 47=1 66=1 67=2 ");
}

// Gives the process its unset OS type back.
class SystemState : public testing::Test, protected CSystemState {
protected:
    ~SystemState() override { mOSType = kOSTypeUnset; }
};

TEST_F(SystemState, NamesAndNumbersBelongTogether)
{
    EXPECT_EQ(GetOSTypeName(), "Unknown"); // asked too early
    EXPECT_EQ(TakeAssertions(), "!\"OSType requested before it was set\"");
    ExpectTable("os-type-name", [](const std::string &type) {
        SetFakeOSType(std::stoi(type));
        EXPECT_EQ(TakeAssertions(), "Faking Windows platform: " + type);
        EXPECT_EQ(OSTypeFromName(GetOSTypeName()), type == "45" ? -1 : GetOSType());
        return GetOSTypeName();
    });
    EXPECT_EQ(OSTypeFromName("Unset"), 2000);
    EXPECT_TRUE(OSTypeFromName("windows 7") == -1 && OSTypeFromName("Windows 7 ") == -1 && OSTypeFromName("") == -1);
    gTraceToDebugOut = false;
    SetFakeOSType(60);
    gTraceToDebugOut = true;
    EXPECT_EQ(GetOSType(), 60);
    EXPECT_EQ(TakeAssertions(), "");
}

} // namespace
