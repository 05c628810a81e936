#include "Common/RegPath.h"

#include <gtest/gtest.h>

#include <map>

#include "TraceRecorder.h"

namespace {

// The section PlatformData of these tests; each name that is asked for is noted.
class Values {
public:
    using Map = std::map<std::string, std::string>;

    explicit Values(Map values) : mValues(std::move(values)) {}

    RegLocation Parse(const std::string &text, RegRoot defaultRoot = kRootLocalMachine)
    {
        return ParseRegPathWith(text, defaultRoot, [this](const std::string &name) {
            mAsked.push_back(name);
            const auto found = mValues.find(name);
            return found != mValues.end() ? found->second : std::string();
        });
    }

    std::map<std::string, std::string> mValues;
    std::vector<std::string> mAsked;
};

struct PathRow {
    const char *text;
    RegRoot root;
    const char *path;
};

void ExpectRows(const PathRow *rows, size_t count, Values &values)
{
    for (size_t i = 0; i < count; ++i) {
        const RegLocation location = values.Parse(rows[i].text);
        EXPECT_EQ(location.mRootKey, rows[i].root) << rows[i].text;
        EXPECT_EQ(location.mPath, rows[i].path) << rows[i].text;
        EXPECT_EQ(location.mPermissions, "") << rows[i].text;
    }
}

TEST(RegPath, RootNameInAnyCaseIsCutOffAndTheRestKeepsItsCaseAndBackSlash)
{
    static const PathRow kRows[] = {
        {"HKEY_LOCAL_MACHINE\\Software\\x", 0x80000002, "\\Software\\x"},
        {"hkey_users\\.DEFAULT", 0x80000003, "\\.DEFAULT"},
        {"Hkey_Classes_Root\\.txt", 0x80000000, "\\.txt"},
        {"HKEY_CURRENT_CONFIG\\a\\b\\", 0x80000005, "\\a\\b\\"},
        {"hKEY_cURRENT_uSER\\\\Two", 0x80000001, "\\\\Two"},
        {"HKEY_CURRENT_USER", 0x80000001, ""},
        {"hkey_local_machine\\", 0x80000002, "\\"},
    };
    Values values({});
    ExpectRows(kRows, std::size(kRows), values);
    EXPECT_TRUE(values.mAsked.empty());
}

TEST(RegPath, PathWithoutRootNameStaysWholeUnderTheDefaultRoot)
{
    static const PathRow kRows[] = {
        {"Software\\TAVIX", kRootLocalMachine, "Software\\TAVIX"},
        {"\\HKEY_CURRENT_USER\\x", kRootLocalMachine, "\\HKEY_CURRENT_USER\\x"}, // the head is empty
        {"HKEY_CURRENT_USER \\x", kRootLocalMachine, "HKEY_CURRENT_USER \\x"},
        {"HKCU\\x", kRootLocalMachine, "HKCU\\x"},
        {"HKEY_USERS2", kRootLocalMachine, "HKEY_USERS2"},
        {"", kRootLocalMachine, ""},
        {"a!NAME!\\b", kRootLocalMachine, "a!NAME!\\b"}, // a mark counts at the beginning alone
        {"\\\\!NAME!", kRootLocalMachine, "\\\\!NAME!"},
    };
    Values values(Values::Map{{"NAME", "value"}});
    ExpectRows(kRows, std::size(kRows), values);
    EXPECT_TRUE(values.mAsked.empty());
    EXPECT_EQ(values.Parse("x\\y", kRootClasses).mRootKey, kRootClasses);
    EXPECT_EQ(values.Parse("HKEY_USERS\\y", kRootClasses).mRootKey, kRootUsers);
}

TEST(RegPath, LeadingMacroGivesPathOrRootOrBoth)
{
    Values values(Values::Map{{"KEY", "Software\\Pen"},
                   {"WHOLE", "HKEY_CURRENT_USER\\Software\\Pen"},
                   {"ROOT", "hkey_users"},
                   {"NESTED", "!WHOLE!\\Inner"},
                   {"UNDER", "HKEY_USERS\\!WHOLE!\\Inner"},
                   {"A B\\C", "odd"}});
    static const PathRow kRows[] = {
        {"!KEY!\\x", kRootLocalMachine, "Software\\Pen\\x"},
        {"\\!KEY!\\x", kRootLocalMachine, "\\Software\\Pen\\x"},
        {"HKEY_CLASSES_ROOT\\!KEY!x", kRootClasses, "\\Software\\Penx"},
        {"!WHOLE!", kRootCurrentUser, "\\Software\\Pen"},
        {"HKEY_CLASSES_ROOT\\!WHOLE!\\x", kRootCurrentUser, "\\\\Software\\Pen\\x"}, // both back-slashes stay
        {"!ROOT!", kRootUsers, ""},
        {"!ROOT!\\a!b!", kRootUsers, "\\a!b!"},
        {"!NESTED!\\x", kRootCurrentUser, "\\Software\\Pen\\Inner\\x"},
        {"!UNDER!", kRootCurrentUser, "\\\\Software\\Pen\\Inner"},
        {"!NONE!\\x", kRootLocalMachine, "\\x"},
        {"!A B\\C!x", kRootLocalMachine, "oddx"}, // the name may hold what a head may not
    };
    ExpectRows(kRows, std::size(kRows), values);
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>());
}

TEST(RegPath, NameIsAskedForAsWrittenAndOnce)
{
    Values values(Values::Map{{"Key", "x"}});
    EXPECT_EQ(values.Parse("!Key!!Key!").mPath, "x!Key!");
    EXPECT_EQ(values.mAsked, std::vector<std::string>{"Key"});
}

TEST(RegPath, MacroWithoutClosingMarkIsReportedAndStays)
{
    Values values(Values::Map{{"OPEN", "!KEY"}});
    for (const char *text : {"!KEY\\x", "\\!KEY", "!"}) {
        EXPECT_EQ(values.Parse(text).mPath, text);
        EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"endBang != std::string::npos"}) << text;
    }
    EXPECT_EQ(values.Parse("!OPEN!\\x").mPath, "!KEY\\x");
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"endBang != std::string::npos"});
}

TEST(RegPath, MacroThatLeadsBackToItselfEnds)
{
    Values values(Values::Map{{"LOOP", "!LOOP!\\deeper"}, {"PING", "!PONG!"}, {"PONG", "HKEY_USERS\\!PING!"}});
    EXPECT_LT(values.Parse("!LOOP!").mPath.size(), 1000u);
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"PlatformData LOOP leads back to itself"});
    EXPECT_EQ(values.Parse("!PING!").mRootKey, kRootUsers);
    EXPECT_EQ(TakeTraceRecords().size(), 1u);
    EXPECT_LT(values.mAsked.size(), 200u);
}

TEST(RegPath, LongAndOddTextsAreKeptByteForByte)
{
    Values values({});
    std::string every;
    for (int byte = 0; byte < 256; ++byte) {
        every += static_cast<char>(byte);
    }
    EXPECT_EQ(values.Parse("HKEY_USERS\\" + every).mPath, "\\" + every);
    const std::string longPath(32000, '\\');
    EXPECT_EQ(values.Parse("x" + longPath).mPath, "x" + longPath);
    EXPECT_EQ(values.Parse(longPath).mPath, longPath);
}

} // namespace
