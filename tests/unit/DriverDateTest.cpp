#include "Common/DriverDate.h"

#include <gtest/gtest.h>

#include "TraceRecorder.h"

namespace {

constexpr int64_t kDay = 24 * 60 * 60;

// The code of the exception that a text is refused with, 0 when it is taken.
uint32_t RefusalOf(const std::string &text)
{
    try {
        ParseDriverVer(text);
    } catch (const CDriverDateException &refusal) {
        return refusal.Code();
    }
    return 0;
}

TEST(DriverVer, MonthComesFirstInTheEntryAndDayInTheTrace)
{
    const DriverDate date = ParseDriverVer("01/13/2012,1.2.3.4");
    EXPECT_EQ(date.mVersion, FileVersion(1, 2, 3, FileVersion::EFinalVersion, 4));
    EXPECT_EQ(FormatDriverDate(date), "13/01/2012,1.2.3.4");
    EXPECT_EQ(FormatDriverDate(ParseDriverVer("2/3/2001,5.3.5-5")), "03/02/2001,5.3.5.5");
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>());
}

TEST(DriverVer, TimeIsThatOfTheCalendar)
{
    // Differences, so that the time zone of the machine does not matter. Daylight saving is off in both.
    const auto days = [](const char *from, const char *to) {
        const int64_t seconds = ParseDriverVer(to).mTime - ParseDriverVer(from).mTime;
        EXPECT_EQ(seconds % kDay, 0) << from << " to " << to;
        return seconds / kDay;
    };
    EXPECT_EQ(days("01/12/2012,1.0.0", "01/13/2012,1.0.0"), 1);
    EXPECT_EQ(days("01/01/2012,1.0.0", "01/01/2013,1.0.0"), 366);
    EXPECT_EQ(days("01/15/2011,1.0.0", "07/15/2011,1.0.0"), 181);
    EXPECT_EQ(days("01/01/2001,1.0.0", "01/01/3000,1.0.0"), 364877);
    EXPECT_EQ(days("03/02/2012,1.0.0", "02/31/2012,1.0.0"), 0); // a day too many runs on into the next month
}

TEST(DriverVer, RefusesDatesOutOfBounds)
{
    static const struct {
        const char *text;
        uint32_t code;
    } kCases[] = {
        {"13/01/2012,1.2.3.4", 0x80004005},
        {"00/01/2012,1.2.3.4", 0x80004005},
        {"-1/01/2012,1.2.3.4", 0x80004005},
        {"01/00/2012,1.2.3.4", 0x80004005},
        {"01/32/2012,1.2.3.4", 0x80004005},
        {"01/01/1899,1.2.3.4", 0x80004005},
        {"01/01/-5,1.2.3.4", 0x80004005},
        {"nonsense", 0x80004005},
        {",", 0x80004005},
        {" 01/13/2012,1.2.3.4", 0x80004005}, // a blank in front is a delimiter
        {"01/01/1900,1.2.3.4", 0x80070057},
        {"12/30/1969,1.2.3.4", 0x80070057},
        {"01/02/3001,1.2.3.4", 0x80070057},
        {"01/01/2147483647,1.2.3.4", 0x80070057},
        // numbers that would come into bounds if their high bits fell off
        {"01/01/4294969308,1.2.3.4", 0x80070057},
        {"01/01/67548,1.2.3.4", 0x80070057},
        {"4294967297/01/2012,1.2.3.4", 0x80004005},
        {"01/01/2012,1.2.3.4", 0},
        {"12/31/2012,1.2.3.4", 0},
    };
    for (const auto &test : kCases) {
        EXPECT_EQ(RefusalOf(test.text), test.code) << "[" << test.text << "]";
    }
    TakeTraceRecords();
}

TEST(DriverVer, AnyOtherNumberOfPartsIsReportedAndCutToFour)
{
    static const struct {
        const char *text;
        FileVersion version;
    } kCases[] = {
        {"01/13/2012", {}},
        {"01/13/2012, 1.2.3.4", {}}, // comma and blank are two delimiters: the version is the piece between them
        {"01/13/2012,1.2.3.4,5.6.7.8", {1, 2, 3, 5, 4}},
    };
    for (const auto &test : kCases) {
        EXPECT_EQ(ParseDriverVer(test.text).mVersion, test.version) << test.text;
        const std::vector<std::string> records = TakeTraceRecords();
        ASSERT_EQ(records.size(), 1u) << test.text;
        EXPECT_EQ(records[0].find("Assert:(parts.size() == 4) in "), 0u) << records[0];
    }
    EXPECT_FALSE(ParseDriverVer("").IsSet());
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>());
}

TEST(DriverVer, NewerByVersionAndByDateOnlyAmongEqualVersions)
{
    const FileVersion low("1.2.3.4", false);
    const FileVersion high("1.2.3.5", false);
    const FileVersion web("1.2.3w5", false);
    const struct {
        DriverDate newer;
        DriverDate older;
    } kCases[] = {
        {{1, high}, {900, low}},                                   // an early date does not weaken a higher version
        {{900, low}, {1, low}},                                    // the later date among equals
        {{1, low}, {-1, low}},                                     // as signed numbers
        {{INT64_C(0x100000000), low}, {INT64_C(0xFFFFFFFF), low}}, // of 64 bits
        {{1, high}, {900, web}}, // versions that differ in the kind alone are not equal
        {{1, {}}, {}},           // a date alone is something known
        {{0, low}, {}},          // and so is a version alone
        {{1, low}, {900, {}}},
    };
    for (const auto &test : kCases) {
        EXPECT_TRUE(IsDriverDateNewer(test.newer, test.older)) << &test - kCases;
        EXPECT_FALSE(IsDriverDateNewer(test.older, test.newer)) << &test - kCases;
    }
    EXPECT_FALSE(IsDriverDateNewer({900, low}, {900, low}));
    EXPECT_FALSE(IsDriverDateNewer({}, {}));
}

} // namespace
