// The registry commands in whole runs: what they write, delete and test in both views, and every word of their traces.
#include <algorithm>
#include <memory>

#include "Fixture.h"

namespace {

using Lines = std::vector<std::string>;

const std::string kBase = "Software\\TAVIX\\SystemTests\\Registry";
const std::string kKey = "HKEY_LOCAL_MACHINE\\" + kBase;

// A package whose steps stand between two marks; back-slashes are written once.
class Registry : public ::testing::Test {
protected:
    Registry() : mSnapshot(HKEY_LOCAL_MACHINE, "Software\\TAVIX\\SystemTests") {}

    // Runs the steps. Answers the records that they wrote, without those that tell the name of each step and those of
    // the progress thread.
    Lines Run(const Lines &steps, const std::string &more = "")
    {
        std::string text = "Log;begin\n";
        for (const std::string &step : steps) {
            text += Escaped(step) + "\n";
        }
        const RunResult run = mPackage.Steps(text + "<end>Log;end", more).Run();
        EXPECT_EQ(run.mExitCode, 0u);
        EXPECT_EQ(CountRecords(run, "end"), 1u) << run.mTraceText;
        Lines lines;
        std::string thread;
        for (const TraceRecord &record : run.mTrace) {
            if (record.mMessage == "end") {
                break;
            }
            if (record.mThread == thread && !Fits("Instruction *", record.mMessage)) {
                lines.push_back(record.mMessage);
            }
            if (record.mMessage == "begin") {
                thread = record.mThread;
            }
        }
        return lines;
    }

    std::optional<RegData> Value(const std::string &name, EView view = EView64, const std::string &below = "") const
    {
        return ReadValue(HKEY_LOCAL_MACHINE, kBase + below, name, view);
    }

    Package mPackage;

private:
    RegistrySnapshot mSnapshot;
};

// Written with "|" for a zero byte.
RegData Data(DWORD type, std::string bytes)
{
    std::replace(bytes.begin(), bytes.end(), '|', '\0');
    return {type, bytes};
}

std::string Wrote(const std::string &path, const std::string &name, const std::string &value,
                  const std::string &status = "0x0", const std::string &permissions = "")
{
    return "Key: " + path + ", Name: " + name + ", Value: " + value + ", Perms: " + permissions + ", status: " + status;
}

TEST_F(Registry, EveryWriterInItsViewWithItsType)
{
    static const struct {
        const char *command;
        EView view;
        const char *value;
        RegData stored;
        const char *trace;
    } kRows[] = {
        {"RegValueString", EView64, "some text", RegText("some text"),
         "Key: \\%, Name: n, Value: some text, Perms: , status: 0x0"},
        {"RegValueStringRedir", EView32, "some text", RegText("some text"),
         "Key: \\%, Name: n, Value: some text, Perms: , status: 0x0"},
        {"RegValueMultiStringAppe", EView64, "one", Data(REG_MULTI_SZ, "one||"),
         "Key: \\%, Name: n, Value: one, Perms: , status: 0x0"},
        {"RegValueMultiStringAppeRedir", EView32, "one", Data(REG_MULTI_SZ, "one||"),
         "Key: \\%, Name: n, Value: one, Perms: , status: 0x0"},
        {"RegValueExpStr", EView64, "%SystemRoot%\\x", RegText("%SystemRoot%\\x", REG_EXPAND_SZ),
         "Key: \\%, Name: n, Value: %SystemRoot%\\x, Perms: , status: 0x0"},
        {"RegValueDWORD", EView64, "-2", RegNumber(0xFFFFFFFE), "Key \\%, Name n, Value -2, status 0x0"},
        {"RegValueDWORDRedir", EView32, " 12x", RegNumber(12), "Key \\%, Name n, Value 12, status 0x0"},
        {"RegValueDWORD", EView64, "text", RegNumber(0), "Key \\%, Name n, Value 0, status 0x0"},
        {"RegValueDWORD", EView64, "4294967295", RegNumber(0x7FFFFFFF),
         "Key \\%, Name n, Value 2147483647, status 0x0"},
    };
    Lines steps;
    Lines expected;
    for (size_t row = 0; row < std::size(kRows); ++row) {
        const std::string below = "\\" + std::to_string(row);
        steps.push_back(std::string(kRows[row].command) + ";" + kKey + below + ";n;" + kRows[row].value);
        expected.push_back(kRows[row].trace);
        expected.back().replace(expected.back().find("\\%,"), 2, "\\" + kBase + below);
    }
    EXPECT_EQ(Run(steps), expected);
    for (size_t row = 0; row < std::size(kRows); ++row) {
        const std::string below = "\\" + std::to_string(row);
        const EView other = kRows[row].view == EView64 ? EView32 : EView64;
        EXPECT_EQ(Value("n", kRows[row].view, below), kRows[row].stored) << steps[row];
        EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kBase + below, other)) << steps[row];
    }
}

