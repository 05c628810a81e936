#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "Pack/Deployment.h"
#include "Pack/ExitCodes.h"
#include "Pack/ExitCommand.h"
#include "Pack/ProfileReader.h"
#include "Pack/TraceCommand.h"
#include "Pack/TraceRun.h"
#include "Tables.h"

namespace {

std::string VerdictOf(const std::string &text)
{
    const size_t colon = text.find(": ");
    const std::string command = text.substr(0, colon);
    std::string reason, rest = text.substr(colon + 2);
    TraceFinding finding;
    for (size_t at = 0; at != std::string::npos;) {
        const size_t end = rest.find(" & ", at);
        TraceRecord record;
        record.mMessage = rest.substr(at, end - at);
        finding = JudgeRecord(command, record, reason);
        at = end == std::string::npos ? end : end + 3;
    }
    constexpr const char *kWords[] = {"nothing", "note", "waits", "failed"};
    const bool nothing = finding.mVerdict == ETraceVerdict::ENothing;
    return kWords[static_cast<int>(finding.mVerdict)] + (nothing                ? ""
                                                         : finding.mWhy.empty() ? ","
                                                                                : ", " + finding.mWhy);
}

std::string MeaningOf(const std::string &text)
{
    const auto code = ParseExitCode(text);
    if (!code) {
        return "none";
    }
    std::string words;
    for (const ExitMeaning &meaning : MeaningsOf(*code)) {
        words += (words.empty() ? "" : " ") +
                 std::string(meaning.mSilent && meaning.mWindowed ? ""
                             : meaning.mSilent                    ? "s: "
                                                                  : "w: ") +
                 meaning.mWords;
    }
    const std::string crash = WordsOfCrash(*code);
    return words + (crash.empty() ? "" : "crash: " + crash);
}

std::string Report(const std::string &trace, bool page, int *result_O = nullptr)
{
    std::istringstream stream(trace);
    std::ostringstream out, error;
    CPackConsole console{out, error};
    TraceOptions options;
    options.mFile = "folder/x.txt";
    const int result = ReportTrace(stream, options, page, console);
    if (result_O != nullptr) {
        *result_O = result;
    }
    return out.str() + error.str();
}

// Two processes write one file, one over midnight; a thread of a window between; bytes that a terminal would obey; a
// value of several lines; the second process is killed.
const std::string kTrace = "of an earlier file\r\n"
                           "23:59:59.900 -- 00010/00011 -- Sending trace to file x.txt\r\n"
                           "23:59:59.900 -- 00010/00011 -- TAVIXSETUP.EXE 11/23/2026 23:59\r\n"
                           "23:59:59.900 -- 00010/00011 -- OSPlatform Windows 7\r\n"
                           "23:59:59.900 -- 00010/00011 -- Silent install requested\r\n"
                           "23:59:59.900 -- 00010/00011 -- Using mCommand Install; ink yes, TE no, 64 yes\r\n"
                           "23:59:59.910 -- 00010/00011 -- Executing steps for group Install\r\n"
                           "23:59:59.910 -- 00010/00011 -- Instruction CopyFile\r\n"
                           "00:00:00.150 -- 00010/00012 -- Created No 5\r\n"
                           "00:00:00.160 -- 00020/00021 -- REMOVE.EXE 11/24/2026 0:0\r\n"
                           "00:00:00.160 -- 00010/00011 -- Source .\\\x1B[2J\xE4, Destination <script>\r\n"
                           "00:00:00.160 -- 00010/00011 -- , New, Copied No 5\r\n"
                           "00:00:01.410 -- 00010/00011 -- Instruction RegValueString\r\n"
                           "00:00:01.410 -- 00010/00011 -- Key: a, Name: b, Value: c\r\nd, Perms: , status: 0x0\r\n"
                           "00:00:01.411 -- 00020/00021 -- Instruction SetRebootFlag\r\n"
                           "00:00:01.411 -- 00020/00021 -- Reboot requested from the script\r\n"
                           "00:00:01.420 -- 00010/00011 -- [Response Result]\r\n"
                           "00:00:01.420 -- 00010/00011 -- Resultcode=2\r\n";

} // namespace

TEST(PackTrace, TellsWhatEachRecordMeans)
{
    ExpectTable("trace-verdict", VerdictOf);
}

