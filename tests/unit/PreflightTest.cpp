// Options, decisions and outcomes over plain facts.
#include "Installer/Preflight.h"

#include <map>
#include <new>

#include "Common/DriverNames.h"
#include "FakeProfile.h"
#include "Installer/CommandLine.h"
#include "Installer/DriverTypes.h"
#include "Installer/Options.h"
#include "Installer/Outcomes.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

class CNoHost : public IRunHost {
public:
    bool PathExists(const std::string &) override { return false; }
    std::optional<std::string> MacroValue(const CRunState &, const std::string &) override { return std::nullopt; }
};

// Facts of a made-up machine: settings and script values by name. Notes what it is asked, in order.
class CFakeFacts : public IPreflightFacts {
public:
    std::map<std::string, uint32_t> mSettings, mScript;
    std::map<std::string, std::string> mTexts;
    int32_t mOSType = 40;
    uint32_t mAdmin = 1;
    bool mEarlier = false;
    std::string mAsked;

    uint32_t Setting(const std::string &name, uint32_t defaultValue) override
    {
        mAsked += name + " ";
        return mSettings.count(name) != 0 ? mSettings[name] : defaultValue;
    }
    std::string TextSetting(const std::string &name, const std::string &defaultValue) override
    {
        mAsked += name + " ";
        return mTexts.count(name) != 0 ? mTexts[name] : defaultValue;
    }
    uint32_t ScriptNumber(const std::string &key, uint32_t defaultValue) override
    {
        mAsked += "[" + key + "] ";
        return mScript.count(key) != 0 ? mScript[key] : defaultValue;
    }
    uint32_t OemInk(uint32_t defaultValue) override
    {
        mAsked += "oem ";
        return mScript.count("oem") != 0 ? mScript["oem"] : defaultValue;
    }
    void RemoveSetting(const std::string &name) override { mAsked += "-" + name + " "; }
    bool PathExists(const std::string &path) override { return mTexts.count(path) != 0; }
    int32_t OSType() override { return mOSType; }
    uint32_t UserAdminType() override
    {
        mAsked += "rights ";
        return mAdmin;
    }
    bool MustRebootBeforeInstall() override
    {
        mAsked += "earlier ";
        return mEarlier;
    }
};

class Preflight : public ::testing::Test {
protected:
    CNoHost mHost;
    CFakeProfile mProfile;
    CScriptFiles mScript{mProfile};
    CRunState mRun{mHost, mScript, nullptr, 0};
    CFakeFacts mFacts;
};

TEST_F(Preflight, AsksInOrderAndLaterReadsWin)
{
    TakeTraceRecords();
    EXPECT_EQ(TakePreflightDecisions(mRun, mFacts), EPreflightGoOn);
    EXPECT_EQ(mFacts.mAsked,
              "INK WINTE WIN64 AllowOEM Obs [OBSOS_OVERRIDE] [INK_OVERRIDE] [WINTE_OVERRIDE] [WIN64_OVERRIDE] [ISD] "
              "[VISD] [TOUCH] [AllowOEM] -VInstall oem InstallCommand rights earlier ");
    EXPECT_EQ(TakeTraceRecords(),
              std::vector<std::string>{"Using mCommand Install; ink yes, TE no, 64 no"}); // from Vista on always Ink

    mFacts.mOSType = 20;
    mFacts.mSettings = {{"INK", 1}, {"WINTE", 1}, {"WIN64", 1}, {"AllowOEM", 1}};
    mFacts.mScript = {{"INK_OVERRIDE", 0}, {"oem", 2}, {"WIN64_OVERRIDE", 0}, {"VISD", 1}, {"ISD", 1}};
    mFacts.mTexts = {{"InstallCommand", "Other"}, {".\\system32\\ISD_TouchUser.exe", ""}};
    mRun.mProductMask = 0;
    EXPECT_EQ(TakePreflightDecisions(mRun, mFacts), EPreflightGoOn);
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"Using mCommand Other; ink yes, TE yes, 64 no"});
    EXPECT_EQ(mRun.mInk, 2u);
    EXPECT_EQ(mRun.mAllowOEM, 1u);
    EXPECT_EQ(mRun.mDriverKind, 3u);
    EXPECT_EQ(mRun.mProductMask, 2u);
}

