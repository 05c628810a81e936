// What a run settles in front of its first page, seen from outside: group, switches, refusals.
#include "Fixture.h"

namespace {

std::string Line(const char *key, const std::string &value)
{
    return value.empty() ? std::string() : std::string(key) + "=" + value + "\n";
}

void Set(Settings &settings, const char *name, const std::string &number)
{
    if (!number.empty()) {
        settings.Number(name, static_cast<DWORD>(std::stoul(number)));
    }
}

// A package with these lines in MAIN besides what every script has, and a group for each way to choose one.
void Stage(Package &package, const std::string &main, const std::string &more = "")
{
    package.Script("[MAIN]\nVersion=1.10.01\nPrefType=Pen_Tablet\nLanguages=English\n" + main +
                   "[Install]\nLog;ran Install\n[Uninstall]\nLog;ran Uninstall\n[Foo]\nLog;ran Foo\n[Bar]\nLog;ran "
                   "Bar\n" +
                   more);
}

std::string Switches(const char *ink, const char *te, const char *win64)
{
    return std::string("Using mCommand Install; ink ") + ink + ", TE " + te + ", 64 " + win64;
}

TEST(Preflight, EveryKnownWindowsIsTakenAndFromVistaOnInkIsOnWhateverAnOverrideSays)
{
    SKIP_UNLESS_WINE();
    static const struct {
        const char *version;
        const char *ink;
    } kRows[] = {{"winxp64", "no"}, {"vista", "yes"}, {"win7", "yes"},
                 {"win8", "yes"},   {"win81", "yes"}, {"win10", "yes"}};
    for (const auto &row : kRows) {
        SCOPED_TRACE(row.version);
        const WindowsVersion version(row.version);
        Package package;
        Stage(package, "INK_OVERRIDE=0\n");
        package.File("isdoem.dat", "[MAIN]\r\nINK_OVERRIDE=0\r\n");
        const RunResult run = package.Run();
        EXPECT_EQ(run.mExitCode, 0u);
        EXPECT_TRUE(HasInOrder(run, {Switches(row.ink, "no", "yes"), "ran Install"}));
    }
}

TEST(Preflight, OnXPTheLaterSourceOfInkWins)
{
    SKIP_UNLESS_WINE();
    static const struct {
        const std::string tail, registry, script, oem;
        const char *ink;
    } kRows[] = {
        {"", "", "", "", "no"},        {"/ink", "", "", "", "yes"}, {"/ink", "0", "", "", "no"},
        {"", "1", "", "", "yes"},      {"", "1", "0", "", "no"},    {"", "0", "1", "", "yes"},
        {"/ink", "", "0", "", "no"},   {"", "", "1", "", "yes"},    {"/ink", "0", "1", "", "yes"},
        {"", "", "1", "0", "no"},      {"", "", "0", "1", "yes"},   {"", "1", "", "0", "no"},
        {"/ink", "", "", "0", "no"},   {"", "1", "1", "", "yes"},   {"", "0", "0", "1", "yes"},
        {"/ink", "1", "1", "0", "no"},
    };
    const WindowsVersion version("winxp64");
    for (const auto &row : kRows) {
        SCOPED_TRACE(row.tail + " registry " + row.registry + " script " + row.script + " oem " + row.oem);
        Settings settings;
        Set(settings, "INK", row.registry);
        Package package;
        Stage(package, Line("INK_OVERRIDE", row.script));
        if (!row.oem.empty()) {
            package.File("isdoem.dat", "[MAIN]\r\n" + Line("INK_OVERRIDE", row.oem) + "[Install]\r\nLog;oem\r\n");
        }
        // The group comes from the package's own script again.
        EXPECT_TRUE(HasInOrder(package.Run(row.tail), {Switches(row.ink, "no", "yes"), "ran Install"}));
    }
}

TEST(Preflight, TheScriptWinsOverTheRegistryForTabletEditionAnd64Bit)
{
    static const struct {
        const std::string registry, script;
        const char *te, *win64; // the same numbers given to both
    } kRows[] = {{"", "", "no", "yes"}, {"1", "", "yes", "yes"}, {"0", "", "no", "no"},    {"", "1", "yes", "yes"},
                 {"", "0", "no", "no"}, {"1", "0", "no", "no"},  {"0", "1", "yes", "yes"}, {"7", "", "yes", "yes"}};
    for (const auto &row : kRows) {
        SCOPED_TRACE("registry " + row.registry + " script " + row.script);
        Settings settings;
        Set(settings, "WINTE", row.registry);
        Set(settings, "WIN64", row.registry);
        Package package;
        Stage(package, Line("WINTE_OVERRIDE", row.script) + Line("WIN64_OVERRIDE", row.script));
        EXPECT_TRUE(HasInOrder(package.Run(), {Switches("yes", row.te, row.win64), "ran Install"}));
    }
}

TEST(Preflight, ChoosesTheGroup)
{
    static const struct {
        const std::string tail, installCommand, uninstallCommand;
        const char *group;
    } kRows[] = {
        {"", "", "", "Install"},
        {"", "Bar", "", "Bar"},
        {"/u", "", "", "Uninstall"},
        {"/uninstall", "", "Bar", "Bar"},
        {"/u", "Bar", "", "Uninstall"},
        {"", "", "Bar", "Install"},
        {"/command Foo", "", "", "Foo"},
        {"/command Foo", "Bar", "", "Bar"},
        {"/u /command Foo", "", "Bar", "Foo"},
        {"/command Foo /u", "Bar", "", "Bar"},
    };
    for (const auto &row : kRows) {
        SCOPED_TRACE(row.tail + " " + row.installCommand + " " + row.uninstallCommand);
        Settings settings;
        if (!row.installCommand.empty()) {
            settings.Text("InstallCommand", row.installCommand);
        }
        if (!row.uninstallCommand.empty()) {
            settings.Text("UninstallCommand", row.uninstallCommand);
        }
        Package package;
        Stage(package, "");
        const std::string group = row.group;
        EXPECT_TRUE(HasInOrder(package.Run(row.tail), {"Using mCommand " + group + "; *", "ran " + group}));
    }
}

TEST(Preflight, ABuiltInPackageNeedsItsHardwareToInstall)
{
    static const struct {
        const std::string name, main, flags, tail;
        DWORD exitCode;
    } kRows[] = {
        {"built in", "ISD=1\n", "", "", 65},
        {"any number", "ISD=4\n", "", "", 65},
        {"not built in", "ISD=0\n", "", "", 0},
        {"virtual", "VISD=1\n", "", "", 0},
        {"touch", "TOUCH=1\n", "", "", 0},
        {"virtual over built in", "ISD=1\nVISD=1\n", "", "", 0},
        {"touch over built in", "ISD=1\nTOUCH=1\n", "", "", 0},
        {"flag", "ISD=1\n", "NOHARDWARE_OVERRIDE=1", "", 0},
        {"any flag but 0", "ISD=1\n", "NOHARDWARE_OVERRIDE=-2", "", 0},
        {"flag 0", "ISD=1\n", "NOHARDWARE_OVERRIDE=0", "", 65},
        {"removal", "ISD=1\n", "", "/u", 0},
        {"removal made an installation", "ISD=1\n", "", "/u /command Foo", 65},
        {"error suppressed", "ISD=1\n", "", "/suppress-error", 0},
    };
    for (const auto &row : kRows) {
        SCOPED_TRACE(row.name);
        Package package;
        Stage(package, row.main, "[STATIC_FLAGS]\n" + row.flags + "\n");
        const RunResult run = package.Run(row.tail);
        EXPECT_EQ(run.mExitCode, row.exitCode);
        EXPECT_EQ(run.mOutputFile, std::to_string(row.exitCode));
        const bool refused = row.exitCode != 0 || row.tail == "/suppress-error";
        EXPECT_EQ(CountRecords(run, "ran *"), refused ? 0u : 1u);
    }
}

// The device tree is a text file here, see tests/doubles/devices/README.md.
TEST(Preflight, ABuiltInPackageInstallsWhereOneOfItsDevicesIsAttached)
{
    SKIP_UNLESS_WINE();
    static const struct {
        const char *tree;
        DWORD exitCode;
    } kRows[] = {{"USB USB\\VID_7A1C&PID_0118\\1 live\n", 0},
                 {"USB USB\\VID_7A1C&PID_0118\\1 remembered\n", 65},
                 {"USB USB\\VID_046D&PID_0118\\1 live\n", 65}};
    for (const auto &row : kRows) {
        Package package;
        Stage(package, "ISD=1\n");
        package.File("tree.txt", row.tree).Environment("TAVIX_DEVICE_TREE", package.Path("tree.txt"));
        EXPECT_EQ(package.Run().mExitCode, row.exitCode) << row.tree;
    }
}

TEST(Preflight, TheValueOfAnUnfinishedInstallationGoesAndNothingElse)
{
    Settings settings;
    settings.Text("VInstall", "yes").Text("Other", "stays");
    Package package;
    Stage(package, "");
    package.Run();
    EXPECT_EQ(Settings::Read("VInstall"), "<none>");
    EXPECT_EQ(Settings::Read("Other"), "stays");
}

TEST(Preflight, LeavesNoKeyOfSettingsWhereThereWasNone)
{
    const Settings settings; // takes away what the machine has
    RemoveKey(HKEY_LOCAL_MACHINE, Settings::kPath);
    Package package;
    Stage(package, "");
    EXPECT_EQ(package.Run().mExitCode, 0u);
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, Settings::kPath));
}

