#include "Registry/RegPath.h"

#include <gtest/gtest.h>

#include <map>

#include "TraceRecorder.h"

namespace {

// The section PlatformData of these tests; each name that is asked for is noted.
std::map<std::string, std::string> gData = {{"KEY", "Software\\Pen"},   {"WHOLE", "HKEY_CURRENT_USER\\Software\\Pen"},
                                            {"ROOT", "hkey_users"},     {"NESTED", "!WHOLE!\\Inner"},
                                            {"A B\\C", "odd"},          {"UNDER", "HKEY_USERS\\!WHOLE!\\Inner"},
                                            {"LOOP", "!LOOP!\\deeper"}, {"OPEN", "!KEY"},
                                            {"PING", "!PONG!"},         {"PONG", "HKEY_USERS\\!PING!"}};
std::string gAsked;

RegLocation Parse(const std::string &text, RegRoot root = kRootLocalMachine)
{
    gAsked.clear();
    return ParseRegPathWith(text, root, [](const std::string &name) {
        gAsked += " " + name;
        return gData.count(name) != 0 ? gData[name] : std::string();
    });
}

// What whole runs do not show of paths: root and path, and the names that were asked for.
TEST(RegPath, RootsAndMacros)
{
    static const char *const kRows[][2] = {
        {"HKEY_CURRENT_CONFIG\\a\\b\\", "5 \\a\\b\\"},
        {"hKEY_cURRENT_uSER\\\\Two", "1 \\\\Two"},
        {"hkey_local_machine\\", "2 \\"},
        {"\\HKEY_CURRENT_USER\\x", "2 \\HKEY_CURRENT_USER\\x"},
        {"HKEY_CURRENT_USER \\x", "2 HKEY_CURRENT_USER \\x"},
        {"HKEY_USERS2", "2 HKEY_USERS2"},
        {"", "2 "},
        {"a!KEY!\\b", "2 a!KEY!\\b"}, // a mark counts at the beginning alone
        {"\\\\!KEY!", "2 \\\\!KEY!"},
        {"!KEY!!KEY!", "2 Software\\Pen!KEY! KEY"},
        {"!key!\\x", "2 \\x key"},
        {"!!x", "2 x "},
        {"HKEY_CLASSES_ROOT\\!KEY!x", "0 \\Software\\Penx KEY"},
        {"HKEY_CLASSES_ROOT\\!WHOLE!\\x", "1 \\\\Software\\Pen\\x WHOLE"}, // both back-slashes stay
        {"!ROOT!\\a!b!", "3 \\a!b! ROOT"},
        {"!NESTED!\\x", "1 \\Software\\Pen\\Inner\\x NESTED WHOLE"},
        {"!UNDER!", "1 \\\\Software\\Pen\\Inner UNDER WHOLE"},
        {"!A B\\C!x", "2 oddx A B\\C"}, // the name may hold what a head may not
    };
    for (const auto &[text, expected] : kRows) {
        const RegLocation location = Parse(text);
        EXPECT_EQ(std::to_string(location.mRootKey - kRootClasses) + " " + location.mPath + location.mPermissions +
                      gAsked,
                  expected)
            << text;
    }
    std::string odd; // is kept byte for byte
    for (int byte = 0; byte < 256; ++byte) {
        odd += static_cast<char>(byte);
    }
    EXPECT_EQ(Parse("HKEY_USERS\\" + odd).mPath, "\\" + odd);
    EXPECT_EQ(Parse("x\\y", kRootClasses).mRootKey, kRootClasses);
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>());
}

TEST(RegPath, MacrosWithoutAnEndAreReported)
{
    for (const char *text : {"!KEY\\x", "\\!KEY", "!", "!OPEN!"}) {
        EXPECT_EQ(Parse(text).mPath, text == std::string("!OPEN!") ? "!KEY" : text);
        EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"endBang != std::string::npos"}) << text;
    }
    EXPECT_EQ(Parse("!LOOP!\\below").mPath, "");
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{"PlatformData LOOP leads back to itself"});
    EXPECT_EQ(Parse("!PING!").mRootKey, kRootUsers);
    EXPECT_EQ(TakeTraceRecords().size(), 1u);
    EXPECT_LT(gAsked.size(), 1000u);
}

} // namespace
