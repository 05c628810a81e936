// Runs with a window, and a person at it. The words of the pages are their keys, so that a page tells which it is.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <functional>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

#include "Fixture.h"
#include "Person.h"
#include "WithoutRights.h"

namespace {

std::string Words()
{
    std::string words = "[en]\nOkText=OK\nYesText=&Yes\nNoText=&No\nRebootNowText=&Now\nRebootLaterText=Later\n"
                        "AcceptText=&Accept\nDeclineText=&Decline\nLicenseText1=Above\nLicenseText2=Below\n"
                        "InstallProgress=Wait\nLicenseFile=!TEMP!..\\\\agreement.txt\n";
    for (const char *const page : {"License", "Progress", "UnConfirm", "NonAdmin", "RebootBefore", "NotSupported",
                                   "NoISDHardware", "PreSplit", "UnReboot", "Reboot", "Done"}) {
        words += std::string(page) + "Title=" + page + "\n" + page + "Text=about " + page + "\n";
    }
    return words;
}

// A script with these steps and words.
std::string WindowScript(const std::string &steps, const std::string &main = "PrefType=Pen_Tablet",
                         const std::string &words = Words())
{
    return "[MAIN]\nVersion=1.10.01\nLanguages=en\n" + main + "\n[Install]\n" + steps + "\n[Uninstall]\n" + steps +
           "\n" + words;
}

// Runs the package while a person does these moves.
RunResult RunWith(Package &package, const std::string &tail, const std::string &moves)
{
    RunningSetup run = package.Start(tail);
    EXPECT_TRUE(Person(moves)) << tail;
    return run.Wait(60000);
}

// From the first page to the last, a run a line: exit code, how often the group ran, options, steps, and what a person
// does. Real keys; one press is one click, so that a group never runs twice. A window that is closed in the middle of
// the work takes the steps with it.
constexpr char kFlows[] = R"(
16 0  NULL  press Return; gone
16 0  NULL  press Escape; gone
0 0  NULL  press Tab Left Right Up; sees 132 &Decline 298 295 170 30 focus; close; gone
0 1  NULL  press Alt+A; sees Done 480x205|0 about Done 5 38 464 64|130 OK 152 130 170 30 focus|!129|!Wait; press Tab Right; sees 130 OK 152 130 170 30 focus; press Escape; gone
2 1  SetRebootFlag  click 129; sees Reboot 480x205|131 &Now 6 130 170 30 focus|130 Later 298 130 170 30; press Escape; gone
0 1 /suppress-error SetRebootFlag  click 129; sees Reboot; press Tab; sees 130 Later 298 130 170 30 focus; press Return; gone
2 1  SetRebootFlag  click 129; sees Reboot; close; gone
0 1 /u NULL  press Return; sees UnReboot 480x205|131 &Now|130 Later; press Tab Tab Tab Return; gone
0 0 /u NULL  press Tab; sees 130 &No 298 130 170 30 focus; press Return; gone
0 1 /u NULL  press Left Right Tab Tab Return; sees UnReboot; press Escape; gone
0 0 /u/agree NULL  press Tab Space; gone
0 0 /u NULL  close; gone
2 1 /u/from-ife SetRebootFlag  press Y; sees UnReboot; press L; press Escape; gone
2 1 /from-ife SetRebootFlag  click 129; gone
2 1 /agree Break,SetRebootFlag  sees Progress 480x215|0 Wait 5 60 474 40|0  5 80 464 20|!129|!130|!132; press Return Escape; break; sees Reboot|!Wait; press Escape; gone
0 1 /agree Delay;90000,SetRebootFlag  sees Progress; press Alt+F4; gone
0 1  ShowDialog;5,Break  press Alt+A; sees Progress; break; sees Done; press Space; gone
)";

