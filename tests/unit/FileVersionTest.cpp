#include "Common/FileVersion.h"

#include <random>

#include "Tables.h"
#include "TraceRecorder.h"

namespace {

using Version = FileVersion;

Version Read(const std::string &text)
{
    return Version(text, false);
}

TEST(FileVersionText, ReadsEveryFormAndNeverRefuses)
{
    EXPECT_EQ(Read("6.1.0b12"), Version(6, 1, 0, Version::EBetaVersion, 12));
    ExpectTable("version", [](const std::string &text) { return Read(text).ToText(Version::EStyleFull); });
    EXPECT_EQ(TakeAssertions(), "");
    ExpectTable("web-version", [](const std::string &text) {
        const Version version(text, true);
        return WithAssertions(version.ToText(Version::EStyleFull));
    });
}

TEST(FileVersionText, FullStyleReadsBackToTheSameValue)
{
    std::mt19937 random(20130415);
    const auto byte = [&random] { return static_cast<uint8_t>(random()); };
    for (int round = 0; round < 5000; ++round) {
        const Version version(byte(), byte(), byte(), byte() % 6, byte());
        EXPECT_EQ(Read(version.ToText(Version::EStyleFull)), version);
        const Version shortForm(version.Major(), version.Minor(), version.Variation() % 10, 0, 0);
        EXPECT_EQ(Read(shortForm.ToText(Version::EStyleShort)), shortForm);
    }
    EXPECT_EQ(Version(1, 2, 3, 77, 4).ToText(Version::EStyleFull), "1.2.3?4"); // a kind that does not exist
}

TEST(FileVersionStyles, TextsAndNumbersWithTheAssertionsOfWhatTheyLeaveOut)
{
    // The left sides are a version, or a number in hexadecimal, and a style.
    const auto style = [](const std::string &left) { return std::stoi(left.substr(left.find(' '))); };
    const auto version = [](const std::string &left) { return Read(left.substr(0, left.find(' '))); };
    ExpectTable("style-text",
                [&](const std::string &left) { return WithAssertions(version(left).ToText(style(left))); });
    ExpectTable("style-number", [&](const std::string &left) {
        return WithAssertions(std::to_string(version(left).ToNumber(style(left))));
    });
    ExpectTable("number-style", [&](const std::string &left) {
        const Version unpacked(static_cast<uint32_t>(std::stoul(left, nullptr, 16)), style(left));
        return WithAssertions(unpacked.ToText(Version::EStyleFull));
    });
}

TEST(FileVersionOrder, NewerThan)
{
    for (const char *table : {"newer", "newer-in-a-circle"}) {
        ExpectTable(table, [](const std::string &pair) { return Relation(pair, Read, IsNewerThan); });
    }
}

TEST(FileVersionOrder, OfTwoDifferentVersionsExactlyOneIsNewer)
{
    std::vector<Version> versions;
    std::mt19937 random(19700101);
    const auto small = [&random](unsigned limit) { return static_cast<uint8_t>(random() % limit); };
    for (int count = 0; count < 300; ++count) {
        versions.emplace_back(small(2), small(2), small(2), small(6), small(4));
    }
    for (const Version &a : versions) {
        for (const Version &b : versions) {
            EXPECT_EQ(IsNewerThan(a, b) + IsNewerThan(b, a), a == b ? 0 : 1) << a.ToText(0) << " and " << b.ToText(0);
        }
    }
}

TEST(FileVersionOrder, PlainOperatorsGoFieldByFieldUnlikeNewerThan)
{
    const auto rows = TableRows("ascending");
    for (size_t left = 0; left < rows.size(); ++left) {
        for (size_t right = 0; right < rows.size(); ++right) {
            const Version a = Read(rows[left].first), b = Read(rows[right].first);
            EXPECT_EQ(a == b && !(a != b), left == right) << a.ToText(0) << " and " << b.ToText(0);
            EXPECT_EQ(a <= b && !(a > b), left <= right) << a.ToText(0) << " and " << b.ToText(0);
        }
    }
    EXPECT_EQ(rows.size(), 12u);
}

} // namespace
