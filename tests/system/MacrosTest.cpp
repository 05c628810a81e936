// The macros with the values that this machine gives them.
#include "Fixture.h"

#include <shlobj.h>

namespace {

const char kCurrentVersion[] = "Software\\Microsoft\\Windows\\CurrentVersion";
const char kProfileList[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";

std::string SpecialFolder(int number)
{
    char path[MAX_PATH] = {};
    SHGetSpecialFolderPathA(nullptr, path, number, FALSE);
    return path;
}

std::string Folder(UINT(WINAPI *ask)(LPSTR, UINT))
{
    char path[MAX_PATH] = {};
    ask(path, MAX_PATH);
    return path;
}

std::string Wow64Folder()
{
    const auto ask = reinterpret_cast<UINT(WINAPI *)(LPSTR, UINT)>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetSystemWow64DirectoryA")));
    return ask != nullptr ? Folder(ask) : "";
}

std::string Expanded(const std::string &text)
{
    char expanded[1024] = {};
    ExpandEnvironmentStringsA(text.c_str(), expanded, sizeof expanded);
    return expanded;
}

// What each text becomes in one run: a step traces it between brackets.
std::vector<std::string> ExpandAll(Package &package, const std::vector<std::string> &texts, const std::string &more)
{
    std::string steps;
    for (const std::string &text : texts) {
        steps += "ExistRedir;[" + Escaped(text) + "]\n";
    }
    package.Steps(steps, more);
    const RunResult run = package.Run();
    std::vector<std::string> expanded;
    for (const TraceRecord &record : run.mTrace) {
        if (Fits("[*] does not Exist", record.mMessage)) {
            expanded.push_back(record.mMessage.substr(1, record.mMessage.rfind(']') - 1));
        }
    }
    return expanded;
}

using Rows = std::vector<std::pair<std::string, std::string>>;

void ExpectExpansions(const Rows &rows, const std::string &more = "")
{
    Package package;
    std::vector<std::string> texts;
    for (const auto &row : rows) {
        texts.push_back(row.first);
    }
    const std::vector<std::string> expanded = ExpandAll(package, texts, more);
    ASSERT_EQ(expanded.size(), rows.size());
    for (size_t at = 0; at < rows.size(); ++at) {
        std::string expected = rows[at].second;
        for (const auto &[name, value] :
             {std::make_pair("{package}", package.Folder()), std::make_pair("{temp}", package.Temp())}) {
            if (const size_t found = expected.find(name); found != std::string::npos) {
                expected.replace(found, std::string(name).size(), value);
            }
        }
        EXPECT_EQ(expanded[at], expected) << rows[at].first;
    }
}

TEST(Macros, EveryRowOfTheTable)
{
    const EView view = On64BitWindows() ? EView64 : EProcessView;
    ExpectExpansions({
        {"!.!", "{package}"},
        {"!WINDOWS!", Folder(GetWindowsDirectoryA)},
        {"!SYSTEM!", Folder(GetSystemDirectoryA)},
        {"!WOW64!", Wow64Folder()},
        {"!PROGRAM FILES!", ReadRegText(HKEY_LOCAL_MACHINE, kCurrentVersion, "ProgramFilesDir")},
        {"!PROGRAM FILES64!", ReadRegText(HKEY_LOCAL_MACHINE, kCurrentVersion, "ProgramFilesDir", view)},
        {"!PROGFILES!", ReadRegText(HKEY_LOCAL_MACHINE, kCurrentVersion, "ProgramFilesDir", view)},
        {"!COMMON PROGRAMS!", SpecialFolder(CSIDL_COMMON_PROGRAMS)},
        {"!COMMON DESKTOP!", SpecialFolder(CSIDL_COMMON_DESKTOPDIRECTORY)},
        {"!APP DATA!", SpecialFolder(CSIDL_APPDATA)},
        {"!APP VERSION!", "5.3.5-5"},
        {"!PROFILES!", Expanded(ReadRegText(HKEY_LOCAL_MACHINE, kProfileList, "ProfilesDirectory", view))},
        {"!STARTUP FOLDER!", SpecialFolder(CSIDL_COMMON_STARTUP)},
        {"!TEMP!", "{temp}"},
        {"!INSTALL_BASE!", On64BitWindows() ? ".\\System32\\64" : ".\\System32"},
        {"!ISD_OEM!", ".\\isdoem.dat"},
        {"!ROUTERFILTER_NAME!", "tavixrouterfilter"},
    });
}

TEST(Macros, TheTwoViewsOfTheProgramFolders)
{
    if (!On64BitWindows()) {
        GTEST_SKIP() << "needs the two views of a 64-bit Windows";
    }
    const std::string folder32 = ReadRegText(HKEY_LOCAL_MACHINE, kCurrentVersion, "ProgramFilesDir", EView32);
    const std::string folder64 = ReadRegText(HKEY_LOCAL_MACHINE, kCurrentVersion, "ProgramFilesDir", EView64);
    ASSERT_NE(folder32, folder64);
    ExpectExpansions({{"!Program Files!", folder32}, {"!ProgFiles!", folder64}, {"!program files64!", folder64}});
    // Told that this is a 32-bit Windows, all rows are those of the program's own view.
    Package package;
    package.Script("[MAIN]\nVersion=1.10\nPrefType=Pen_Tablet\nLanguages=en\nWIN64_OVERRIDE=0\n[Install]\n"
                   "ExistRedir;[!PROGFILES!]\nExistRedir;[!INSTALL_BASE!]\nIs64;<x>\nNot64;<x>\n<x>NULL");
    EXPECT_TRUE(HasInOrder(package.Run(),
                           {"[" + folder32 + "] does*", "[.\\System32] does*", ", Not Ink", ", Is Not Ink goto step"}));
}

TEST(Macros, MissingProgramFolderIsTheName)
{
    const RegistrySnapshot snapshot(HKEY_LOCAL_MACHINE, kCurrentVersion);
    RemoveValue(HKEY_LOCAL_MACHINE, kCurrentVersion, "ProgramFilesDir");
    ExpectExpansions({{"!program files!\\x", "PROGRAM FILES\\x"}});
}

TEST(Macros, MarksAndNames)
{
    ExpectExpansions({{"!temp!foo", "{temp}foo"},
                      {"!NOSUCH!\\file", "NOSUCH\\file"},
                      {"!noSuch!", "noSuch"},
                      {"! TEMP!", " TEMP"},
                      {"a!!b", "a!b"},
                      {"!!TEMP!!", "!TEMP!"},
                      {"50%!", "50%!"},
                      {"a^b", "a^b"},
                      {"!PRODUCT_NAME!!X!", "!X!"}, // empty without a tablet, which hides the mark behind it
                      {"!PRODUCT_NAME!a!APP VERSION!", "a5.3.5-5"},
                      {"^KEY^", "KEY"},
                      {"^Title^ ^title^", "Tablet Tablet"}, // keys of the platform's files have no case
                      {"^^", "^"},
                      {"^Temp^x", "{temp}x"},
                      {"^Hats^", "a^Title^b"},
                      {"^Reserved^", "Reserved"},
                      {"^Empty^", ""}},
                     "[en]\nTitle=Tablet\nTemp=!TEMP!\nHats=a^Title^b\nReserved=Thisis_anEmptySTRING\nEmpty=\n");
}

TEST(Macros, UnpairedMarksAreReported)
{
    Package package;
    package.Steps("ExistRedir;50%!\nExistRedir;a^b\nExistRedir;a!!b^^");
    const RunResult run = package.Run();
    EXPECT_TRUE(HasInOrder(run, {"endBang != std::string::npos", "50%! does not Exist", "endHat != std::string::npos",
                                 "a^b does not Exist", "a!b^ does not Exist"}));
    EXPECT_EQ(CountRecords(run, "end* != std::string::npos"), 2u);
}

TEST(Macros, HidRouterNameTellsWindows8)
{
    SKIP_UNLESS_WINE();
    for (const auto &[name, value] :
         {std::make_pair("win7", "tvxhidrouter_isd"), std::make_pair("win8", "tvxhidrouter_isd_win8"),
          std::make_pair("win81", "tvxhidrouter_isd_win8")}) {
        const WindowsVersion version(name);
        ExpectExpansions({{"!HIDROUTER_NAME_ISD!", value}});
    }
}

TEST(Macros, WordsComeFromTheSectionOfTheLanguage)
{
    Package package;
    package.Script("[MAIN]\nVersion=1.10\nPrefType=Pen_Tablet\nLanguages=en;zh_CN\n[Install]\nExistRedir;[^Key^]\n"
                   "[en]\nKey=english\n[zh_CN]\nKey=chinese\n");
    EXPECT_TRUE(Has(package.Run(), "[english] does*"));
    EXPECT_TRUE(Has(package.Run("L2052"), "[chinese] does*"));
}

// On a 32-bit Windows there is no such folder, and one view.
TEST(MacrosWin32Prefix, FoldersOfA32BitWindows)
{
    ASSERT_FALSE(On64BitWindows());
    const std::string programs = ReadRegText(HKEY_LOCAL_MACHINE, kCurrentVersion, "ProgramFilesDir");
    ExpectExpansions(
        {{"!WOW64!", ""}, {"!PROGFILES!", programs}, {"!PROGRAM FILES!", programs}, {"!INSTALL_BASE!", ".\\System32"}});
}

} // namespace
