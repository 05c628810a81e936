#include "Common/FileVersion.h"
#include "Common/DriverDate.h"

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
    EXPECT_EQ(Version(1, 2, 3, 77, 4).ToText(Version::EStyleFull), "1.2.3?4"); // a kind that does not exist
    ExpectTable("version", [](const std::string &text) { return Read(text).ToText(Version::EStyleFull); });
    ExpectTable("web-version", [](const std::string &text) {
        return WithAssertions(Version(text, true).ToText(Version::EStyleFull));
    });
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

TEST(DriverVer, IsReadMonthFirstOrRefused)
{
    ExpectTable("driver-date", [](const std::string &text) {
        std::string outcome;
        try {
            outcome = FormatDriverDate(ParseDriverVer(text));
        } catch (const CDriverDateException &refusal) {
            outcome = refusal.Code() == 0x80004005 ? "bounds" : refusal.Code() == 0x80070057 ? "calendar" : "?";
        }
        return WithAssertions(outcome);
    });
    EXPECT_FALSE(ParseDriverVer("").IsSet());
    // Differences, so that the time zone of the machine does not matter. Daylight saving is off in both.
    ExpectTable("days", [](const std::string &dates) {
        const auto time = [](const std::string &date) { return ParseDriverVer(date + ",1.0.0").mTime; };
        const int64_t seconds = time(dates.substr(11)) - time(dates.substr(0, 10));
        EXPECT_EQ(seconds % (24 * 60 * 60), 0) << dates;
        return std::to_string(seconds / (24 * 60 * 60));
    });
    const auto read = [](const std::string &text) {
        return DriverDate{std::stoll(text), FileVersion(text.substr(text.find(' ')), false)};
    };
    ExpectTable("newer-driver", [&](const std::string &pair) { return Relation(pair, read, IsDriverDateNewer); });
}

} // namespace