TEST(Preflight, FilesListedForAGroupHaveNoEffectOnARun)
{
    Package package;
    Stage(package, "Install=1\n", "[OSSupportedFiles]\nInstall=.\\\\missing.txt\n");
    EXPECT_TRUE(Has(package.Run(), "ran Install"));
}

// Windows 2000 is the one outside the list that can be had.
TEST(PreflightWin32Prefix, AnUnknownWindowsIsRefusedUnlessItIsAllowed)
{
    SKIP_UNLESS_WINE();
    static const struct {
        const std::string name, registry, main, tail;
        DWORD exitCode;
    } kRows[] = {
        {"plain", "", "", "", 33},
        {"removal", "", "", "/u", 33},
        {"group", "", "", "/command Foo", 33},
        {"before the hardware", "", "ISD=1\n", "", 33},
        {"registry", "1", "", "", 0},
        {"script", "", "OBSOS_OVERRIDE=1\n", "", 0},
        {"script against registry", "1", "OBSOS_OVERRIDE=0\n", "", 33},
        {"script over registry", "0", "OBSOS_OVERRIDE=2\n", "", 0},
        {"removal allowed", "1", "", "/u", 0},
        {"allowed, without hardware", "1", "ISD=1\n", "", 65},
        {"error suppressed", "", "", "/suppress-error", 0},
    };
    const WindowsVersion version("win2k");
    for (const auto &row : kRows) {
        SCOPED_TRACE(row.name);
        Settings settings;
        Set(settings, "Obs", row.registry);
        Package package;
        Stage(package, row.main);
        const RunResult run = package.Run(row.tail);
        EXPECT_EQ(run.mExitCode, row.exitCode);
        const bool refused = row.exitCode == 33 || row.tail == "/suppress-error";
        EXPECT_EQ(CountRecords(run, "Platform not supported"), refused ? 1u : 0u);
        EXPECT_EQ(CountRecords(run, "ran *"), row.exitCode == 0 && !refused ? 1u : 0u);
        EXPECT_TRUE(Has(run, "Using mCommand *; ink no, TE no, 64 no"));
    }
}

TEST(PreflightWin32Prefix, TheOldestKnownWindowsIsTaken)
{
    SKIP_UNLESS_WINE();
    const WindowsVersion version("winxp");
    Package package;
    Stage(package, "INK_OVERRIDE=1\n");
    EXPECT_TRUE(HasInOrder(package.Run(), {Switches("yes", "no", "no"), "ran Install"}));
    EXPECT_TRUE(HasInOrder(package.Run("/u"), {"Using mCommand Uninstall; ink yes*", "ran Uninstall"}));
}

} // namespace
