#include "Common/FileVersion.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>

#include "TraceRecorder.h"

using Version = FileVersion;

// For the messages of failed comparisons.
void PrintTo(const FileVersion &version, std::ostream *out)
{
    *out << version.ToText(Version::EStyleFull);
}

namespace {

Version Read(const std::string &text)
{
    return Version(text, false);
}

// Texts of the assertions traced since the last call.
std::vector<std::string> TakeAssertions()
{
    std::vector<std::string> expressions;
    for (const std::string &record : TakeTraceRecords()) {
        expressions.push_back(record.substr(0, record.find(") in ")));
    }
    return expressions;
}

TEST(FileVersionText, ReadsEveryFormAndNeverRefuses)
{
    static const struct {
        const char *text;
        Version expected;
    } kCases[] = {
        {"5.3.5", {5, 3, 5, 5, 0}},
        {"5.3.5-5", {5, 3, 5, 5, 5}},
        {"5.3.5.5", {5, 3, 5, 5, 5}},
        {"5.3.5f5", {5, 3, 5, 5, 5}},
        {"5.3.5F5", {5, 3, 5, 5, 5}},
        {"6.1.0b12", {6, 1, 0, 2, 12}},
        {"6.1.0B12", {6, 1, 0, 2, 12}},
        {"6.1.0a9", {6, 1, 0, 1, 9}},
        {"6.1.0A9", {6, 1, 0, 1, 9}},
        {"6.1.0w5", {6, 1, 0, 3, 5}},
        {"6.1.0W5", {6, 1, 0, 3, 5}},
        {"6.1.0d1", {6, 1, 0, 4, 1}},
        {"6.1.0D1", {6, 1, 0, 4, 1}},
        {"6.1.0?3", {6, 1, 0, 0, 3}},
        {" 6 . 1 . 0 - 3 ", {6, 1, 0, 5, 3}},
        {"1.2.3.4.5", {1, 2, 3, 5, 4}}, // what follows the build is not looked at
        {"1.2.3b4w5", {1, 2, 3, 2, 4}}, // nor is a second letter
        // no version without a dot
        {"", {}},
        {"7", {}},
        {"5-3", {}},
        // the short form
        {"1.25", {1, 2, 5, 0, 0}},
        {"1.5", {1, 0, 5, 0, 0}},
        {"1.2555", {1, 255, 5, 0, 0}},
        {"1.-25", {1, 254, 251, 0, 0}},
        {"5.3-5", {5, 0, 3, 0, 0}},
        // only the low eight bits count
        {"300.1.2", {44, 1, 2, 5, 0}},
        {"1.-1.256-511", {1, 255, 0, 5, 255}},
        // a number that is missing, or too large for an int, repeats the one before it, and so do all behind it
        {"5.3.x-7", {5, 3, 3, 5, 3}},
        {"5..7", {5, 7, 0, 5, 0}},
        {"5.3.7-", {5, 3, 7, 5, 7}},
        {"x.1.2", {0, 0, 0, 5, 0}},
        {"5.", {5, 0, 5, 0, 0}},
        {".", {}},
        {"..", {0, 0, 0, 5, 0}},
        {"1.2147483647.3", {1, 255, 3, 5, 0}},
        {"1.-2147483648.3", {1, 0, 3, 5, 0}},
        {"1.2147483648.3", {1, 1, 1, 5, 1}},
        {"1.99999999999999999999999999.3", {1, 1, 1, 5, 1}},
        // a letter in front of the second dot is no release kind, it ends the reading
        {"1b.2.3", {1, 1, 1, 5, 1}},
    };
    for (const auto &test : kCases) {
        EXPECT_EQ(Read(test.text), test.expected) << "[" << test.text << "]";
    }
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>());
}

TEST(FileVersionText, WebFlagOverridesTheKindOfLongFormsOnly)
{
    EXPECT_EQ(Version("6.1.0b12", true), Version(6, 1, 0, Version::EWebVersion, 12));
    EXPECT_EQ(Version("6.1.0", true), Version(6, 1, 0, Version::EWebVersion, 0));
    EXPECT_EQ(Version("", true), Version());
    EXPECT_EQ(TakeAssertions(), std::vector<std::string>());
    EXPECT_EQ(Version("1.25", true), Version(1, 2, 5, Version::EUnknownVersion, 0));
    EXPECT_EQ(TakeAssertions(), std::vector<std::string>{"Assert:(!bIsWeb_I"});
}

