#include "Common/DriverNames.h"

#include "Common/Trace.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

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
    EXPECT_EQ(Names("100", {EDriverProPen}) + Names("49", {EDriverProPen}), "");
    EXPECT_EQ(TakeAssertions(), "Found an entry but could not find a value. & gDriverSplitNamesMap.count(name_I)");
}

TEST_F(DriverNames, TypesHaveDisplayNames)
{
    ExpectTable("driver-types", [](const std::string &type) { return DriverTypeName(std::stoi(type)); });
}

} // namespace