TEST_F(Registry, RootNamesInAnyCaseAndPathsWithout)
{
    static const struct {
        const char *root;
        HKEY key;
        const char *path;
    } kRows[] = {
        {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE, "\\Software\\TAVIX\\SystemTests\\Registry"},
        {"hkey_current_user", HKEY_CURRENT_USER, "\\Software\\TavixSystemTest"},
        {"Hkey_Users", HKEY_USERS, "\\.DEFAULT\\TavixSystemTest"},
        {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT, "\\TavixSystemTest"},
        {"hKEY_CURRENT_CONFIg", HKEY_CURRENT_CONFIG, "\\Software\\TavixSystemTest"},
        {"", HKEY_LOCAL_MACHINE, "Software\\TAVIX\\SystemTests\\Relative"},
        {"", HKEY_LOCAL_MACHINE, "\\Software\\TAVIX\\SystemTests\\Leading"},
    };
    std::vector<std::unique_ptr<RegistrySnapshot>> snapshots;
    Lines steps;
    Lines expected;
    for (const auto &row : kRows) {
        snapshots.push_back(std::make_unique<RegistrySnapshot>(row.key, row.path + (row.path[0] == '\\')));
        steps.push_back(std::string("RegValueStringRedir;") + row.root + row.path + ";n;" + row.path);
        expected.push_back(Wrote(row.path, "n", row.path));
    }
    EXPECT_EQ(Run(steps), expected);
    for (const auto &row : kRows) {
        EXPECT_EQ(ReadRegText(row.key, row.path + (row.path[0] == '\\'), "n"), row.path) << row.root;
    }
}

TEST_F(Registry, RootAloneIsRefusedAndNothingElseIsTouched)
{
    Settings settings;
    settings.Text("Kept", "as it was");
    EXPECT_EQ(
        Run({"RegValueStringRedir;HKEY_CURRENT_USER;n;text", "RegValueStringRedir;HKEY_CURRENT_USER;@;",
             "RegValueDWORDRedir;hkey_users;n;1", "RegValueMultiStringAppeRedir;;n;text",
             "RegValueMultiStringDeleRedir;HKEY_CLASSES_ROOT;Kept;x",
             "CheckRegDWORD;HKEY_LOCAL_MACHINE;Kept;65535;<end>",
             // The deletion of a whole root, which Windows takes a lone back-slash for.
             "RegValueStringRedir;HKEY_CLASSES_ROOT\\\\;@;", "RegValueStringRedir;HKEY_CURRENT_USER\\;@;"}),
        (Lines{Wrote("", "n", "text", "0x606"), Wrote("", "@", "", "0x606"), "Key , Name n, Value 1, status 0x606",
               Wrote("", "n", "text", "0x606"), "Key , Name Kept, Value x, status 0x606",
               "CheckRegDWORD: , Kept, 65535", "CheckRegDWORD failed: Error reading registry key: 1542",
               "DeleteKeyRecursive: basePath_I: \\", Wrote("\\\\", "@", "", "0x600"),
               "DeleteKeyRecursive: basePath_I: ", Wrote("\\", "@", "", "0x600")}));
    EXPECT_EQ(Settings::Read("Kept"), "as it was");
    EXPECT_EQ(Settings::Read("n"), "<none>");
    EXPECT_TRUE(KeyExists(HKEY_CURRENT_USER, "Software"));
}