TEST(FileVersionText, FullStyleReadsBackToTheSameValue)
{
    std::mt19937 random(20130415);
    for (int round = 0; round < 5000; ++round) {
        const auto byte = [&random] { return static_cast<uint8_t>(random()); };
        const Version version(byte(), byte(), byte(), byte() % 6, byte());
        EXPECT_EQ(Read(version.ToText(Version::EStyleFull)), version);
        // Dots say nothing of the kind: they come back as final.
        const Version dotted = Read(version.ToText(Version::EStyleDotted));
        EXPECT_EQ(dotted, Version(version.Major(), version.Minor(), version.Variation(), 5, version.Build()));
        const Version shortForm(version.Major(), version.Minor(), version.Variation() % 10, 0, 0);
        EXPECT_EQ(Read(shortForm.ToText(Version::EStyleShort)), shortForm);
    }
    TakeTraceRecords();
    EXPECT_EQ(Version(1, 2, 3, 77, 4).ToText(Version::EStyleFull), "1.2.3?4"); // a kind that does not exist
}

TEST(FileVersionStyles, TextsAndNumbersWithTheAssertionsOfWhatTheyLeaveOut)
{
    using Assertions = std::vector<std::string>;
    const std::string final = "Assert:(mRelease == FileVersion::EFinalVersion";
    const std::string unknown = "Assert:(mRelease == FileVersion::EUnknownVersion";
    const std::string noBuild = "Assert:(mBuild == 0";
    const std::string smallVariation = "Assert:(mVariation < 10";
    const std::string noNumber = "Assert:(!\"This style not supported as number\"";
    const Version plain(5, 3, 5, 5, 0);
    const Version beta(171, 30, 12, 2, 7);
    const Version brief(1, 2, 5, 0, 0);
    const struct {
        Version version;
        int style;
        std::string text;
        Assertions ofText;
        uint32_t number;
        Assertions ofNumber;
    } kCases[] = {
        {beta, 0, "171.30.12b7", {}, 0, {noNumber}},
        {plain, 1, "5.3.5.0", {}, 0, {noNumber}},
        {beta, 1, "171.30.12.7", {final}, 0, {noNumber}},
        {plain, 2, "5.3.5", {}, 0x50305, {}},
        {beta, 2, "171.30.12", {final, noBuild}, 0xAB1E0C, {final}},
        {brief, 3, "1.25", {}, 0x10019, {}},
        {beta,
         3,
         "171.3012",
         {smallVariation, unknown, noBuild},
         0xAB0138,
         {"Assert:(mMinor < 25", smallVariation, unknown}},
        {{171, 30, 0, 0, 0}, 4, "ab.1e", {}, 0xAB1E, {}},
        {beta, 4, "ab.1e", {"Assert:(mVariation == 0", noBuild, unknown}, 0xAB1E, {}},
        {brief, 5, "1.25", {}, 0x10205, {}},
        {beta, 5, "171.3012", {smallVariation, unknown, noBuild}, 0xAB1E0C, {unknown}},
        {plain, 6, "", {}, 0, {noNumber}},
        {plain, -1, "", {}, 0, {noNumber}},
    };
    TakeTraceRecords();
    for (const auto &test : kCases) {
        EXPECT_EQ(test.version.ToText(test.style), test.text);
        EXPECT_EQ(TakeAssertions(), test.ofText)
            << "text " << test.style << " of " << testing::PrintToString(test.version);
        EXPECT_EQ(test.version.ToNumber(test.style), test.number);
        EXPECT_EQ(TakeAssertions(), test.ofNumber) << "number " << test.style;
    }
}

TEST(FileVersionStyles, UnpacksTheLowBitsOfANumber)
{
    EXPECT_EQ(Version(0xFFAB1E0C, 2), Version(0xAB, 0x1E, 0x0C, Version::EFinalVersion, 0));
    EXPECT_EQ(Version(0xFFAB1E0C, 5), Version(0xAB, 0x1E, 0x0C, Version::EUnknownVersion, 0));
    EXPECT_EQ(Version(0xFF010019, 3), Version(1, 2, 5, Version::EUnknownVersion, 0));
    EXPECT_EQ(Version(0x0001FFFF, 3), Version(1, 6553 & 0xFF, 5, Version::EUnknownVersion, 0));
    EXPECT_EQ(Version(0xFFFFAB1E, 4), Version(0xAB, 0x1E, 0, Version::EUnknownVersion, 0));
    EXPECT_EQ(TakeAssertions(), std::vector<std::string>());
    for (const int style : {-1, 0, 1, 6}) {
        EXPECT_FALSE(Version(0x50305, style).IsSet());
        EXPECT_EQ(TakeAssertions(), std::vector<std::string>{"Assert:(!\"This style not supported from number\""});
    }
}

