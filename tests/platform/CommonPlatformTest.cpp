// Paths, versions, libraries bound at run time, the trace and owners of handles, where only a process itself can see
// them.
#include <windows.h>

#include <cstring>
#include <malloc.h>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Common/ComApartment.h"
#include "Common/FileOwner.h"
#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Common/StringUtilities.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "Common/TraceTimer.h"
#include "Common/WinFileVersion.h"
#include "Common/importWin32API.h"
#include "Files/Directories.h"
#include "Files/FileCopy.h"
#include "Files/FileDelete.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

TEST(Paths, AreJoinedAndCut)
{
    const char *const joins[][3] = {{"", "\\a", "a"},         {"a", "b", "a\\b"}, {"a\\", "\\b", "a\\b"},
                                    {"a", "\\\\b", "a\\\\b"}, {"a\\", "", "a\\"}, {"a\\\\", "b", "a\\\\b"}};
    for (const auto &[left, right, whole] : joins) {
        EXPECT_EQ(JoinPath(left, right), whole) << left << " + " << right;
    }
    const std::string flat = "C:\\" + std::string(32000, 'x');
    const std::string cuts[][4] = {
        {"", "", "", ""},           {"a.b", "", "a.b", ".b"},   {"c:\\x\\a.b.c", "c:\\x", "a.b.c", ".c"},
        {"c:\\a", "c:\\", "a", ""}, {"x.y\\a", "x.y", "a", ""}, {flat + "\\y.z", flat, "y.z", ".z"}};
    for (const auto &[path, directory, name, extension] : cuts) {
        EXPECT_EQ(DirectoryPart(path) + "|" + FindFileName(path) + "|" + FindExtension(path),
                  directory + "|" + name + "|" + extension);
    }
    // In code page 950 A5 5C is one character.
    EXPECT_EQ(FindBackslashes("\\\xa5\\\\x\xa5\\", 950), (std::vector<size_t>{0, 3}));
    EXPECT_EQ(FindBackslashes("\\\xa5\\\\x\xa5\\", 1252), (std::vector<size_t>{0, 2, 3, 6}));
    EXPECT_TRUE(IsRootPath("C:\\") && !IsRootPath("C:\\x"));
}

void MakeWide(const std::wstring &path)
{
    CHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
}

TEST(Paths, NamesThatTheCodePageLacksAreCopiedAndEmptiedByTheirShortOnes)
{
    const CScratchFolder folder;
    const std::wstring from = AnsiToWide(folder.Path("from"));
    bool reboot = false;
    MakeFolders(folder.Path("from"));
    CreateDirectoryW((from + L"\\\x4e2d\x6587 folder").c_str(), nullptr);
    MakeWide(from + L"\\\x4e2d\x6587 folder\\\x4e2d\x6587 file");
    MakeWide(from + L"\\plain");
    EXPECT_TRUE(CopyDirectory(folder.Path("from"), folder.Path("to"), reboot));
    EXPECT_EQ(Tree(folder.Path("to")).size(), 3u);
    EXPECT_TRUE(EmptyDirectory(folder.Path("from"), false));
    EXPECT_TRUE(Tree(folder.Path("from")).empty());
}

TEST(Paths, ADriveIsNotEmptied)
{
    for (const char *root : {"C:\\", "\\", "\\\\", "c:/", "C:\\\\.\\", "C:\\windows\\..", "\\\\?\\C:\\",
                             "\\\\.\\C:", "\\\\server\\share", "\\\\server\\share\\", "\\\\?\\UNC\\server\\share\\"}) {
        EXPECT_TRUE(LeadsToRoot(root)) << root;
    }
    for (const char *below : {"C:\\windows", ".", "\\windows\\", "\\\\?\\C:\\windows", "\\\\server\\share\\x"}) {
        EXPECT_FALSE(LeadsToRoot(below)) << below;
    }
    EXPECT_FALSE(EmptyDirectory("C:\\windows\\..\\", false));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
}

TEST(Paths, FilesKnowTheirOwners)
{
    const CScratchFolder folder;
    const auto open = [&](const std::string &name) {
        return CHandle(CreateFileA(folder.Path(name).c_str(), READ_CONTROL, 7, nullptr, OPEN_EXISTING, 0, nullptr));
    };
    folder.Write("f", "");
    EXPECT_TRUE(IsOwnFile(open("f").Get()) && !IsLinkedFile(open("f").Get()) && !IsOwnFile(nullptr));
    CreateHardLinkA(folder.Path("g").c_str(), folder.Path("f").c_str(), nullptr);
    EXPECT_TRUE(IsLinkedFile(open("g").Get()));
    EXPECT_TRUE(OthersMayWrite(folder.Path("none")));
    EXPECT_FALSE(OthersMayWrite(folder.Path(".")));
}