TEST_F(Registry, MacroAtTheBeginningOfAKeyIsPlatformData)
{
    const RegistrySnapshot user(HKEY_CURRENT_USER, "Software\\TavixSystemTest");
    const std::string data = Escaped("[PlatformData]\nKEY=" + kBase +
                                     "\nROOT=hkey_current_user\nWHOLE=!ROOT!\\Software\\TavixSystemTest\n"
                                     "NESTED=!WHOLE!\\Inner\nLOOP=!LOOP!\nOPEN=!KEY\n");
    EXPECT_EQ(Run({"RegValueStringRedir;!KEY!\\A;n;1", "RegValueStringRedir;\\!KEY!\\B;n;1",
                   "RegValueStringRedir;!ROOT!\\Software\\TavixSystemTest;n;2", "RegValueDWORDRedir;!WHOLE!;number;3",
                   "RegValueStringRedir;HKEY_LOCAL_MACHINE\\!NESTED!;n;4", "RegValueStringRedir;!NESTED!;n;5",
                   "RegValueStringRedir;!NONE!" + kBase + "\\C;n;6"},
                  data),
              (Lines{Wrote(kBase + "\\A", "n", "1"), Wrote("\\" + kBase + "\\B", "n", "1"),
                     Wrote("\\Software\\TavixSystemTest", "n", "2"),
                     "Key \\Software\\TavixSystemTest, Name number, Value 3, status 0x0",
                     // Two back-slashes meet, and Windows takes but one away.
                     Wrote("\\\\Software\\TavixSystemTest\\Inner", "n", "4", "0x600"),
                     Wrote("\\Software\\TavixSystemTest\\Inner", "n", "5"), Wrote(kBase + "\\C", "n", "6")}));
    EXPECT_EQ(Value("n", EView32, "\\A"), RegText("1"));
    EXPECT_EQ(Value("n", EView32, "\\C"), RegText("6"));
    EXPECT_EQ(ReadRegText(HKEY_CURRENT_USER, "Software\\TavixSystemTest", "n"), "2");
    EXPECT_EQ(ReadValue(HKEY_CURRENT_USER, "Software\\TavixSystemTest", "number"), RegNumber(3));
    EXPECT_EQ(ReadRegText(HKEY_CURRENT_USER, "Software\\TavixSystemTest\\Inner", "n"), "5");

    const RegistrySnapshot open(HKEY_LOCAL_MACHINE, "!KEY");
    const RegistrySnapshot loop(HKEY_LOCAL_MACHINE, "!LOOP!");
    EXPECT_EQ(
        Run({"RegValueStringRedir;!KEY;n;1", "RegValueStringRedir;!OPEN!;n;1", "RegValueStringRedir;!LOOP!;n;1"}, data),
        (Lines{"endBang != std::string::npos", Wrote("!KEY", "n", "1"), "endBang != std::string::npos",
               Wrote("!KEY", "n", "1"), "PlatformData LOOP leads back to itself", Wrote("!LOOP!", "n", "1")}));
}

TEST_F(Registry, PlatformDataIsThatOfTheMainScriptInAGroupOfAnotherFile)
{
    mPackage.File("other.dat",
                  Escaped("[PlatformData]\r\nKEY=" + kBase + "\\Other\r\n[Group]\r\nRegValueString;!KEY!;n;1\r\n"));
    Run({"!Group!;.\\other.dat"}, Escaped("[PlatformData]\nKEY=" + kBase + "\\Main"));
    EXPECT_EQ(Value("n", EView64, "\\Main"), RegText("1"));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\Other", EView64));
}

TEST_F(Registry, NamesValuesAndPermissionsAreExpandedAndKeysAreNot)
{
    const RegistrySnapshot unexpanded(HKEY_LOCAL_MACHINE, "!.!");
    const std::string right = "Users:FullControl";
    EXPECT_EQ(
        Run({"RegValueStringRedir;" + kKey + ";!NAME!;!VALUE!!APP VERSION!;^Users^:FullControl",
             "RegValueDWORDRedir;" + kKey + ";!NUMBER!;!17!", "RegValueMultiStringAppeRedir;" + kKey + ";!LIST!;!a!",
             "RegValueMultiStringDeleRedir;" + kKey + ";!LIST!;!a!"}),
        (Lines{"keyBasePath: " + kBase + ", permissions: " + right,
               Wrote("\\" + kBase, "NAME", "VALUE5.3.5-5", "0x0", right),
               "Key \\" + kBase + ", Name NUMBER, Value 17, status 0x0", Wrote("\\" + kBase, "LIST", "a"),
               "Key \\" + kBase + ", Name LIST, Value a, status 0x0"}));
    EXPECT_EQ(Value("NAME", EView32), RegText("VALUE5.3.5-5"));
}