TEST(FileVersionOrder, NewerThan)
{
    static const struct {
        const char *newer;
        const char *older;
    } kCases[] = {
        {"6.0.0", "5.255.255-255"},
        {"5.4.0a0", "5.3.255-255"},
        {"5.3.6?1", "5.3.5-5"},
        // final and web: the build first, then the kind
        {"6.1.0-5", "6.1.0-4"},
        {"6.1.0w5", "6.1.0-4"},
        {"6.1.0-4", "6.1.0w4"},
        {"6.1.0w5", "6.1.0w4"},
        // as soon as one is of another kind: the kind first, then the build
        {"6.1.0b2", "6.1.0a9"},
        {"6.1.0d1", "6.1.0b9"},
        {"6.1.0-0", "6.1.0b2"},
        {"6.1.0-0", "6.1.0d9"},
        {"6.1.0d0", "6.1.0w9"},
        {"6.1.0a0", "6.1.0?9"},
        {"6.1.0b2", "6.1.0b1"},
        {"1.2.5", "1.25"},
        // anything known is newer than nothing known, even when all its numbers are 0
        {"0.0.0a0", ""},
        {"0.0.0?1", "7"},
    };
    for (const auto &test : kCases) {
        EXPECT_TRUE(IsNewerThan(Read(test.newer), Read(test.older))) << test.newer << " over " << test.older;
        EXPECT_FALSE(IsNewerThan(Read(test.older), Read(test.newer))) << test.older << " over " << test.newer;
    }
    for (const char *text : {"", "1.25", "5.3.5", "6.1.0b2", "6.1.0w4"}) {
        EXPECT_FALSE(IsNewerThan(Read(text), Read(text))) << "equal: " << text;
    }
}

// All versions of a small world: every kind with three builds under two variations.
std::vector<Version> SmallWorld(bool withDevelopment)
{
    std::vector<Version> world;
    for (uint8_t kind = 0; kind <= Version::EFinalVersion; ++kind) {
        for (uint8_t build = 0; build < 3; ++build) {
            if (withDevelopment || kind != Version::EDevelopmentVersion) {
                world.emplace_back(0, 0, 0, kind, build);
                world.emplace_back(0, 0, 1, kind, build);
            }
        }
    }
    return world;
}

TEST(FileVersionOrder, OfTwoDifferentVersionsExactlyOneIsNewer)
{
    std::vector<Version> versions = SmallWorld(true);
    std::mt19937 random(19700101);
    for (int count = 0; count < 300; ++count) {
        const auto small = [&random](unsigned limit) { return static_cast<uint8_t>(random() % limit); };
        versions.emplace_back(small(2), small(2), small(2), small(6), small(255));
    }
    for (const Version &a : versions) {
        for (const Version &b : versions) {
            EXPECT_EQ(IsNewerThan(a, b) + IsNewerThan(b, a), a == b ? 0 : 1)
                << testing::PrintToString(a) << " and " << testing::PrintToString(b);
        }
    }
}

TEST(FileVersionOrder, IsTransitiveButForDevelopmentVersionsBetweenWebAndFinal)
{
    const std::vector<Version> world = SmallWorld(false);
    for (const Version &a : world) {
        for (const Version &b : world) {
            for (const Version &c : world) {
                EXPECT_TRUE(!IsNewerThan(a, b) || !IsNewerThan(b, c) || IsNewerThan(a, c))
                    << testing::PrintToString(a) << testing::PrintToString(b) << testing::PrintToString(c);
            }
        }
    }
    // Build first among web and final, kind first against development: a circle, and meant so.
    EXPECT_TRUE(IsNewerThan(Read("6.1.0w5"), Read("6.1.0-4")));
    EXPECT_TRUE(IsNewerThan(Read("6.1.0-4"), Read("6.1.0d0")));
    EXPECT_TRUE(IsNewerThan(Read("6.1.0d0"), Read("6.1.0w5")));
}

TEST(FileVersionOrder, PlainOperatorsGoFieldByFieldUnlikeNewerThan)
{
    static const char *const kAscending[] = {"",        "0.0.0?1", "6.1.0?9", "6.1.0a8", "6.1.0b7", "6.1.0w6",
                                             "6.1.0d5", "6.1.0-4", "6.1.0-5", "6.1.1?0", "6.2.0?0", "128.0.0?0"};
    for (size_t left = 0; left < std::size(kAscending); ++left) {
        for (size_t right = 0; right < std::size(kAscending); ++right) {
            const Version a = Read(kAscending[left]);
            const Version b = Read(kAscending[right]);
            EXPECT_EQ(a == b, left == right) << kAscending[left] << " and " << kAscending[right];
            EXPECT_EQ(a != b, left != right);
            EXPECT_EQ(a <= b, left <= right);
            EXPECT_EQ(a > b, left > right);
        }
    }
}

TEST(FileVersionFields, AnyFieldMakesAVersionKnown)
{
    EXPECT_FALSE(Version().IsSet());
    for (int field = 0; field < 5; ++field) {
        const auto bit = [field](int place) { return static_cast<uint8_t>(place == field ? 128 : 0); };
        EXPECT_TRUE(Version(bit(0), bit(1), bit(2), bit(3), bit(4)).IsSet()) << field;
    }
    for (uint8_t kind = 0; kind <= Version::EFinalVersion; ++kind) {
        EXPECT_EQ(Version(1, 2, 3, kind, 4).IsFinalOrWeb(), kind == 3 || kind == 5);
    }
}

} // namespace
