// Macros in texts and at the beginning of registry paths.
#include "Script/Macros.h"

#include <map>

#include "Registry/RegPath.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

using Names = std::map<std::string, std::string>;

Names NamesOf(const std::string &table)
{
    const auto rows = TableRows(table);
    return {rows.begin(), rows.end()};
}

class Values : public IMacroValues {
public:
    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override
    {
        return mWords.count(key) != 0 ? mWords[key] : defaultValue;
    }
    std::optional<std::string> Value(const std::string &upperName) override
    {
        return mValues.count(upperName) != 0 ? std::optional(mValues[upperName]) : std::nullopt;
    }

private:
    Names mWords = NamesOf("words"), mValues = NamesOf("values");
};

TEST(Macros, Expand)
{
    Values values;
    ExpectTable("macros", [&](const std::string &text) { return WithAssertions(ExpandMacros(text, values)); });
}

TEST(Macros, AMacroThatBringsItselfInIsGivenUp)
{
    Values values;
    EXPECT_GT(ExpandMacros("a!SELF!b", values).size(), 0x10000u);
    EXPECT_EQ(TakeAssertions(), "The macros of a!SELF!b do not end");
    // What ends may be long.
    EXPECT_EQ(ExpandMacros(std::string(0x20000, 'x') + "!TEMP!", values), std::string(0x20000, 'x') + "C:\\T\\");
    EXPECT_EQ(TakeAssertions(), "");
}

std::string gAsked;

RegLocation Parse(const std::string &text, RegRoot root = kRootLocalMachine)
{
    gAsked.clear();
    return ParseRegPathWith(text, root, [data = NamesOf("platform-data")](const std::string &name) {
        gAsked += " " + name;
        return data.count(name) != 0 ? data.at(name) : std::string();
    });
}

TEST(RegPath, RootsAndMacros)
{
    ExpectTable("registry-paths", [](const std::string &text) {
        const RegLocation location = Parse(text);
        return WithAssertions(std::to_string(location.mRootKey - kRootClasses) + ":" + location.mPath +
                              location.mPermissions + gAsked);
    });
    std::string odd; // is kept byte for byte
    for (int byte = 0; byte < 256; ++byte) {
        odd += static_cast<char>(byte);
    }
    EXPECT_EQ(Parse("HKEY_USERS\\" + odd).mPath, "\\" + odd);
    EXPECT_EQ(Parse("x\\y", kRootClasses).mRootKey, kRootClasses);
    EXPECT_EQ(Parse("!LOOP!\\below").mPath, "");
    EXPECT_EQ(TakeAssertions(), "PlatformData LOOP leads back to itself");
    EXPECT_EQ(Parse("!PING!").mRootKey, kRootUsers);
    EXPECT_EQ(TakeTraceRecords().size(), 1u);
    EXPECT_LT(gAsked.size(), 1000u);
}

} // namespace