TEST_F(Registry, EmptyValueDeletesValueOrKey)
{
    const std::string deep = "\\Tree\\1\\2\\3\\4";
    for (const EView view : {EView32, EView64}) {
        WriteValue(HKEY_LOCAL_MACHINE, kBase + deep, "v", RegText("x"), view);
        WriteValue(HKEY_LOCAL_MACHINE, kBase, "text", RegText("x"), view);
        WriteValue(HKEY_LOCAL_MACHINE, kBase, "number", RegNumber(7), view);
    }
    EXPECT_EQ(
        Run({"RegValueString;" + kKey + ";@;the unnamed value", "RegValueString;" + kKey + ";text;",
             "RegValueString;" + kKey + ";text;", "RegValueDWORD;" + kKey + ";number;",
             "RegValueDWORD;" + kKey + ";number;0", "RegValueExpStr;" + kKey + "\\None;x;",
             "RegValueString;" + kKey + "\\None;@;", "RegValueDWORD;" + kKey + "\\Tree\\1\\2\\3;;"}),
        (Lines{Wrote("\\" + kBase, "@", "the unnamed value"), Wrote("\\" + kBase, "text", ""),
               Wrote("\\" + kBase, "text", "", "0x60C"), "Key \\" + kBase + ", Name number, Value 0, status 0x0",
               "Key \\" + kBase + ", Name number, Value 0, status 0x0",
               Wrote("\\" + kBase + "\\None", "x", "", "0x60C"), "DeleteKeyRecursive: basePath_I: " + kBase + "\\None",
               "DeleteKeyRecursive: RegOpenKeyEx on " + kBase + "\\None FAILED with status: 2",
               Wrote("\\" + kBase + "\\None", "@", "", "0x606"),
               "DeleteKeyRecursive: basePath_I: " + kBase + "\\Tree\\1\\2\\3", "DeleteKeyRecursive: Subkey found: 4",
               "DeleteKeyRecursive: basePath_I: 4", "DeleteKeyRecursive: deleting key: 4",
               "DeleteKeyRecursive: using RegDeleteKeyEx...",
               "DeleteKeyRecursive: deleting key: " + kBase + "\\Tree\\1\\2\\3",
               "DeleteKeyRecursive: using RegDeleteKeyEx...",
               "Key \\" + kBase + "\\Tree\\1\\2\\3, Name , Value 0, status 0x0"}));
    EXPECT_EQ(Value(""), RegText("the unnamed value"));
    EXPECT_EQ(Value("text"), std::nullopt);
    EXPECT_EQ(Value("number"), RegNumber(0));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\Tree\\1\\2", EView64));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\Tree\\1\\2\\3", EView64));
    EXPECT_EQ(Value("text", EView32), RegText("x")); // the other view has all it had
    EXPECT_EQ(Value("v", EView32, deep), RegText("x"));
}

TEST_F(Registry, UnnamedValueOfZeroLowByteDeletesTheKeyToo)
{
    WriteValue(HKEY_LOCAL_MACHINE, kBase + "\\Sub", "v", RegText("x"), EView64);
    EXPECT_EQ(Run({"RegValueDWORD;" + kKey + ";@;257", "RegValueDWORD;" + kKey + "\\Sub;@;256"}).back(),
              "Key \\" + kBase + "\\Sub, Name @, Value 256, status 0x0");
    EXPECT_EQ(Value(""), RegNumber(257));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\Sub", EView64));
}

TEST_F(Registry, ExistenceIsTestedInTheViewOfTheProcess)
{
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "v", RegText("x"), EView32);
    WriteValue(HKEY_LOCAL_MACHINE, kBase + "\\Only64", "v", RegText("x"), EView64);
    static const struct {
        const char *below, *name;
        bool exists;
    } kRows[] = {{"", "", true},          {"", "v", true},     {"", "w", false},
                 {"", "@", false},        {"\\No", "", false}, {"\\No", "v", false},
                 {"\\Only64", "", false}, {"", "!v!", false}}; // the name stays as it is
    // Each jump passes over a mark; a target that is not taken is not looked at.
    Lines steps;
    Lines expected;
    for (const auto &row : kRows) {
        const std::string arguments = kBase + row.below + ";" + row.name;
        for (const bool wanted : {true, false}) {
            const std::string label = "<" + std::to_string(steps.size()) + ">";
            steps.push_back((wanted ? "RegExist;" : "RegNotExist;") + arguments + ";" + label);
            steps.push_back("Log;no jump");
            steps.push_back(label + "NULL");
            expected.push_back("Key " + kBase + row.below + ", Name " + row.name +
                               (row.exists ? ", Exists" : ", Does not exist"));
            expected.push_back(row.exists == wanted ? ", True goto label " + label : "no jump");
        }
    }
    EXPECT_EQ(Run(steps), expected);
}