TEST(Paths, TextKeepsItsCharactersThroughAllEncodings)
{
    const std::wstring wide = std::wstring(L"a\0b", 3) + L"\x00FC\x20AC\x6F22\xD83D\xDE00";
    const std::string utf8 = std::string("a\0b", 3) + "\xC3\xBC\xE2\x82\xAC\xE6\xBC\xA2\xF0\x9F\x98\x80";
    EXPECT_EQ(Utf8ToWide(utf8), wide);
    EXPECT_EQ(WideToUtf8(wide), utf8);
    if (GetACP() == 1252) {
        EXPECT_EQ(AnsiToUtf8("\xFC\x80"), "\xC3\xBC\xE2\x82\xAC");
        EXPECT_EQ(Utf8ToAnsi("\xC3\xBC\xE6\xBC\xA2"), "\xFC?"); // the second is not in the code page
    }
    // What is no UTF-8 comes out as replacement characters between the text around it.
    const std::wstring broken = Utf8ToWide("<\xC3\xFF\xE2\x82>");
    EXPECT_TRUE(broken.front() == L'<' && broken.back() == L'>' && broken.find(L'\xFFFD') != std::wstring::npos);
}

std::vector<int> gClosed;

struct RecordingPolicy {
    using Type = int;
    static Type Empty() { return 0; }
    static bool Owns(Type value) { return value > 0; }
    static void Close(Type value)
    {
        gClosed.push_back(value);
        SetLastError(ERROR_INVALID_HANDLE);
    }
};
using COwnerUnderTest = COwner<RecordingPolicy>;

TEST(Handles, EachValueIsClosedOnceByItsLastOwnerAndTheLastErrorStays)
{
    {
        COwnerUnderTest first(1), second(2), moved(std::move(first)), received(4);
        moved = std::move(second); // 1 goes
        EXPECT_EQ(COwnerUnderTest(3).Release(), 3);
        EXPECT_FALSE(first || COwnerUnderTest(-1));
        *received.Receive() = 5; // 4 goes
        received.Reset(5);       // the same value again is no reason to close it
        EXPECT_EQ(gClosed, (std::vector<int>{1, 4}));
        SetLastError(ERROR_FILE_NOT_FOUND);
    }
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(gClosed, (std::vector<int>{1, 4, 5, 2}));
    EXPECT_FALSE(CHandle(INVALID_HANDLE_VALUE) || CFindHandle(INVALID_HANDLE_VALUE) || CRegKey() || CLibrary());
}

std::string VersionOf(const std::string &path)
{
    return ReadProductVersion(path).ToText(FileVersion::EStyleFull);
}

const char kNone[] = "0.0.0?0";
const char kWhole[] = "5.3.5-5";

class ProductVersion : public testing::Test {
protected:
    const CScratchFolder mScratch;
    const std::string mContent = ReadBytes(BuiltDouble("versions\\Version32.dll"));
};

TEST_F(ProductVersion, PathIsUtf8AndOfAnyLength)
{
    const std::string path = mScratch.Path("\xC3\xBC\xE2\x82\xAC\xE6\xBC\xA2.dll"); // a letter, a sign, a han character
    ASSERT_TRUE(MoveFileW(Utf8ToWide(mScratch.Write("plain.dll", mContent)).c_str(), Utf8ToWide(path).c_str()));
    EXPECT_EQ(VersionOf(path), kWhole);
    EXPECT_TRUE(DeleteFileW(Utf8ToWide(path).c_str()));
    EXPECT_EQ(VersionOf(std::string(5000, 'x')), kNone);
}

