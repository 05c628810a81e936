#include "Installer/Macros.h"

#include <gtest/gtest.h>

#include <map>

#include "TraceRecorder.h"

namespace {

class Values : public IMacroValues {
public:
    std::map<std::string, std::string> mStrings;
    std::map<std::string, std::string> mValues;

    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override
    {
        const auto found = mStrings.find(key);
        return found == mStrings.end() ? defaultValue : found->second;
    }
    std::optional<std::string> Value(const std::string &upperName) override
    {
        const auto found = mValues.find(upperName);
        return found == mValues.end() ? std::nullopt : std::optional<std::string>(found->second);
    }
};

Values SampleValues()
{
    Values values;
    values.mStrings = {
        {"Title", "Tablet"}, {"Temp", "!TEMP!"}, {"Hat", "a^b"}, {"Empty", ""}, {"Same", "Thisis_anEmptySTRING"}};
    values.mValues = {{"TEMP", "C:\\T\\"},  {"EMPTY", ""},       {"APP VERSION", "5.3.5-5"},
                      {"INNER", "x!TEMP!"}, {"FIRST", "!TEMP!"}, {"HAT", "^Title^"}};
    return values;
}

const char kLoneHat[] = "endHat != std::string::npos";
const char kLoneBang[] = "endBang != std::string::npos";

TEST(Macros, Expand)
{
    using Records = std::vector<std::string>;
    static const struct {
        const char *text;
        const char *result;
        Records traced;
    } kCases[] = {
        {"", "", {}},
        {"plain", "plain", {}},
        // bangs
        {"!TEMP!foo", "C:\\T\\foo", {}},
        {"!temp!", "C:\\T\\", {}},
        {"!App Version!", "5.3.5-5", {}},
        {"! TEMP!", " TEMP", {}}, // blanks count
        {"!NOSUCH!\\file", "NOSUCH\\file", {}},
        {"!noSuch!", "noSuch", {}},
        {"a!!b", "a!b", {}},
        {"!!!!", "!!", {}},
        {"!!TEMP!!", "!TEMP!", {}}, // neither !! yields a mark that pairs
        {"50%!", "50%!", {kLoneBang}},
        {"!TEMP!!", "C:\\T\\!", {kLoneBang}},
        {"!TEMP!!TEMP!", "C:\\T\\C:\\T\\", {}},
        // the search goes on one character behind the first mark's place
        {"!INNER!", "xC:\\T\\", {}},        // a mark inside a value begins a macro
        {"!FIRST!", "!TEMP!", {kLoneBang}}, // unless it is the value's first character
        {"!EMPTY!!X!", "!X!", {kLoneBang}}, // an empty value hides the mark behind it
        {"!EMPTY!a!TEMP!", "aC:\\T\\", {}},
        {"!HAT!", "^Title^", {}}, // hats run first and only once
        // hats
        {"^Title^ x", "Tablet x", {}},
        {"^title^", "title", {}}, // keys as the language reader has them
        {"^KEY^", "KEY", {}},
        {"^^", "^", {}},
        {"^^^^", "^^", {}},
        {"^Hat^Title^", "a^bTitle^", {kLoneHat}}, // a value is not looked at again
        {"^Empty^|", "|", {}},
        {"^Same^", "Same", {}},
        {"^Temp^x", "C:\\T\\x", {}}, // a macro inside a localised text
        {"a^b", "a^b", {kLoneHat}},
        {"^a!", "^a!", {kLoneHat, kLoneBang}},
        {"!^Title^!", "Tablet", {}},
    };
    for (const auto &test : kCases) {
        Values values = SampleValues();
        TakeTraceRecords();
        EXPECT_EQ(ExpandMacros(test.text, values), test.result) << test.text;
        EXPECT_EQ(TakeTraceRecords(), test.traced) << test.text;
    }
}

TEST(Macros, BangNameOfAGroupCall)
{
    static const struct {
        const char *text;
        const char *name;
        bool traced;
    } kCases[] = {
        {"!Group!", "Group", false}, {"!Group!rest", "Group", false}, {"!!", "", false},    {"", "", false},
        {"Group", "", false},        {" !Group!", "", false},         {"!Group", "", true}, {"!", "", true},
        {"!a b.c!", "a b.c", false},
    };
    for (const auto &test : kCases) {
        TakeTraceRecords();
        EXPECT_EQ(ExtractBangName(test.text), test.name) << test.text;
        EXPECT_EQ(TakeTraceRecords().size(), test.traced ? 1u : 0u) << test.text;
    }
}

} // namespace