TEST_F(Registry, ExistenceExpandsTheKeyAndDoesNotForgiveABackSlashBehindTheRoot)
{
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "v", RegText("x"), EView32);
    const std::string below = kBase.substr(8); // "Software" is the first macro's own text
    EXPECT_EQ(Run({"RegExist;" + kKey + ";v;<end>", "RegExist;!Software!" + below + ";v;<end>", "Log;not reached"}),
              (Lines{"Key \\" + kBase + ", Name v, Does not exist", "Key " + kBase + ", Name v, Exists",
                     ", True goto label <end>"}));
}

TEST_F(Registry, NumbersAreComparedAndOtherTypesReported)
{
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "number", RegNumber(0xFFFFFFFE), EView32);
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "default", RegNumber(65535), EView32);
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "text", RegText("abcd"), EView32);
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "byte", {REG_DWORD, "\x05"}, EView32);
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "long", RegText(std::string(20000, 'x')), EView32);
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "only64", RegNumber(1), EView64);
    static const struct {
        const char *name, *value, *outcome;
    } kRows[] = {
        {"number", "-2", ", CheckRegDWORD passed"},
        {"!default!", "65535", ", CheckRegDWORD passed"},
        {"number", "1", "CheckRegDWORD failed: Registry key is set to -2, not 1"},
        {"number", "", "CheckRegDWORD failed: Registry key is set to -2, not 0"},
        {"text", "1684234849", ", CheckRegDWORD passed"},
        {"text", "7", "CheckRegDWORD failed: Registry key is set to 1684234849, not 7"},
        {"byte", "5", ", CheckRegDWORD passed"},
        {"none", "65535", "CheckRegDWORD failed: Error reading registry key: 1548"},
        {"long", "65535", "CheckRegDWORD failed: Error reading registry key: 1536"},
        {"only64", "1", "CheckRegDWORD failed: Error reading registry key: 1548"},
    };
    Lines steps;
    Lines expected;
    for (const auto &row : kRows) {
        std::string name = row.name;
        name.erase(std::remove(name.begin(), name.end(), '!'), name.end());
        const std::string label = "<" + std::to_string(steps.size()) + ">";
        steps.push_back("CheckRegDWORD;" + kKey + ";" + row.name + ";" + row.value + ";" + label);
        steps.push_back("Log;no jump");
        steps.push_back(label + "NULL");
        if (name == "text") {
            expected.push_back("dwType == REG_DWORD");
        } else if (name == "long") {
            expected.push_back("lRegResult == ERROR_FILE_NOT_FOUND");
        }
        expected.push_back("CheckRegDWORD: \\" + kBase + ", " + name + ", " + row.value);
        expected.push_back(row.outcome);
        expected.push_back(Fits("*passed", row.outcome) ? ", True goto label " + label : "no jump");
    }
    EXPECT_EQ(Run(steps), expected);
    EXPECT_EQ(Run({"CheckRegDWORD;" + kKey + "\\None;v;0;<end>"}).back(),
              "CheckRegDWORD failed: Error reading registry key: 1542");
}