TEST(Window, RunsFromTheFirstPageToTheLast)
{
    std::istringstream flows(kFlows + 1);
    for (std::string flow; std::getline(flows, flow);) {
        std::smatch parts;
        ASSERT_TRUE(std::regex_match(flow, parts, std::regex("(\\d+) (\\d) (\\S*) (\\S+)  (.*)"))) << flow;
        const std::string options = parts[3];
        Package package;
        package.Script(WindowScript(std::regex_replace(parts[4].str(), std::regex(","), "\n")));
        const char *const first = options.compare(0, 2, "/u") == 0
                                      ? "sees UnConfirm 480x205|129 &Yes 6 130 170 30 focus|130 &No 298 130 170 30; "
                                  : options == "/agree" ? ""
                                                        : "sees License 480x370|132 &Decline 298 295 170 30 focus; ";
        const RunResult run = RunWith(package, options, first + parts[5].str());
        EXPECT_EQ(std::to_string(run.mExitCode), parts[1]) << flow;
        EXPECT_EQ(run.mOutputFile.value_or("none"), parts[1]) << flow;
        EXPECT_EQ(std::to_string(CountRecords(run, "DoWorkByThread")), parts[2]) << flow;
        EXPECT_EQ(std::to_string(CountRecords(run, "Executing steps for group *")), parts[2]) << flow;
        EXPECT_TRUE(Lacks(run, "!mhWnd") && Lacks(run, "mpButtonProc*") && Lacks(run, "mFocusButton")) << flow;
    }
}

// What stops a run in front of its steps. Whoever closes the page gets a number that the silent run does not give.
TEST(Window, NoticesEndWithoutTheWork)
{
    SKIP_UNLESS_WINE();
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\vhidmini");
    WriteValue(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\vhidmini", "DisplayName",
               RegText("Tavix Virtual Hid driver"));
    Package package;
    package.Script(WindowScript("NULL"));
    RunResult run = RunWith(package, "",
                            "sees RebootBefore 480x205|131 &Now 6 130 170 30 focus|about RebootBefore;"
                            "press Right Return; gone");
    EXPECT_EQ(run.mExitCode, 10u);
    EXPECT_TRUE(Lacks(run, "DoWork*"));

    package.Script(WindowScript("NULL", "PrefType=ISD_Tablet\nISD=1"));
    run = RunWith(package, "", "sees NoISDHardware 480x205|130 OK 152 130 170 30 focus|about NoISD; click 130; gone");
    EXPECT_EQ(run.mExitCode, 64u);

    package.Script(WindowScript("NULL"));
    const WindowsVersion xp("winxp64");
    ::testing::AssertionResult person = ::testing::AssertionSuccess();
    std::thread thread([&person] { person = Person("sees NonAdmin|130 OK 152 130 170 30 focus; press Return; gone"); });
    EXPECT_EQ(RunWithoutRights(package, "", false).mParent.mExitCode, 0u);
    thread.join();
    EXPECT_TRUE(person);
}

// An old driver of a desk tablet is told about at the end, when such a tablet was ever there.
TEST(Window, APackageForBuiltInTabletsFindsAnOldDriverOfADeskTablet)
{
    SKIP_UNLESS_WINE();
    const std::string usb = "SYSTEM\\CurrentControlSet\\Enum\\USB";
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, usb);
    const std::string old = "C:\\Program Files\\VTouch";
    const std::shared_ptr<void> later(nullptr, [&old](void *) { RemoveTree(old); });
    EXPECT_TRUE(WriteText(old + "\\Remove.exe", "without a version"));
    const char *const kEnds[][2] = {
        {"NULL", "sees Done; press Return; gone"},
        {"NULL", "sees PreSplit 480x205|130 OK 152 130 170 30 focus|about PreSplit|!131; press Return; gone"},
        {"SetRebootFlag",
         "sees PreSplit 480x205|131 &Now 6 130 170 30 focus|130 Later 298 130 170 30; press Escape; gone"},
    };
    RemoveKey(HKEY_LOCAL_MACHINE, usb);
    for (const auto &[step, end] : kEnds) {
        Package package;
        package.Script(
            WindowScript(step, "PrefType=ISD_Tablet\nISD=1", Words() + "[STATIC_FLAGS]\nNOHARDWARE_OVERRIDE=1\n"));
        EXPECT_EQ(RunWith(package, "/agree", end).mExitCode, *step == 'S' ? 2u : 0u);
        CreateKey(HKEY_LOCAL_MACHINE, usb + "\\VID_7A1C&PID_0118");
    }
}

TEST(WindowWin32Prefix, AnUnsupportedWindowsIsTold)
{
    const WindowsVersion old("win2k");
    Package package;
    package.Script(WindowScript("NULL"));
    EXPECT_EQ(RunWith(package, "", "sees NotSupported|130 OK 152 130 170 30 focus; press Escape; gone").mExitCode, 1u);
}