TEST(PackTrace, ReportsTheRunsOfAFileAndHidesWhatATerminalWouldObey)
{
    int result = -1;
    EXPECT_EQ(Report(kTrace, false, &result), R"(Run of 23:59:59.900, process 10, line 2
  program: TAVIXSETUP.EXE 11/23/2026 23:59
  Windows: Windows 7
  group: Install, silent
  group Install
  23:59:59.910      1.50 s ! CopyFile  Source .\\x1B[2Jä, Destination <script>: New, Copied No 5
  00:00:01.410       10 ms   RegValueString  Key: a, Name: b, Value: c d, Perms: , status: 0x0

Failed: 1 step
  line 8: CopyFile  Source .\\x1B[2Jä, Destination <script>
      , New, Copied No 5 -- the record does not tell why; the last error before the step was 5 (access is denied)

Worth a look: 1 record
  line 9: Created No 5 -- the record does not tell why; the last error before the step was 5 (access is denied)

Slowest steps
  23:59:59.910      1.50 s ! CopyFile  Source .\\x1B[2Jä, Destination <script>: New, Copied No 5
  00:00:01.410       10 ms   RegValueString  Key: a, Name: b, Value: c d, Perms: , status: 0x0

End
  2 steps in 1.52 s, 1 failed. Exit code 2: Done. Windows has to be restarted before all of it takes effect.

Run of 00:00:00.160, process 20, line 10
  program: REMOVE.EXE 11/24/2026 0:0
  00:00:01.411        0 ms ~ SetRebootFlag  Reboot requested from the script

Waits for the restart: 1 step
  line 16: SetRebootFlag  Reboot requested from the script
      this -- the script asks for the restart

End
  1 step in 1.25 s, none of them failed. The trace has no end: the run still goes on, was killed, or crashed. Its last record: Reboot requested from the script
)");
    EXPECT_EQ(result, kPackFound);
}

TEST(PackTrace, APageHoldsTheTraceAsText)
{
    const std::string page = Report(kTrace, true);
    EXPECT_NE(page.find("\xC3\xA4, Destination &lt;script&gt;"), std::string::npos) << page;
    EXPECT_EQ(page.find("<script"), std::string::npos);
}

TEST(PackTrace, AFileWithoutRecordsIsNone)
{
    int result = -1;
    EXPECT_EQ(Report("", false, &result), "tavixpack: folder/x.txt holds no records\n");
    EXPECT_EQ(result, kPackUnreadable);
}

TEST(PackExit, SaysWhatACodeMeans)
{
    ExpectTable("exit-code", MeaningOf);
}

TEST(PackExit, TheManualHasThePageOfEachSystem)
{
    const std::string manual =
#include "DeploymentText.h"
        ;
    for (const std::string &system : DeploymentSystems()) {
        EXPECT_NE(manual.find(DeploymentPage(system)), std::string::npos)
            << "put what tavixpack exit --for " << system << " writes into docs/deployment.md";
    }
}

TEST(PackReader, TellsWhereEachPieceStands)
{
    const std::string text = "; c\r\n\r[ a ]\n  k\xE4y =  v\r\nx\r\n=";
    std::string wide = "\xFF\xFE";
    for (const char c : text) {
        wide += {c, '\0'};
    }
    const auto places = [](const std::string &bytes) {
        std::string all;
        const CProfileFile file(bytes, CCodePage());
        for (const ProfileSection &section : file.Sections()) {
            const auto add = [&](const ProfilePlace &place) {
                all += " " + std::to_string(place.mLine) + ":" + std::to_string(place.mColumn);
            };
            add(section.mPlace);
            for (const ProfileLine &line : section.mLines) {
                add(line.mKeyPlace);
                add(line.mValuePlace);
            }
        }
        return all + " of " + std::to_string(file.LineCount());
    };
    EXPECT_EQ(places(text), " 0:0 1:1 0:0 3:1 4:3 4:10 5:1 0:0 6:1 6:1 of 6");
    EXPECT_EQ(places(wide), " 0:0 1:3 0:0 3:1 4:5 4:19 5:1 0:0 6:1 6:1 of 6");
    EXPECT_EQ(places(""), " 0:0 of 0");
    EXPECT_EQ(CProfileFile(text, CCodePage()).LineText(4), "  k\xE4y =  v");
}

TEST(PackReader, FindsFilesInAnyCaseAndOnlyInsideThePackage)
{
    namespace fs = std::filesystem;
    const fs::path folder = fs::temp_directory_path() /
                            ("tavixpack" + std::to_string(::testing::UnitTest::GetInstance()->start_timestamp()));
    fs::create_directories(folder / "package" / "Sub");
    std::ofstream(folder / "package" / "Sub" / "File.dat") << "[a]\nk=v\n";
    std::ofstream(folder / "outside.dat") << "x";
    CPackageFolder package(folder / "package", "C:\\Package");
    const auto found = [&](const char *path) {
        const auto file = package.Find(path);
        return !file ? "no" : file->mOtherCase ? "other case" : "yes";
    };
    EXPECT_STREQ(found(".\\Sub\\File.dat"), "yes");
    EXPECT_STREQ(found("sub/FILE.DAT"), "other case");
    EXPECT_STREQ(found("c:\\package\\.\\Sub\\..\\Sub\\File.dat. "), "yes");
    EXPECT_STREQ(found("..\\outside.dat"), "no");
    EXPECT_STREQ(found("C:\\Sub\\File.dat"), "no");
    EXPECT_STREQ(found("C:\\Packages\\Sub\\File.dat"), "no");
    EXPECT_STREQ(found("Sub\\none"), "no");
    // A file without a folder in its path is one of Windows to the profile functions, although it can be opened.
    CProfileReader reader(package);
    char value[8] = "";
    EXPECT_EQ(reader.ReadValue(".\\sub\\file.dat", "A", "K", "", value, sizeof value), 1u);
    EXPECT_FALSE(reader.CanOpen("sub"));
    std::ofstream(folder / "package" / "bare.dat") << "[a]\nk=v\n";
    EXPECT_TRUE(reader.CanOpen("bare.dat"));
    EXPECT_EQ(reader.ReadValue("bare.dat", "a", "k", "", value, sizeof value), 0u);
    fs::remove_all(folder);
}