TEST_F(Registry, ListsOfTextsGrowAndShrink)
{
    const RegData three = Data(REG_MULTI_SZ, "one|two|one||");
    static const struct {
        const char *name, *command, *value, *status;
    } kRows[] = {
        {"new", "Appe", "one", "0x0"},     {"new", "Appe", "one", "0x0"},    {"new", "Appe", "two", "0x0"},
        {"new", "Appe", "TWO", "0x0"},     {"first", "Dele", "one", "0x0"},  {"middle", "Dele", "two", "0x0"},
        {"other", "Dele", "tw", "0x0"},    {"gone", "Appe", "only", "0x0"},  {"gone", "Dele", "only", "0x0"},
        {"gone", "Dele", "only", "0x600"}, {"nothing", "Appe", "", "0x60C"},
    };
    for (const char *name : {"first", "middle", "other"}) {
        WriteValue(HKEY_LOCAL_MACHINE, kBase, name, three, EView64);
    }
    Lines steps;
    Lines expected;
    for (const auto &row : kRows) {
        const std::string name = row.name;
        steps.push_back(std::string("RegValueMultiString") + row.command + ";" + kKey + ";" + name + ";" + row.value);
        expected.push_back(row.command[0] == 'A' ? Wrote("\\" + kBase, name, row.value, row.status)
                                                 : "Key \\" + kBase + ", Name " + name + ", Value " + row.value +
                                                       ", status " + row.status);
    }
    EXPECT_EQ(Run(steps), expected);
    EXPECT_EQ(Value("new"), Data(REG_MULTI_SZ, "one|two|TWO||"));
    EXPECT_EQ(Value("first"), Data(REG_MULTI_SZ, "two|one||"));
    EXPECT_EQ(Value("middle"), Data(REG_MULTI_SZ, "one|one||"));
    EXPECT_EQ(Value("other"), three);
    EXPECT_EQ(Value("gone"), std::nullopt);
    EXPECT_EQ(Value("nothing"), std::nullopt);
}

TEST_F(Registry, DataAboveTheReadersLimitIsReportedAndKept)
{
    std::string list;
    for (int entry = 0; entry < 10000; ++entry) {
        list += std::to_string(entry) + '|';
    }
    WriteValue(HKEY_LOCAL_MACHINE, kBase, "list", Data(REG_MULTI_SZ, list + '|'), EView64);
    const std::string text(9900, 't');
    EXPECT_EQ(Run({"RegValueMultiStringAppe;" + kKey + ";list;more", "RegValueMultiStringDele;" + kKey + ";list;7",
                   "RegValueString;" + kKey + ";text;" + text}),
              (Lines{"lRegResult == ERROR_FILE_NOT_FOUND", Wrote("\\" + kBase, "list", "more", "0x602"),
                     "lRegResult == ERROR_FILE_NOT_FOUND", "Key \\" + kBase + ", Name list, Value 7, status 0x600",
                     Wrote("\\" + kBase, "text", text)}));
    EXPECT_EQ(Value("list"), Data(REG_MULTI_SZ, list + '|'));
    EXPECT_EQ(Value("text"), RegText(text));
}

TEST_F(Registry, PermissionsThatAreUnknownAreReportedAndTheValueIsWritten)
{
    static const struct {
        const char *permissions, *report;
    } kRows[] = {{"Users:FullControl", nullptr},
                 {"users:FullControl", "!\"SetKeyPermissions - Unknown group specified\""},
                 {"Users:fullcontrol", "!\"SetKeyPermissions - Unknown permissions specified\""},
                 {"Users", "!\"SetKeyPermissions - bad arg(s)\""}};
    Lines steps;
    Lines expected;
    for (const auto &row : kRows) {
        steps.push_back("RegValueStringRedir;" + kKey + ";" + row.permissions + ";v;" + row.permissions);
        expected.push_back("keyBasePath: " + kBase + ", permissions: " + row.permissions);
        if (row.report != nullptr) {
            expected.push_back(row.report);
        }
        expected.push_back(Wrote("\\" + kBase, row.permissions, "v", "0x0", row.permissions));
    }
    EXPECT_EQ(Run(steps), expected);
    for (const auto &row : kRows) {
        EXPECT_EQ(Value(row.permissions, EView32), RegText("v"));
    }
    if (On64BitWindows()) {
        // The name of a key in the functions for access lists tells no view, so a key of the 64-bit registry is
        // looked for among those of the 32-bit one.
        EXPECT_EQ(Run({"RegValueString;" + kKey + "\\Only64;n;v;Users:FullControl"}),
                  (Lines{"keyBasePath: " + kBase + "\\Only64, permissions: Users:FullControl",
                         "GetNamedSecurityInfo - error: 2",
                         Wrote("\\" + kBase + "\\Only64", "n", "v", "0x0", "Users:FullControl")}));
        EXPECT_EQ(Value("n", EView64, "\\Only64"), RegText("v"));
    }
}

