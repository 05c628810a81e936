#include "Script/Macros.h"

#include <gtest/gtest.h>

#include <map>

#include "TraceRecorder.h"

namespace {

class Values : public IMacroValues {
public:
    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override
    {
        static const std::map<std::string, std::string> kStrings = {
            {"Title", "Tablet"}, {"Temp", "!TEMP!"}, {"Hat", "a^b"}, {"Empty", ""}, {"Same", "Thisis_anEmptySTRING"}};
        const auto found = kStrings.find(key);
        return found == kStrings.end() ? defaultValue : found->second;
    }
    std::optional<std::string> Value(const std::string &upperName) override
    {
        static const std::map<std::string, std::string> kValues = {
            {"TEMP", "C:\\T\\"}, {"EMPTY", ""},      {"APP VERSION", "5.3.5-5"}, {"INNER", "x!TEMP!"},
            {"FIRST", "!TEMP!"}, {"HAT", "^Title^"}, {"SELF", "x!SELF!"}};
        const auto found = kValues.find(upperName);
        return found == kValues.end() ? std::nullopt : std::optional<std::string>(found->second);
    }
};

// The record of an unpaired mark without its first three letters, and with a blank behind it.
const char kHat[] = "Hat != std::string::npos ";
const char kBang[] = "Bang != std::string::npos ";

std::string TakeMarks()
{
    std::string marks;
    for (const std::string &record : TakeTraceRecords()) {
        marks += record.substr(3) + " ";
    }
    return marks;
}

TEST(Macros, Expand)
{
    static const struct {
        const char *text;
        const char *result;
        const char *traced;
    } kCases[] = {
        {"", "", ""},
        {"!TEMP!foo !temp! !App Version! ! TEMP!", "C:\\T\\foo C:\\T\\ 5.3.5-5  TEMP", ""}, // blanks count
        {"!NOSUCH!\\file !noSuch! a!!b !!!! !!TEMP!!", "NOSUCH\\file noSuch a!b !! !TEMP!", ""},
        {"!TEMP!!TEMP!", "C:\\T\\C:\\T\\", ""},
        {"!TEMP!!", "C:\\T\\!", kBang},
        // The search goes on one character behind the first mark's place.
        {"!INNER!", "xC:\\T\\", ""},       // a mark inside a value begins a macro
        {"!FIRST!", "!TEMP!", kBang},      // unless it is the value's first character
        {"!EMPTY!!X!", "!X!", kBang},      // an empty value hides the mark behind it
        {"!EMPTY!a!HAT!", "a^Title^", ""}, // hats run first and only once
        {"^Title^ ^title^ ^KEY^ ^^ ^^^^ ^Empty^|^Same^", "Tablet title KEY ^ ^^ |Same", ""},
        {"^Hat^Title^", "a^bTitle^", kHat}, // a value is not looked at again
        {"^Temp^x !^Title^!", "C:\\T\\x Tablet", ""},
    };
    Values values;
    for (const auto &test : kCases) {
        EXPECT_EQ(ExpandMacros(test.text, values), test.result) << test.text;
        EXPECT_EQ(TakeMarks(), test.traced) << test.text;
    }
    EXPECT_EQ(ExpandMacros("^a!", values), "^a!");
    EXPECT_EQ(TakeMarks(), std::string(kHat) + kBang);
}

TEST(Macros, AMacroThatBringsItselfInIsGivenUp)
{
    Values values;
    EXPECT_GT(ExpandMacros("a!SELF!b", values).size(), 0x10000u);
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"The macros of a!SELF!b do not end"});
    // What ends may be long.
    EXPECT_EQ(ExpandMacros(std::string(0x20000, 'x') + "!TEMP!", values), std::string(0x20000, 'x') + "C:\\T\\");
    EXPECT_EQ(TakeMarks(), "");
}

} // namespace