// Puts code in the place of ExitWindowsEx of a running process: it notes what it is called with and waits to be let go.
// No machine restarts.
class RestartCatcher {
public:
    explicit RestartCatcher(HANDLE process) : mProcess(process)
    {
        mPage = static_cast<char *>(
            VirtualAllocEx(process, nullptr, 4096, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
        std::string code = "\x8B\x44\x24\x04\xA3" + Address(kNotes) +          // mov eax, [esp + 4]; mov [notes], eax
                           "\x8B\x44\x24\x08\xA3" + Address(kNotes + 4) +      // the same with the second argument
                           std::string("\xFF\x05", 2) + Address(kNotes + 8) +  // inc dword [calls]
                           std::string("\x83\x3D", 2) + Address(kNotes + 12) + // cmp dword [free], 0
                           std::string("\x00\x74\xF7\x31\xC0\xC2\x08\x00", 8); // je back; xor eax, eax; ret 8
        Write(mPage, code);
        char *const entry = reinterpret_cast<char *>(GetProcAddress(GetModuleHandleA("user32.dll"), "ExitWindowsEx"));
        const INT_PTR distance = mPage - entry - 5;
        Write(entry, "\xE9" + std::string(reinterpret_cast<const char *>(&distance), sizeof distance));
    }

    // Waits for the call, lets it go, and answers "flags reason".
    std::string Caught()
    {
        DWORD notes[4] = {};
        for (int tries = 0; notes[2] == 0 && tries < 1000; ++tries) {
            Sleep(20);
            ReadProcessMemory(mProcess, mPage + kNotes, notes, sizeof notes, nullptr);
        }
        Write(mPage + kNotes + 12, std::string("\x01\0\0\0", 4));
        std::ostringstream text;
        text << notes[2] << " call: " << notes[0] << ' ' << std::hex << notes[1];
        return text.str();
    }

private:
    static constexpr int kNotes = 256;

    std::string Address(int offset) const
    {
        const char *const address = mPage + offset;
        return std::string(reinterpret_cast<const char *>(&address), sizeof address);
    }
    void Write(char *place, const std::string &bytes) const
    {
        DWORD former = 0;
        EXPECT_TRUE(VirtualProtectEx(mProcess, place, bytes.size(), PAGE_EXECUTE_READWRITE, &former));
        EXPECT_TRUE(WriteProcessMemory(mProcess, place, bytes.data(), bytes.size(), nullptr));
        FlushInstructionCache(mProcess, place, bytes.size());
    }

    HANDLE mProcess;
    char *mPage;
};

TEST(Window, ARestartIsAskedOfWindowsBehindTheOutputFile)
{
    for (const char *const tail : {"/u", "/suppress-error"}) {
        Package package;
        package.Script(WindowScript("SetRebootFlag"));
        RunningSetup run = package.Start(tail);
        EXPECT_TRUE(Person("press Alt+Y; press Alt+A; sees &Now"));
        RestartCatcher catcher(run.Process());
        EXPECT_TRUE(Person("press Return; gone"));
        EXPECT_EQ(catcher.Caught(), "1 call: 2 80010002"); // EWX_REBOOT; planned, hardware, installation
        EXPECT_EQ(run.Wait().mOutputFile.value_or("none"), *tail == '/' && tail[1] == 'u' ? "2" : "0");
    }
}

// Positions of the bar while each step of three runs; the box of Break holds the run.
TEST(Window, TheBarCreepsWithinAStepAndJumpsAtItsEnd)
{
    Package package;
    package.Script(WindowScript("Break\nBreak\nDONE"));
    RunningSetup run = package.Start("/agree");
    EXPECT_TRUE(Person("sees Progress; bar 2"));
    const HWND bar = ControlOnScreen(0);
    EXPECT_EQ(SendMessageA(bar, PBM_GETRANGE, TRUE, 0), 0);
    EXPECT_EQ(SendMessageA(bar, PBM_GETRANGE, FALSE, 0), 500);
    EXPECT_LT(SendMessageA(bar, PBM_GETPOS, 0, 0), 125);
    EXPECT_TRUE(Person("break; bar 126"));
    EXPECT_LT(SendMessageA(bar, PBM_GETPOS, 0, 0), 250);
    std::set<LRESULT> colours; // by PBM_GETBARCOLOR, which came with Windows Vista
    for (int look = 0; look < 200 && colours.size() < 2; ++look) {
        colours.insert(SendMessageA(bar, WM_USER + 15, 0, 0));
        Sleep(20);
    }
    EXPECT_EQ(colours, (std::set<LRESULT>{static_cast<LONG>(CLR_DEFAULT), 0x0083003B}));
    EXPECT_TRUE(Person("break; sees Done; press Return; gone"));
    EXPECT_EQ(run.Wait().mExitCode, 0u);
}

// Sizes beyond their bounds: what stands outside is reported and there all the same.
TEST(Window, SizesOfTheScriptAreTakenAsTheyAre)
{
    Package package;
    package.Script(WindowScript("NULL", "PrefType=Pen_Tablet",
                                Words() +
                                    "ButtonWidth=300\nButtonHeight=40\nTextHeight=20\nTextMargin=-1\n"
                                    "FontCharSet=134\nFontFaceName=" +
                                    std::string(40, 'F')));
    const RunResult run = RunWith(package, "",
                                  "sees 129 &Accept -6 285 237 40|132 &Decline 231 285 237 40 focus|"
                                  "0 Below 55 201 364 84|0 Above 55 5 364 84|128  5 66 464 112;"
                                  "click 129; sees 130 OK 152 120 170 40 focus|0 about Done 55 9 364 112;"
                                  "press Return; gone");
    EXPECT_EQ(CountRecords(run, "x >= 0"), 1u);
}

// Styles of the window, and class and style of each control in the order of their making. Less what Windows changes by
// itself: the button that Return would press, the scroll bar of a text that is short.
std::string Styles()
{
    const HWND window = InstallerWindowOnScreen();
    std::ostringstream styles;
    styles << std::hex << GetWindowLongA(window, GWL_STYLE) << ' ' << GetWindowLongA(window, GWL_EXSTYLE);
    for (HWND control = GetWindow(window, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT)) {
        char name[64] = "";
        GetClassNameA(control, name, sizeof name);
        const LONG own = std::string(name) == "Button" ? BS_DEFPUSHBUTTON : 0;
        styles << ", " << name << ' ' << (GetWindowLongA(control, GWL_STYLE) & ~own & ~WS_VSCROLL);
    }
    return styles.str();
}

TEST(Window, StylesOfWhatItShows)
{
    Package package;
    package.Script(WindowScript("Delay;1500"));
    RunningSetup run = package.Start("");
    EXPECT_TRUE(Person("sees License|128 "));
    EXPECT_EQ(GetClassLongA(InstallerWindowOnScreen(), GCL_STYLE), DWORD{CS_HREDRAW | CS_VREDRAW});
    EXPECT_EQ(Styles(), "14c00000 10100, Button 50034f00, Button 50034f00, Static 50000000, Static 50000000, "
                        "RichEdit20A 50800804");
    EXPECT_TRUE(Person("press Alt+A; sees Progress 480x215|Wait"));
    EXPECT_EQ(Styles(), "14c00000 10100, msctls_progress32 50000000, Static 50000001");
    EXPECT_TRUE(Person("sees Done|about"));
    EXPECT_EQ(Styles(), "14c00000 10100, Button 50034f00, Static 50000001");
    EXPECT_TRUE(Person("press Return; gone"));
    EXPECT_EQ(run.Wait().mExitCode, 0u);
}

struct Agreement {
    std::string mContent;
    const char *mMoves;
    const char *mTrace;
};

// What a file may hold, or not; the page stands and accepts all the same.
TEST(Window, AnAgreementOfAnyKindLeavesThePageStanding)
{
    std::string large;
    while (large.size() < 5 << 20) {
        large += "A line of a very long agreement, and one more of them.\r\n";
    }
    std::string lines;
    for (int line = 1; line <= 99; ++line) {
        lines += "line " + std::to_string(line) + "\r\n";
    }
    const Agreement kAgreements[] = {
        {"", "sees 128  5 42 464 194", "fileSize > 0"},
        {"plain text", "sees 128 plain text 5", "fileSize = 10"},
        {"{\\rtf1\\ansi {\\b Rich} text\\par}", "sees 128 Rich text", "fileSize = 31"},
        {std::string("bin\0ary\xFF\x01", 9), "sees 128 bin 5", "fileSize = 9"},
        {large, "sees 128 A line of", "fileSize = *"},
        {"{\\rtf1" + std::string(3000, '{'), "sees 128 ", "fileSize = 3006"},
        {lines, "sees 128 line 1/line 2/", "fileSize = 882"},
    };
    for (const Agreement &agreement : kAgreements) {
        Package package;
        package.Script(WindowScript("NULL")).File("..\\agreement.txt", agreement.mContent);
        const RunResult run =
            RunWith(package, "", std::string(agreement.mMoves) + "; click 129; sees Done; press Return");
        EXPECT_EQ(run.mExitCode, 0u) << agreement.mTrace;
        EXPECT_TRUE(Has(run, agreement.mTrace));
        DeleteFileA(package.Path("..\\agreement.txt").c_str());
    }
    Package package;
    package.Script(WindowScript("NULL")).File("..\\agreement.txt", lines);
    {
        const LockedFile locked(package.Path("..\\agreement.txt"));
        EXPECT_TRUE(Lacks(RunWith(package, "", "sees 128  5 42; press Return; gone"), "fileSize = *"));
    }
    // The keys and the wheel scroll it while a button keeps the focus.
    RunningSetup run = package.Start("");
    const auto firstLine = [] { return SendMessageA(ControlOnScreen(128), EM_GETFIRSTVISIBLELINE, 0, 0); };
    const auto behind = [&firstLine](const char *moves) {
        EXPECT_TRUE(Person(moves));
        const LRESULT former = firstLine();
        LRESULT line = former;
        for (int stable = 0; stable < 25; stable = line == firstLine() ? stable + 1 : 0, line = firstLine()) {
            Sleep(10);
        }
        return line;
    };
    EXPECT_EQ(behind("sees 128 line 1/; press Down Down Down"), 3);
    EXPECT_EQ(behind("press Up"), 2);
    EXPECT_EQ(behind("wheel -3"), 5);
    EXPECT_EQ(behind("wheel 1"), 4);
    const LRESULT page = behind("press PageDown");
    EXPECT_GT(page, 8);
    EXPECT_EQ(behind("press PageUp"), 4);
    EXPECT_GT(behind("press End"), page);
    EXPECT_EQ(behind("press Home"), 0);
    SetFocus(nullptr);
    EXPECT_TRUE(Person("click 128; sees 132 &Decline 298 295 170 30 focus; press Return; gone"));
    EXPECT_EQ(run.Wait().mExitCode, 16u);
    DeleteFileA(package.Path("..\\agreement.txt").c_str());
}

TEST(Window, WordsThatAreMissingOrLong)
{
    Package package;
    package.Script(WindowScript("NULL", "PrefType=Pen_Tablet", "[other]\n"));
    RunWith(package, "",
            "sees Installer 480x370|129 _AcceptText_|132 _DeclineText_|0 _LicenseText1_|0 _LicenseText2_|"
            "128  5 42; click 129; sees Installer 480x205|130  152 130 170 30 focus; press Return; gone");
    const std::string longText(10000, 'x');
    package.Script(WindowScript("NULL", "PrefType=Pen_Tablet",
                                "[en]\nLicenseTitle=" + longText + "\nLicenseText1=" + longText + "\nLicenseText2=" +
                                    longText + "\nAcceptText=" + longText + "\nLicenseFile=" + longText));
    EXPECT_EQ(RunWith(package, "",
                      "sees " + longText + " 480x370|129 " + longText +
                          "; click 129; sees 130  152 130 170 30 focus;"
                          "press Return; gone")
                  .mExitCode,
              0u);
    // The dialog data file has words and sizes that the script lacks.
    package.Script(WindowScript("NULL", "PrefType=Pen_Tablet\nDialogData=.\\\\dialog.dat", "[en]\nAcceptText=Yes"));
    package.File("dialog.dat", "[en]\r\nDeclineText=No\r\nButtonWidth=100\r\n");
    RunWith(package, "", "sees 129 Yes 268 295 100 30|132 No 368 295 100 30; press Return; gone");
    // A title's default goes with the first file that cannot be opened; buttons stay.
    package.Script(WindowScript("NULL", "PrefType=Pen_Tablet\nInclude=none.dat", "[en]\nDoneText=done"));
    RunWith(package, "",
            "sees 480x370|129  128 295|!_AcceptText_|!Installer; click 129; sees done|!Installer; press Return; gone");
}

// A page of the walk: the words of a sample package under its title's key, and its buttons.
struct WalkedPage {
    const char *mTitle;
    std::vector<std::pair<int, const char *>> mButtons;
};

std::string Word(const std::string &file, const std::string &language, const std::string &key, UINT codePage)
{
    char text[4096];
    GetPrivateProfileStringA(language.c_str(), key.c_str(), "(missing)", text, sizeof text, file.c_str());
    wchar_t wide[4096];
    char utf8[12288];
    MultiByteToWideChar(codePage, 0, text, -1, wide, 4096);
    WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8, sizeof utf8, nullptr, nullptr);
    std::string word;
    for (const char *at = utf8; *at != '\0'; ++at) {
        word += at[0] == '\\' && at[1] == 'n' ? (++at, "/") : std::string(1, *at);
    }
    return word;
}

// Whether a page has room for a text, "/" for a line end, where Windows shows 144 points an inch.
bool FitsAt144(const std::string &text, int points, const std::string &face, bool chinese)
{
    std::wstring wide(text.size() + 1, L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
    std::replace(wide.begin(), wide.end(), L'/', L'\n');
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = CreateFontA(-points * 2, 0, 0, 0, 400, 0, 0, 0, chinese ? GB2312_CHARSET : ANSI_CHARSET, 0, 0, 0,
                                   0, face.c_str());
    SelectObject(dc, font);
    RECT room = {0, 0, (237 - 15) * 2, 0};
    DrawTextW(dc, wide.c_str(), -1, &room, DT_CALCRECT | DT_WORDBREAK | DT_CENTER);
    DeleteDC(dc);
    DeleteObject(font);
    return room.bottom <= 8 * points;
}

TEST(Window, TheWalkShowsEveryPageOfTheSamplesInTheirLanguagesAndRunsNoStep)
{
    SKIP_UNLESS_WINE();
    const std::vector<std::pair<int, const char *>> yesNo = {{129, "YesText"}, {130, "NoText"}};
    const std::vector<std::pair<int, const char *>> restart = {{131, "RebootNowText"}, {130, "RebootLaterText"}};
    const std::vector<std::pair<int, const char *>> ok = {{130, "OkText"}};
    const std::vector<WalkedPage> kWalk = {{"UnConfirm", yesNo}, {"Reboot", restart},   {"NonAdmin", ok},
                                           {"UnConfirm", yesNo}, {"UnReboot", restart}, {"RebootBefore", restart},
                                           {"NotSupported", ok}, {"NoISDHardware", ok}, {"PreSplit", ok}};
    Settings settings;
    settings.Number("DialogTesting", 1);
    settings.Number("SILENT", 1); // is not looked at
    for (const char *const sample : {"consumer-pen", "isd"}) {
        for (const bool chinese : {false, true}) {
            Package package;
            const std::string folder = EnvironmentText("TAVIX_PACKAGES") + "\\" + sample;
            for (const std::string &name : Tree(folder)) {
                if (name.back() != '\\' && !FileExists(package.Path(name))) {
                    package.Copy(folder + "\\" + name, name);
                }
            }
            const std::string file = package.Path(std::string(sample) == "isd" ? chinese ? "zh_CN.dat" : "installer.dat"
                                                  : chinese                    ? "words_zh.dat"
                                                                               : "words.dat");
            const auto word = [&](const std::string &key) {
                return Word(file, chinese ? "zh_CN" : "en", key, chinese ? 936 : 1252);
            };
            package.Language(chinese ? "zh_CN.UTF-8" : "en_US.UTF-8");
            RunningSetup run = package.Start("/s /agree");
            std::string first = "sees " + word(std::string(sample) == "isd" ? "NoISDHardwareTitle" : "LicenseTitle");
            if (std::string(sample) != "isd") {
                first += "|129 " + word("AcceptText") + "|132 " + word("DeclineText") + "|" + word("LicenseText1") +
                         "|" + word("LicenseText2") + (chinese ? "|\xE5\x8D\x8F\xE8\xAE\xAE" : "|Agreement of");
            }
            EXPECT_TRUE(Person(first)) << sample;
            for (const WalkedPage &page : kWalk) {
                std::string sees = "press Escape; sees " + word(std::string(page.mTitle) + "Title") + " 480x205|0 " +
                                   word(std::string(page.mTitle) + "Text");
                sees += page.mButtons[0].first == 131 ? "" : "|!131 ";
                for (const auto &[id, key] : page.mButtons) {
                    sees += "|" + std::to_string(id) + " " + word(key);
                }
                EXPECT_EQ(sees.find("(missing)"), std::string::npos) << sees;
                ASSERT_TRUE(Person(sees)) << sample;
                EXPECT_TRUE(FitsAt144(word(std::string(page.mTitle) + "Text"), std::stoi(word("TextHeight")),
                                      word("FontFaceName"), chinese))
                    << sees;
            }
            EXPECT_TRUE(Person("press Return; gone"));
            const RunResult result = run.Wait();
            EXPECT_TRUE(Lacks(result, "Executing steps*") && Lacks(result, "DoWork*") && Lacks(result, "* requested*"));
        }
    }
}

} // namespace