TEST_F(Registry, ValueOfAnOemFile)
{
    mPackage.File("oem.dat",
                  "[REGISTRY]\r\nName=C:\\new\\table %s%n\r\nEmpty=\r\n[PlatformData]\r\nKEY=Software\\Wrong\r\n");
    const std::string data = Escaped("[PlatformData]\nKEY=" + kBase + "\n");
    Lines lines = Run({"RegValueFromFile;!.!\\oem.dat;Name;" + kKey, "RegValueFromFile;.\\oem.dat;Name;!KEY!\\Sub",
                       "RegValueFromFile;.\\oem.dat;Name;HKEY_CURRENT_USER",
                       "RegValueFromFile;.\\oem.dat;Empty;" + kKey, "RegValueFromFile;.\\oem.dat;!Name!;" + kKey,
                       "RegValueFromFile;.\\missing.dat;Name;" + kKey, "RegValueFromFile;;Name;" + kKey},
                      data);
    for (std::string &line : lines) { // the number is no number of ours
        if (Fits("Value *, Set *", line)) {
            EXPECT_EQ(line.find_first_not_of("-0123456789", 6), line.find(",")) << line;
            line = "Value N" + line.substr(line.find(","));
        }
    }
    EXPECT_EQ(lines, (Lines{"Oem File " + mPackage.Path("oem.dat"), "Get REGISTRY/Name",
                            "Value N, Set \\" + kBase + "/Name, status 0x0", "Oem File .\\oem.dat", "Get REGISTRY/Name",
                            "Value N, Set " + kBase + "\\Sub/Name, status 0x0", "Oem File .\\oem.dat",
                            "Get REGISTRY/Name", "Value N, Set /Name, status 0x606", "Oem File .\\oem.dat",
                            "Get REGISTRY/Empty", "Empty", "Oem File .\\oem.dat", "Get REGISTRY/!Name!", "Empty",
                            "Oem File .\\missing.dat", "Missing", "Oem File ", "Missing"}));
    EXPECT_EQ(Value("Name", EView32), RegText("C:\\new\\table %s%n"));
    EXPECT_EQ(Value("Name", EView32, "\\Sub"), RegText("C:\\new\\table %s%n"));
}

TEST_F(Registry, BadInputEndsInTheTrace)
{
    const std::string long255(255, 'k');
    const std::string long256(256, 'k');
    std::string high = "%s%n%999d";
    for (int byte = 0x80; byte < 0x100; ++byte) {
        high += static_cast<char>(byte);
    }
    // 32,000 characters in one key path, out of four values that name one another.
    std::string data = "[PlatformData]\n";
    for (const char *names : {"AB", "BC", "CD", "DE"}) {
        data += std::string(1, names[0]) + "=!" + names[1] + "!" + std::string(8000, 'k') + "\n";
    }
    data += Escaped("E=" + kBase + "\\\n");
    const Lines lines =
        Run({"RegValueString;" + kKey + ";;unnamed", "RegValueString;" + kKey + ";" + high + ";" + high,
             "RegValueString;" + kKey + "\\" + long256 + ";n;v", "RegValueString;!A!;n;v", "RegValueString;!A!;@;",
             "RegExist;!A!;n;<end>", "RegValueMultiStringAppe;!A!;n;v", "CheckRegDWORD;!A!;n;1;<end>",
             "RegValueString;" + kKey + ";" + std::string(9000, 'n') + ";v", "RegValueString", "RegValueDWORD;;;;;;"},
            data);
    EXPECT_EQ(Value(""), RegText("unnamed"));
    EXPECT_EQ(Value(high), RegText(high));
    EXPECT_EQ(Value(std::string(9000, 'n')), RegText("v"));
    for (const std::string &line : lines) {
        if (line.find(long255) != std::string::npos && line.compare(0, 5, "Key: ") == 0) {
            EXPECT_EQ(line.find("status: 0x0"), std::string::npos) << line.substr(0, 40);
        }
    }
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Key , Name , Value 0, status 0x606"), 1);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kBase + "\\" + long255, EView64));

    // An escaped NUL ends the step, whatever field it stands in.
    const RunResult run = mPackage.Steps("RegValueString;" + Escaped(kKey) + ";na\\0me;v").Run();
    EXPECT_TRUE(HasInOrder(run, {Wrote("\\" + kBase, "na", "", "0x60C"), "Instruction me"}));
}

} // namespace