TEST_F(ProductVersion, TruncatedAndDamagedFilesLeadNowhere)
{
    std::string key; // where the version resource begins in the bytes of the file
    for (const char letter : std::string("VS_VERSION_INFO")) {
        key += {letter, '\0'};
    }
    const size_t resource = mContent.find(key) - 3 * sizeof(WORD);
    ASSERT_LT(resource, mContent.size());
    for (size_t length = 0; length < mContent.size(); length += 16) {
        const std::string version = VersionOf(mScratch.Write("cut.dll", mContent.substr(0, length)));
        EXPECT_TRUE(version == kNone || (version == kWhole && length >= resource)) << version << " at " << length;
    }
    WORD size = 0;
    memcpy(&size, mContent.data() + resource, sizeof size);
    unsigned changed = 0;
    for (size_t at = resource; at + sizeof(WORD) <= resource + size; at += sizeof(WORD)) {
        for (const WORD word : {0x0000, 0x0001, 0x7FFE, 0xFFFF}) {
            std::string damaged = mContent;
            memcpy(&damaged[at], &word, sizeof word);
            changed += VersionOf(mScratch.Write("damaged.dll", damaged)) != kWhole ? 1 : 0;
        }
        ASSERT_EQ(_heapchk(), _HEAPOK) << "after damage at " << at - resource;
    }
    EXPECT_GT(changed, size / sizeof(WORD)); // the damage was where it matters
}

// A library class of any name, with an entry that exists nowhere and one of wtsapi32.
class CAnyLibrary : public CImportWin32API {
public:
    CAnyLibrary(const char *library, bool load, bool report) : CImportWin32API(library, load, report) {}
    CLazyEntry<BOOL(WINAPI *)(HANDLE)> TvxNoSuchEntry{*this, "TvxNoSuchEntry"};
    CLazyEntry<HANDLE(WINAPI *)(DWORD)> TvxNoSuchOpen{*this, "TvxNoSuchOpen", INVALID_HANDLE_VALUE};
    CLazyEntry<BOOL(WINAPI *)(ULONG, PHANDLE)> WTSQueryUserToken{*this, "WTSQueryUserToken"};
};

constexpr char kAbsent[] = "tvx-absent.dll";
// A system library that nothing here links and nothing else loads.
constexpr char kUnused[] = "wtsapi32.dll";

// The records of calls that each bring the same ones, and how many of them there are; places in the source are cut off.
std::string Reports(CTraceCapture &capture)
{
    std::string reports;
    for (const std::string &record : capture.Take()) {
        const bool assertion = record.compare(0, 6, "Assert") == 0;
        reports += record.substr(0, assertion ? record.find(" in ") : std::string::npos) + "\n";
    }
    return reports;
}

TEST(LazyBinding, WhatIsMissingFailsEachCallAndIsReportedEachTime)
{
    CTraceCapture capture;
    CAnyLibrary absent(kAbsent, true, true), present("kernel32.dll", false, true), quiet(kAbsent, true, false);
    const std::string once = "Import Init: Could not load tvx-absent.dll (126)\nAssert:(m_hDll)\n";
    const std::string entry = "GetProcAddress: TvxNoSuchEntry not found in kernel32.dll\nAssert:(procAddr)\n"
                              "GetProcAddress: TvxNoSuchOpen not found in kernel32.dll\nAssert:(procAddr)\n";
    for (const auto &[library, reports] : {std::pair(&absent, once + once), {&present, entry}, {&quiet, ""}}) {
        for (int round = 0; round < 2; ++round) {
            SetLastError(ERROR_SUCCESS);
            EXPECT_EQ(library->TvxNoSuchEntry(nullptr), FALSE);
            EXPECT_EQ(GetLastError(), 120u);
            SetLastError(ERROR_SUCCESS);
            EXPECT_EQ(library->TvxNoSuchOpen(1), INVALID_HANDLE_VALUE);
            EXPECT_EQ(GetLastError(), 120u);
            EXPECT_EQ(Reports(capture), reports);
        }
    }
}

TEST(LazyBinding, LibraryIsLoadedWhenNeededAndFreedByWhoLoadedIt)
{
    ASSERT_EQ(GetModuleHandleA(kUnused), nullptr) << "this test needs a library that nothing has loaded";
    CAnyLibrary ofProcess(kUnused, false, false);
    EXPECT_FALSE(ofProcess.LoadDll());
    {
        CAnyLibrary library(kUnused, true, true);
        EXPECT_EQ(GetModuleHandleA(kUnused), nullptr) << "loaded before it was needed";
        HANDLE token = nullptr;
        library.WTSQueryUserToken(0, &token);
        EXPECT_TRUE(ofProcess.LoadDll()) << "a failed look-up is tried again";
        SetLastError(ERROR_FILE_NOT_FOUND);
    }
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(GetModuleHandleA(kUnused), nullptr);
}

