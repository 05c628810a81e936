// What Windows and its users are called: platforms, languages, strings of libraries; and the names of drivers.
#include "Common/CSystemState.h"
#include "Common/DriverNames.h"
#include "Common/LanguageProvider.h"
#include "Common/PlatformRules.h"
#include "Common/ResourceStrings.h"
#include "Common/Trace.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

// "name" when the language is supported, "(name)" when it only stands in for another.
std::string Outcome(const LanguageProvider &provider)
{
    return provider.IsSupported() ? provider.GetName() : "(" + provider.GetName() + ")";
}

// The identifiers that one reduces to, step by step; never more than three.
std::string Path(uint16_t langId)
{
    std::string path;
    for (int steps = 0; steps < 5 && ReduceLangId(langId); ++steps) {
        path += (path.empty() ? "" : " ") + std::to_string(langId);
        EXPECT_LT(steps, 3);
    }
    EXPECT_EQ(langId, 0) << path;
    return path;
}

TEST(LanguageProvider, EveryIdentifierReducesStepByStepToNeutral)
{
    ExpectTable("language-path", [](const std::string &langId) { return Path(std::stoi(langId) & 0xFFFF); });
    for (uint32_t start = 0; start <= 0xFFFF; ++start) {
        Path(static_cast<uint16_t>(start));
    }
}

TEST(LanguageProvider, IdentifiersAndNamesFindTheirLanguageOrItsStandIn)
{
    ExpectTable("language-id", [](const std::string &langId) {
        const uint32_t number = static_cast<uint32_t>(std::stoul(langId));
        return Outcome(LanguageProvider(number));
    });
    ExpectTable("language-name", [](const std::string &name) { return Outcome(LanguageProvider(name)); });
    ExpectTable("language-number", [](const std::string &number) {
        return Outcome(LanguageProvider(static_cast<ELanguage>(std::stoi(number))));
    });
    LanguageProvider adopted;
    EXPECT_EQ(Outcome(adopted), "neutral");
    adopted = LanguageProvider(1036u);
    EXPECT_EQ(Outcome(adopted), "(en)");
    EXPECT_EQ(TakeAssertions(), ""); // the table is whole
}

class DriverNames : public testing::Test {
protected:
    ~DriverNames() override { gDriverSplitNamesMap.clear(); }
};

// The names of an identifier for these types, with commas between.
std::string Names(const std::string &identifier, std::initializer_list<int32_t> types)
{
    std::string names;
    for (const int32_t type : types) {
        names += "," + GetDriverSplitName(static_cast<EDriverSplitName>(std::stoi(identifier)), type);
    }
    return names.substr(1);
}

TEST_F(DriverNames, EachForEveryTypeByItsFallBack)
{
    ExpectTable("driver-names", [](const std::string &name) {
        std::string names = Names(name, {257, 513, 258, 514, 259, 515});
        const std::string other = Names(name, {0}), lines = Names(name, {1, 2, 3});
        // A half that has no key falls back on the line, and where there is none of these on the default. Without a
        // half its key is 0, so that the default comes before the line.
        EXPECT_EQ(Names(name, {0x301, 0x10102, 0x303}), lines) << name;
        for (const int32_t type : {0x100, 0x200, 4, 0x104, 0x20F, 32768, 32769, 32771, -1}) {
            EXPECT_EQ(Names(name, {type}), other) << name << " " << type;
        }
        return names + "," + lines + "," + other;
    });
    size_t entries = 0;
    for (const auto &[name, keys] : gDriverSplitNamesMap) {
        entries += keys.size();
    }
    EXPECT_EQ(gDriverSplitNamesMap.size(), 49u);
    EXPECT_EQ(entries, 202u);
    EXPECT_EQ(TakeAssertions(), "");
}

TEST_F(DriverNames, KeyOfAHalfStandsBetweenTypeAndLineAndWhatIsMissingIsReported)
{
    Names("0", {0});
    gDriverSplitNamesMap[100] = {{257, "type"}, {256, "half"}, {2, "line"}, {0, "other"}};
    EXPECT_EQ(Names("100", {257, 258, 514, 513}), "type,half,line,other");
    gDriverSplitNamesMap[100] = {{1, "line"}};
    EXPECT_EQ(Names("100", {EDriverProPen}), "");
    EXPECT_EQ(Names("49", {EDriverProPen}), "");
    EXPECT_EQ(TakeAssertions(), "Found an entry but could not find a value. & gDriverSplitNamesMap.count(name_I)");
}

TEST_F(DriverNames, TypesHaveDisplayNames)
{
    ExpectTable("driver-types", [](const std::string &type) { return DriverTypeName(std::stoi(type)); });
}

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

// Begins with the unset OS type, whatever test was in front, and gives it back.
class SystemState : public testing::Test, protected CSystemState {
protected:
    SystemState() { mOSType = kOSTypeUnset; }
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
    SetTracesToDebugOut(false);
    SetFakeOSType(60);
    SetTracesToDebugOut(true);
    EXPECT_EQ(GetOSType(), 60);
    EXPECT_EQ(TakeAssertions(), "");
}

std::u16string StringOf(const std::string &block, unsigned index)
{
    return StringOfBlock(reinterpret_cast<const uint8_t *>(block.data()), block.size(), index);
}

TEST(ResourceStrings, ABlockThatBreaksOffHasNothingBehindTheBreak)
{
    // Empty, "one", empty, two characters beyond ASCII, "five".
    const std::string block("\0\0\3\0o\0n\0e\0\0\0\2\0\x14\x7B\x98\2\4\0f\0i\0v\0e\0", 28);
    EXPECT_EQ(StringOf(block, 1), u"one");
    EXPECT_EQ(StringOf(block, 3), u"\u7B14\u0298");
    EXPECT_EQ(StringOf(block, 0) + StringOf(block, 2) + StringOf(block, 5) + StringOf(block, 15), u"");
    for (size_t size = 0; size < block.size(); ++size) {
        EXPECT_EQ(StringOf(block.substr(0, size), 4), u"") << size;
        EXPECT_EQ(StringOf(block.substr(0, size), 1), size < 10 ? u"" : u"one") << size;
    }
}

// Characters behind the mark.
TEST(ResourceStrings, CodedTextReadsWithAndWithoutPadding)
{
    EXPECT_TRUE(IsCodedString(u"\u0298Zm8"));
    EXPECT_FALSE(IsCodedString(u"") || IsCodedString(u"Z\u0298"));
    ExpectTable("coded-strings", [](const std::string &row) {
        std::u16string coded = u"\u0298";
        for (const char unit : row) {
            coded += unit == '~' ? u'\u0141' : static_cast<char16_t>(unit); // its low byte is an A
        }
        return WithAssertions(DecodeCodedString(coded));
    });
}

} // namespace