TEST_F(Preflight, TheDecisionTable)
{
    ExpectTable("decisions", [&](const std::string &row) {
        const auto has = [&](char fact) { return row.find(fact) != std::string::npos; };
        CRunState run(mHost, mScript, nullptr, 0);
        CFakeFacts facts;
        facts.mOSType = std::stoi(row);
        facts.mScript = {{"ISD", has('i')}, {"TOUCH", has('t')}};
        facts.mSettings = {{"Obs", has('o')}};
        facts.mAdmin = has('a') ? 2 : 1;
        facts.mEarlier = has('e');
        run.mDeviceList = {{"A", 0, false}, {"B", 0, has('d')}};
        run.SetFlag("NOHARDWARE_OVERRIDE", has('n'));
        run.mUninstall = has('u');
        run.mCommandOverride = has('c') ? "Group" : "";
        const EPreflightAction action = TakePreflightDecisions(run, facts);
        return std::to_string(run.mInstallType) + (action == EPreflightElevate ? "E" : "") +
               (run.mRebootRequired ? "R" : "") + " " + run.mCommand;
    });
    TakeTraceRecords();
}

TEST_F(Preflight, OptionsAreTakenInTheirOrderUpToHex)
{
    ExpectTable("options", [](const std::string &row) {
        RunOptions options;
        options.mDialogState = static_cast<uint32_t>(std::stoi(row));
        uint32_t ink = 0;
        LanguageProvider language("en");
        const HexRequest hex = TakeOptions(SplitCommandLine(row.substr(2)), options, ink, language);
        std::string marks;
        for (const auto &[on, letter] : {std::pair(options.mUninstall, "u"), std::pair(ink != 0, "i"),
                                         std::pair(options.mSilent != 0, "s"), std::pair(options.mSuppressError, "e"),
                                         std::pair(options.mFromIFE, "f"), std::pair(options.mAgreed, "a")}) {
            marks += on ? letter : "";
        }
        return marks + ":" + options.mCommandOverride + ":" + (hex.mAsked ? hex.mFile : "-");
    });
    EXPECT_EQ(FindDebugOption(SplitCommandLine("/s /D a.txt /debug b.txt")).mFile, "a.txt");
    EXPECT_TRUE(FindDebugOption(SplitCommandLine("x /debug")).mAsked);
    EXPECT_FALSE(FindDebugOption(SplitCommandLine("debug /dd")).mAsked);
}

TEST(Outcomes, OfBothKindsOfRunsWithTheirBits)
{
    const struct {
        EInstallType mType;
        uint32_t mSilent, mWindowed;
    } rows[] = {{EInstallAllowed, 0, 0}, {EUninstallAllowed, 0, 0}, {ENonAdmin, 1, 0}, {ERebootBefore, 9, 8},
                {ENotSupported, 33, 1},  {ENoISDHardware, 65, 64},  {EPreSplit, 1, 0}, {EUnhandledType, 0, 0}};
    TakeTraceRecords();
    for (const auto &row : rows) {
        EXPECT_EQ(SilentOutcome(row.mType), row.mSilent) << row.mType;
        EXPECT_EQ(WindowedOutcome(row.mType), row.mWindowed) << row.mType;
    }
    EXPECT_EQ(TakeAssertions(), "!\"Unhandled Install type\" & !\"Unhandled Install type\"");
    RunOptions options;
    RunOutcome outcome;
    outcome.mInstallType = ERebootBefore;
    outcome.mRebootRequired = outcome.mRebootNow = true;
    EXPECT_EQ(SilentResult(options, outcome), 11u);
    EXPECT_EQ(WindowedResult(options, outcome), 8u | 2u | 0x100u);
    outcome.mDeclined = true;
    options.mSuppressError = true;
    EXPECT_EQ(SilentResult(options, outcome), 11u | 16u | 0x200u);
    EXPECT_EQ(Guarded([] { return 77u; }), 77u);
    EXPECT_EQ(Guarded([]() -> uint32_t { throw std::bad_alloc(); }), 1u);
    EXPECT_EQ(TakeTraceRecords().size(), 1u);
    EXPECT_EQ(ExitCodeOf(0x30B), 0u);
    EXPECT_EQ(ExitCodeOf(0x11B), 0x1Bu);
}

TEST(DriverTypes, EveryTypeButTheFirstIsReported)
{
    for (const auto &[text, type] : std::map<std::string, int>{{"pen_TABLET", 257},
                                                               {"Tavix_Tablet", 258},
                                                               {"ISD_Tablet", 259},
                                                               {"Pen_Touch", 513},
                                                               {"Tavix_Touch", 514},
                                                               {"ISD_Touch", 515}}) {
        TakeTraceRecords();
        EXPECT_TRUE(SettleDriverType(text));
        EXPECT_EQ(CDriverType::Get(), type);
        EXPECT_EQ(TakeTraceRecords().size(), type == 257 ? 0u : 1u) << text;
    }
    EXPECT_FALSE(SettleDriverType("Pen_Tablet "));
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"Driver type not recognized: [Pen_Tablet ]"});
    CDriverType::Set(0);
}

} // namespace