TEST(PlantedLibrary, LoadsByPathButNotByNameOnceTheSearchIsHardened)
{
    const CScratchFolder folder;
    char former[MAX_PATH], program[MAX_PATH];
    GetCurrentDirectoryA(sizeof former, former);
    GetModuleFileNameA(nullptr, program, sizeof program);
    CopyFileA(program, folder.Path("tvx-planted.dll").c_str(), FALSE); // can be loaded as well as any other image
    SetCurrentDirectoryA(folder.Path("").c_str());
    HardenLibrarySearch();
    EXPECT_FALSE(CLibrary(LoadLibraryA("tvx-planted.dll")));
    // What the package names is found wherever a script may have put it.
    for (const char *name : {"tvx-planted.dll", ".\\tvx-planted.dll", "./tvx-planted.dll", kUnused}) {
        EXPECT_TRUE(CLibrary(LoadPackageLibrary(name))) << name << " " << GetLastError();
    }
    EXPECT_FALSE(CLibrary(LoadSystemLibrary("tvx-planted.dll")) || CLibrary(LoadSystemLibrary(".\\tvx-planted.dll")));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_BAD_PATHNAME));
    EXPECT_FALSE(CLibrary(LoadPackageLibrary(kAbsent)) || CLibrary(LoadPackageLibrary("")));
    SetCurrentDirectoryA(former);
}

// Plays the monitor to whom OutputDebugString hands messages: section and events are the contract between the two.
class CDebugMonitor {
public:
    CDebugMonitor()
        : mReady(CreateEventA(nullptr, FALSE, TRUE, "DBWIN_BUFFER_READY")),
          mData(CreateEventA(nullptr, FALSE, FALSE, "DBWIN_DATA_READY")),
          mSection(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kSize, "DBWIN_BUFFER")),
          mView(static_cast<const char *>(MapViewOfFile(mSection.Get(), FILE_MAP_READ, 0, 0, kSize)))
    {
    }
    ~CDebugMonitor() { UnmapViewOfFile(mView); }

    // The next message of this process within two seconds, empty when none comes.
    std::string Next()
    {
        while (WaitForSingleObject(mData.Get(), 2000) == WAIT_OBJECT_0) {
            const DWORD process = *reinterpret_cast<const DWORD *>(mView);
            const std::string message = mView + sizeof(DWORD);
            SetEvent(mReady.Get());
            if (process == GetCurrentProcessId()) {
                return message;
            }
        }
        return std::string();
    }

private:
    static constexpr DWORD kSize = 4096;
    CHandle mReady;
    CHandle mData;
    CHandle mSection;
    const char *mView;
};

TEST(Trace, ReachesAMonitorThatIsStartedDuringTheRun)
{
    trace(0, "before anybody listens\n");
    CDebugMonitor monitor;
    Sleep(300); // a monitor is noticed within a quarter of a second
    std::thread tracer([] { trace(0, "somebody %s\n", "listens"); });
    EXPECT_EQ(monitor.Next(), "somebody listens\n");
    tracer.join();
}

TEST(Trace, LengthOfTheMessageIsAnsweredAndTheLastErrorKept)
{
    CTraceCapture capture;
    const std::string longText(70000, 'x');
    SetLastError(4711);
    EXPECT_EQ(trace(0, "%s\n", longText.c_str()), 70001);
    EXPECT_EQ(GetLastError(), 4711u);
    SetDiagnosticLevel(7);
    EXPECT_EQ(trace(7, "at the threshold\n"), 0);
    EXPECT_EQ(trace(6, "below it\n"), 9);
    EXPECT_EQ(traceAlways("always\n"), 7);
    EXPECT_EQ(capture.Take(), (std::vector<std::string>{longText, "below it", "always"}));
}

TEST(TraceTimer, TellsNameTimeAndNumberWhenItEnds)
{
    CTraceCapture capture;
    int32_t counter = 6;
    {
        const TraceTimer timer("TIMEFOR: TEST", &counter);
        Sleep(30);
    }
    EXPECT_EQ(counter, 7);
    const std::vector<std::string> records = capture.Take();
    ASSERT_EQ(records.size(), 1u);
    double milliseconds = 0;
    long number = 0;
    EXPECT_EQ(sscanf(records[0].c_str(), "TIMEFOR: TEST, = %lf ms, %ld", &milliseconds, &number), 2) << records[0];
    EXPECT_GE(milliseconds, 29.0);
    EXPECT_EQ(number, 7);
}

TEST(ComApartment, IsEnteredByTheFirstWhoAsksInAScopeAndNowhereElse)
{
    EXPECT_FALSE(EnterComApartment());
    {
        const CComApartmentScope scope;
        EXPECT_TRUE(EnterComApartment());
        EXPECT_TRUE(EnterComApartment());
    }
    EXPECT_FALSE(EnterComApartment());
}

} // namespace
