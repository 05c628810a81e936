#include "Common/DriverDate.h"

#include "Tables.h"
#include "TraceRecorder.h"

namespace {

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
    EXPECT_EQ(ParseDriverVer("01/13/2012,1.2.3.4").mVersion, FileVersion(1, 2, 3, FileVersion::EFinalVersion, 4));
    EXPECT_FALSE(ParseDriverVer("").IsSet());
}

TEST(DriverVer, TimeIsThatOfTheCalendar)
{
    // Differences, so that the time zone of the machine does not matter. Daylight saving is off in both.
    ExpectTable("days", [](const std::string &dates) {
        const auto time = [](const std::string &date) { return ParseDriverVer(date + ",1.0.0").mTime; };
        const int64_t seconds = time(dates.substr(11)) - time(dates.substr(0, 10));
        EXPECT_EQ(seconds % (24 * 60 * 60), 0) << dates;
        return std::to_string(seconds / (24 * 60 * 60));
    });
}

TEST(DriverVer, NewerByVersionAndByDateOnlyAmongEqualVersions)
{
    const auto read = [](const std::string &text) {
        return DriverDate{std::stoll(text), FileVersion(text.substr(text.find(' ')), false)};
    };
    ExpectTable("newer-driver", [&](const std::string &pair) { return Relation(pair, read, IsDriverDateNewer); });
}

} // namespace
