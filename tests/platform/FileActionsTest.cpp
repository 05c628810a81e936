// The file actions on real files in a folder of their own.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../system/Files.h"
#include "../system/PendingRenames.h"
#include "Actions/FileCopy.h"
#include "Actions/FileDelete.h"
#include "Actions/FileExists.h"
#include "Actions/Redirection.h"
#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Common/TraceFile.h"
#include "Installer/CWinInstallMain.h"
#include "TraceCapture.h"

namespace {

constexpr DWORD kNoFile = INVALID_FILE_ATTRIBUTES;
constexpr DWORD kReadOnly = FILE_ATTRIBUTE_READONLY;
constexpr DWORD kHidden = FILE_ATTRIBUTE_HIDDEN;
constexpr DWORD kPlain = FILE_ATTRIBUTE_NORMAL;

class FileActions : public ::testing::Test {
protected:
    FileActions() : mFolder(FreeTempName("File actions")), mMain("", false), mTraceOfSetup(TraceSinkPath())
    {
        MakeFolders(mFolder);
    }
    ~FileActions() override
    {
        CloseTraceSink();
        RemoveTree(mTraceOfSetup);
        RemoveTree(mFolder);
    }

    std::string At(const std::string &name) const { return mFolder + "\\" + name; }
    std::string Make(const std::string &name, const std::string &content = "old", DWORD attributes = kPlain) const
    {
        EXPECT_TRUE(WriteText(At(name), content)) << name;
        SetFileAttributesA(At(name).c_str(), attributes);
        return At(name);
    }

    // What was traced since the last call, a message a line, the folder of the test written as "@".
    std::string Traced()
    {
        std::string messages;
        for (const std::string &message : mTrace.Take()) {
            messages += message + "\n";
        }
        for (size_t at; (at = messages.find(mFolder)) != std::string::npos;) {
            messages.replace(at, mFolder.size(), "@");
        }
        return messages;
    }

    std::string mFolder;
    CWinInstallMain mMain;
    std::string mTraceOfSetup; // the set-up of the object above opens a trace file
    CTraceCapture mTrace;
};

// Whether a program of this kind has another system folder than it names.
bool HasRedirection()
{
    return STDisableRedirect(true).Disabled();
}

TEST_F(FileActions, PathsAreJoinedAndCut)
{
    const struct {
        const char *mLeft;
        const char *mRight;
        const char *mWhole;
    } joins[] = {{"", "a", "a"},           {"", "\\a", "a"},     {"a", "b", "a\\b"},
                 {"a\\", "b", "a\\b"},     {"a", "\\b", "a\\b"}, {"a\\", "\\b", "a\\b"},
                 {"a", "\\\\b", "a\\\\b"}, {"a", "", "a\\"},     {"a\\\\", "b", "a\\\\b"}};
    for (const auto &join : joins) {
        EXPECT_EQ(JoinPath(join.mLeft, join.mRight), join.mWhole) << join.mLeft << " + " << join.mRight;
    }
    const struct {
        const char *mPath;
        const char *mDirectory;
        const char *mName;
        const char *mExtension;
    } cuts[] = {{"", "", "", ""},
                {"a.b", "", "a.b", ".b"},
                {"c:\\x\\a.b.c", "c:\\x", "a.b.c", ".c"},
                {"c:\\a", "c:\\", "a", ""},
                {"x.y\\a", "x.y", "a", ""}};
    for (const auto &cut : cuts) {
        EXPECT_EQ(DirectoryPart(cut.mPath), cut.mDirectory);
        EXPECT_EQ(FindFileName(cut.mPath), cut.mName);
        EXPECT_EQ(FindExtension(cut.mPath), cut.mExtension);
    }
    // In code page 950 A5 5C is one character.
    EXPECT_EQ(FindBackslashes("\\\xa5\\\\x\xa5\\", 950), (std::vector<size_t>{0, 3}));
    EXPECT_EQ(FindBackslashes("\\\xa5\\\\x\xa5\\", 1252), (std::vector<size_t>{0, 2, 3, 6}));
    EXPECT_TRUE(IsRootPath("C:\\"));
    EXPECT_FALSE(IsRootPath("C:\\x"));
}

TEST_F(FileActions, PathsOfAnyLengthAreSurvived)
{
    for (const size_t length : {260, 1000, 32000}) {
        const std::string flat = "C:\\" + std::string(length, 'x') + "\\y.z";
        EXPECT_EQ(DirectoryPart(flat), flat.substr(0, length + 3));
        EXPECT_FALSE(PathExists(flat));
        EXPECT_FALSE(ClearFileAttributes(flat));
        EXPECT_TRUE(DeleteOrFail(flat));
        EXPECT_FALSE(RemoveDirectoryForced(flat));
        EXPECT_FALSE(mMain.EmptyDirectory(flat));
        mMain.CopyFileCore(flat, flat, true);
        mMain.CopyFileCore(Make("a"), flat, true);
        EXPECT_FALSE(PathExists(flat));
    }
    // As many components as the path can have, below a folder that may not be made.
    std::string deep = At("no?");
    while (deep.size() < 32000) {
        deep += "\\a";
    }
    EXPECT_FALSE(CreateDirTree(deep));
    EXPECT_EQ(Tree(mFolder), std::vector<std::string>{"a"});
}

TEST_F(FileActions, CopiesTakeTheTargetsPlace)
{
    Make("plain", "new");
    Make("protected", "new", kReadOnly | kHidden);
    MakeFolders(At("folder"));
    const struct {
        const char *mSource;
        const char *mTarget;
        DWORD mTargetAttributes; // kNoFile: there is no target before
        const char *mContent;    // behind the copy
        const char *mOutcome;
    } rows[] = {
        {"plain", "t", kNoFile, "new", ", New, Copied Yes 0\n"},
        {"plain", "one\\two\\t", kNoFile, "new", ", New, Copied Yes 0\n"},
        {"plain", "t", kPlain, "new", ", Deleted, Copyed Yes 0\n"},
        {"plain", "t", kReadOnly, "new", ", Deleted, Copyed Yes 0\n"},
        {"plain", "t", kHidden, "new", ", Deleted, Copyed Yes 0\n"},
        {"protected", "t", kNoFile, "new", ", New, Copied Yes 0\n"},
        {"protected", "t", kReadOnly | kHidden, "new", ", Deleted, Copyed Yes 0\n"},
        {"none", "t", kReadOnly, "old", ", Source missing\n"},
        {"none", "t", kNoFile, "", ", Source missing\n"},
        {"plain", "plain\\below", kNoFile, "", ", New, Copied No 0\n"},
        {"plain", "t*?", kNoFile, "", ", New, Copied No 0\n"},
        {"plain", "made/not", kNoFile, "", ", New, Copied No 0\n"},
        {"folder", "t", kNoFile, "", ", New, Copied No 0\n"},
        {"folder", "t", kPlain, "", ", Deleted, Copyed No 0\n"},
    };
    for (size_t number = 0; number < 2 * std::size(rows); ++number) {
        const auto &row = rows[number / 2];
        const bool likelyNew = number % 2 != 0; // saves a look at the target and changes nothing else
        const std::string target = At(row.mTarget);
        if (row.mTargetAttributes != kNoFile) {
            Make(row.mTarget, "old", row.mTargetAttributes);
        }
        Traced();
        mMain.CopyFileCore(At(row.mSource), target, false, likelyNew);
        EXPECT_EQ(Traced(),
                  "Source @\\" + std::string(row.mSource) + ", Destination @\\" + row.mTarget + "\n" + row.mOutcome);
        EXPECT_EQ(ReadText(target), row.mContent) << row.mSource << " to " << row.mTarget;
        if (std::string(row.mContent) == "new") {
            EXPECT_EQ(GetFileAttributesA(target.c_str()) & (kReadOnly | kHidden), 0u);
        }
        RemoveTree(target);
        RemoveTree(At("one"));
    }
    EXPECT_FALSE(mMain.mRebootRequired);
}

TEST_F(FileActions, TargetWithoutBackslashIsCopiedIntoTheWorkingDirectory)
{
    char former[MAX_PATH];
    GetCurrentDirectoryA(sizeof former, former);
    Make("source", "new");
    SetCurrentDirectoryA(mFolder.c_str());
    mMain.CopyFileCore("source", "bare", false);
    mMain.CopyFileCore("source", "", false);
    SetCurrentDirectoryA(former);
    EXPECT_EQ(ReadText(At("bare")), "new");
    EXPECT_EQ(Tree(mFolder), (std::vector<std::string>{"bare", "source"}));
}

TEST_F(FileActions, CopyOntoAFileInUseIsParkedUnderTheNextFreeName)
{
    const PendingRenames pending;
    const std::string source = Make("source", "new", kReadOnly);
    const std::string target = Make("foo.dll");
    const std::string taken = Make("foo.dln", "other");
    const LockedFile lock(target);
    const LockedFile neighbour(taken);
    Traced();
    mMain.CopyFileCore(source, target, false); // foo.dlm is free
    EXPECT_TRUE(mMain.mRebootRequired);
    mMain.CopyFileCore(source, target, false); // foo.dlm is taken by now, foo.dln is locked by another
    EXPECT_EQ(Traced(), "Source @\\source, Destination @\\foo.dll\n, Reboot @\\foo.dlm, Move Yes 0\n"
                        "Source @\\source, Destination @\\foo.dll\n, Reboot @\\foo.dlo, Move Yes 0\n");
    EXPECT_EQ(Tree(mFolder), (std::vector<std::string>{"foo.dll", "foo.dlm", "foo.dln", "foo.dlo", "source"}));
    for (const char *parked : {"foo.dlm", "foo.dlo"}) {
        EXPECT_EQ(ReadText(At(parked)), "new");
        EXPECT_EQ(GetFileAttributesA(At(parked).c_str()) & (kReadOnly | kHidden), 0u);
    }
    // At the next start the target goes first, then the parked file takes its place.
    EXPECT_EQ(PendingRenames::List(),
              (std::vector<std::string>{mFolder + "\\foo.dll", "", mFolder + "\\foo.dlm", mFolder + "\\foo.dll",
                                        mFolder + "\\foo.dll", "", mFolder + "\\foo.dlo", mFolder + "\\foo.dll"}));
}

TEST_F(FileActions, ParkedNameCountsThroughTheWholeByte)
{
    const PendingRenames pending;
    const std::string source = Make("source", "new");
    const LockedFile last(Make("foo\xff"));
    mMain.CopyFileCore(source, At("foo\xff"), false); // counted up to NUL the name ends one byte early
    EXPECT_EQ(ReadText(At("foo")), "new");
    const LockedFile bracket(Make("bar["));
    mMain.CopyFileCore(source, At("bar["), false); // a back-slash makes no name of a file and is passed over
    EXPECT_EQ(ReadText(At("bar]")), "new");
}

TEST_F(FileActions, TargetThatIsAFolderIsParkedBeside)
{
    const PendingRenames pending;
    Make("folder\\kept");
    mMain.CopyFileCore(Make("source", "new"), At("folder"), false);
    EXPECT_EQ(ReadText(At("folder\\kept")), "old");
    EXPECT_EQ(ReadText(At("foldes")), "new");
    EXPECT_TRUE(mMain.mRebootRequired);
}

TEST_F(FileActions, OnlyANewerFileIsCopied)
{
    const std::string source = Make("source", "new");
    const struct {
        int mTargetAge; // hours older than the source; there is no target for none
        bool mCopied;
    } rows[] = {{1, true}, {0, false}, {-1, false}, {99, false}};
    for (const auto &row : rows) {
        const std::string target = At("target");
        RemoveTree(target);
        if (row.mTargetAge != 99) {
            Make("target");
            const CHandle from(
                CreateFileA(source.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
            const CHandle to(CreateFileA(target.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
            FILETIME time = {};
            GetFileTime(from.Get(), nullptr, nullptr, &time);
            ULARGE_INTEGER number = {{time.dwLowDateTime, time.dwHighDateTime}};
            number.QuadPart -= static_cast<int64_t>(row.mTargetAge) * 3600 * 10000000;
            time = {number.LowPart, number.HighPart};
            SetFileTime(to.Get(), nullptr, nullptr, &time);
        }
        Traced();
        EXPECT_EQ(mMain.CopyIfNewer(source, target, false), row.mCopied) << row.mTargetAge;
        EXPECT_EQ(ReadText(target), row.mCopied ? "new" : row.mTargetAge == 99 ? "" : "old") << row.mTargetAge;
        const std::string traced = Traced();
        EXPECT_EQ(traced.find("File1 @\\source, File2 @\\target\n"), 0u) << traced;
        EXPECT_NE(traced.find(row.mCopied ? "\n, Copying\nSource @\\source" : "\n, Not Newer\n"), std::string::npos)
            << traced;
    }
}

TEST_F(FileActions, CustomPathLosesTheProductNameOnlyWhereNothingIs)
{
    const std::string there = Make("Pen there");
    const struct {
        const char *mProduct;
        std::string mPath;
        std::string mResult;
    } rows[] = {
        {"Pen", there, there},
        {"Pen", At("Pen\\Pen.dll"), mFolder + "\\\\Pen.dll"},
        {"Pen ", At("Pen gone"), At("gone")},
        {"pen", At("Pen gone"), At("Pen gone")},
        {"", At("Pen gone"), At("Pen gone")},
    };
    for (const auto &row : rows) {
        mMain.mProductName = row.mProduct;
        EXPECT_EQ(CustomPath(mMain, row.mPath), row.mResult);
    }
    Traced();
    FileExistsStep(there, false);
    FileExistsStep(there, true);
    EXPECT_EQ(Traced(), std::string("File @\\Pen there, 64 \nFile @\\Pen there, 64 , 64 ") +
                            (HasRedirection() ? "Yes\n" : "No\n"));
}

TEST_F(FileActions, AttributesAreClearedWhereTheyProtect)
{
    MakeFolders(At("folder"));
    SetFileAttributesA(At("folder").c_str(), kHidden);
    const struct {
        std::string mPath;
        bool mCleared;
        DWORD mError;
    } rows[] = {
        {"", false, ERROR_INVALID_PARAMETER},
        {At("none"), false, ERROR_FILE_NOT_FOUND},
        {At("none\\none"), false, ERROR_PATH_NOT_FOUND},
        {Make("plain"), true, 0},
        {Make("protected", "", kReadOnly), true, 0},
        {Make("hidden", "", kHidden), true, 0},
        {Make("all", "", kReadOnly | kHidden), true, 0},
        {At("folder"), true, 0},
    };
    for (const auto &row : rows) {
        SetLastError(12345);
        EXPECT_EQ(ClearFileAttributes(row.mPath), row.mCleared) << row.mPath;
        EXPECT_EQ(GetLastError(), row.mError) << row.mPath;
        if (row.mCleared) {
            EXPECT_EQ(GetFileAttributesA(row.mPath.c_str()) & (kReadOnly | kHidden), 0u) << row.mPath;
        }
    }
}

TEST_F(FileActions, DirectoriesAreMadeUpToTheLast)
{
    Make("file");
    const struct {
        std::string mPath;
        bool mMade;
        bool mThere;
        DWORD mError; // of a failure
    } rows[] = {
        {mFolder, true, true, 0},
        {"C:\\", true, true, 0},
        {"\\\\server\\share", true, false, 0}, // a root counts as made whether it is there or not
        {At("a\\b\\c"), true, true, 0},
        {At("d\\"), false, true, ERROR_ALREADY_EXISTS}, // the component behind the back-slash is empty
        {At("file\\e"), false, false, ERROR_PATH_NOT_FOUND},
        {At("f/g"), false, false, ERROR_PATH_NOT_FOUND},
        {"", false, false, ERROR_PATH_NOT_FOUND},
        {"never made", false, false, ERROR_FILE_NOT_FOUND}, // no back-slash, no directory
    };
    for (const auto &row : rows) {
        SetLastError(12345);
        EXPECT_EQ(CreateDirTree(row.mPath) != FALSE, row.mMade) << row.mPath;
        if (!row.mMade || !row.mThere) {
            EXPECT_EQ(GetLastError(), row.mError) << row.mPath;
        }
        EXPECT_EQ(FolderExists(row.mPath), row.mThere) << row.mPath;
    }
}

TEST_F(FileActions, DirectoryIsCopiedWhole)
{
    std::vector<std::string> expected;
    std::string deep = "source";
    while (At(deep).size() < 235) { // within the limit of Windows also below the longer name of the target
        deep += "\\twelve chars";
    }
    for (int number = 0; number < 300; ++number) {
        const std::string folder[] = {"source", "source\\one", "source\\one\\two words", "source\\g\xfcltig \xe9",
                                      deep};
        const std::string name = folder[number % 5] + "\\" + std::to_string(number) + ".txt";
        Make(name, name, number % 7 == 0 ? kReadOnly : number % 11 == 0 ? kHidden : kPlain);
    }
    MakeFolders(At("source\\empty"));
    Make("target\\source\\here before", "stays");
    Traced();
    EXPECT_TRUE(mMain.CopyDirectory(At("source"), At("target\\source")));
    const std::string traced = Traced();
    EXPECT_EQ(traced.find("Source @\\source, Destination @\\target\\source\n"), 0u);
    EXPECT_NE(traced.find("\nDirectory '@\\source\\one\\two words', Copied Yes => "), std::string::npos);
    EXPECT_NE(traced.find("\nDirectory '@\\source\\empty', Copied Yes => "), std::string::npos);
    EXPECT_NE(traced.find("\n, DirCopied Yes "), std::string::npos);
    EXPECT_EQ(traced.find(", Copied No"), std::string::npos);

    expected = Tree(At("source"));
    expected.insert(std::lower_bound(expected.begin(), expected.end(), "here before"), "here before");
    EXPECT_EQ(Tree(At("target\\source")), expected);
    for (const std::string &name : expected) {
        const std::string copy = At("target\\source\\" + name);
        EXPECT_EQ(GetFileAttributesA(copy.c_str()) & (kReadOnly | kHidden), 0u) << name;
        if (name != "here before" && name.back() != '\\') {
            EXPECT_EQ(ReadText(copy), "source\\" + name);
        }
    }
}

TEST_F(FileActions, DirectoryWithoutListingMakesNoTarget)
{
    EXPECT_FALSE(mMain.CopyDirectory(At("none"), At("target")));
    EXPECT_EQ(Traced(), "Source @\\none, Destination @\\target\n, Source missing\n");
    EXPECT_TRUE(mMain.CopyDirectory(Make("file"), At("target"))); // there, but no directory
    EXPECT_NE(Traced().find(", DirCopied No "), std::string::npos);
    EXPECT_FALSE(PathExists(At("target")));
    MakeFolders(At("empty"));
    EXPECT_TRUE(mMain.CopyDirectoryTree(At("empty"), At("target")));
    EXPECT_EQ(GetLastError(), 0u);
    EXPECT_TRUE(FolderExists(At("target")));
}

TEST_F(FileActions, EmptyingSparesTheUninstallerAndItsData)
{
    const std::vector<std::string> names = {"installer.dat", "ISD.DAT", "remove.exe",          "REMOVE.EXE.txt",
                                            "a.dat.txt",     "x.exe",   "data.dat\\inner.txt", "sub\\Remove.exe",
                                            "sub\\more.dat", "e\\f"};
    const struct {
        bool mUninstall;
        std::vector<std::string> mLeft;
    } rows[] = {
        {false, {"remove.exe", "sub\\", "sub\\Remove.exe"}},
        {true,
         {"ISD.DAT", "data.dat\\", "data.dat\\inner.txt", "installer.dat", "remove.exe", "sub\\", "sub\\Remove.exe",
          "sub\\more.dat"}},
    };
    for (const auto &row : rows) {
        for (const std::string &name : names) {
            Make("walk\\" + name, "", kReadOnly);
        }
        mMain.mUninstall = row.mUninstall;
        SetLastError(12345);
        EXPECT_TRUE(mMain.EmptyDirectory(At("walk")));
        EXPECT_EQ(GetLastError(), 0u);
        EXPECT_EQ(Tree(At("walk")), row.mLeft) << row.mUninstall;
        RemoveTree(At("walk"));
    }
    EXPECT_FALSE(mMain.mRebootRequired);
}

TEST_F(FileActions, EmptyingGoesOnBehindWhatCannotBeDeleted)
{
    for (const char *name : {"a", "b", "locked", "n", "z", "long name of a locked file.txt"}) {
        Make(std::string("walk\\") + name);
    }
    MakeFolders(At("walk\\c d"));
    Traced();
    {
        const LockedFile lock(At("walk\\locked"));
        const LockedFile longLock(At("walk\\long name of a locked file.txt"));
        EXPECT_TRUE(mMain.EmptyDirectory(At("walk")));
    }
    EXPECT_EQ(Tree(At("walk")), (std::vector<std::string>{"locked", "long name of a locked file.txt"}));
    const std::string traced = Traced();
    // A short name that is the long one is given as it is; the number is the error of the first attempt.
    EXPECT_NE(traced.find("Short File @\\walk\\locked, Deleted No 32\n"), std::string::npos) << traced;
    EXPECT_NE(traced.find("Short File @\\walk\\LONG"), std::string::npos) << traced;
    EXPECT_NE(traced.find("Long File @\\walk\\z, Deleted Yes "), std::string::npos);
    EXPECT_NE(traced.find("Directory @\\walk\\c d, Emptied Yes "), std::string::npos);
    EXPECT_NE(traced.find("Long Directory @\\walk\\c d, Removed Yes 0\n"), std::string::npos);
    EXPECT_FALSE(mMain.mRebootRequired);
    EXPECT_TRUE(mMain.EmptyDirectory(At("walk")));
    EXPECT_TRUE(Tree(At("walk")).empty());
}

TEST_F(FileActions, EmptyingEndsOnNamesThatTheCodePageLacks)
{
    const std::wstring folder(mFolder.begin(), mFolder.end());
    CHandle(CreateFileW((folder + L"\\\x4e2d\x6587.txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    CreateDirectoryW((folder + L"\\\x4e2d\x6587").c_str(), nullptr);
    Make("z");
    EXPECT_TRUE(mMain.EmptyDirectory(mFolder));
    EXPECT_TRUE(Tree(mFolder).empty()) << Traced(); // each by its short name
}

TEST_F(FileActions, EmptyingRefusesAPathThatNamesNothing)
{
    char former[MAX_PATH];
    GetCurrentDirectoryA(sizeof former, former);
    Make("kept");
    SetCurrentDirectoryA(mFolder.c_str());
    SetLastError(0);
    EXPECT_FALSE(mMain.EmptyDirectory(""));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_FALSE(mMain.EmptyDirectory("none"));
    EXPECT_FALSE(mMain.EmptyDirectory("kept"));
    SetCurrentDirectoryA(former);
    EXPECT_EQ(ReadText(At("kept")), "old");
}

TEST_F(FileActions, DeletionsTellWhatIsGone)
{
    MakeFolders(At("folder"));
    const std::string locked = Make("locked");
    const LockedFile lock(locked);
    const struct {
        std::string mPath;
        bool mGone;
        DWORD mError;
    } rows[] = {
        {"", true, 0},
        {At("none"), true, 0},
        {Make("plain"), true, 0},
        {Make("protected", "", kReadOnly | kHidden), true, 0},
        {At("folder"), false, ERROR_ACCESS_DENIED},
        {locked, false, ERROR_SHARING_VIOLATION},
    };
    for (const auto &row : rows) {
        SetLastError(12345);
        EXPECT_EQ(DeleteOrFail(row.mPath), row.mGone) << row.mPath;
        EXPECT_EQ(GetLastError(), row.mError) << row.mPath;
        EXPECT_EQ(PathExists(row.mPath), !row.mGone) << row.mPath;
    }
    Make("full\\file");
    SetFileAttributesA(At("folder").c_str(), kReadOnly);
    EXPECT_TRUE(RemoveDirectoryForced(At("folder")));
    EXPECT_FALSE(RemoveDirectoryForced(At("full")));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DIR_NOT_EMPTY));
    EXPECT_FALSE(RemoveDirectoryForced(""));
    EXPECT_EQ(Tree(mFolder), (std::vector<std::string>{"full\\", "full\\file", "locked"}));
}

TEST_F(FileActions, FileInUseIsDeletedAtTheNextStart)
{
    const PendingRenames pending;
    const std::string locked = Make("locked");
    const std::string plain = Make("plain");
    const LockedFile lock(locked);
    Traced();
    SetLastError(0);
    EXPECT_FALSE(mMain.DeleteFileStep(At("none"), false));
    EXPECT_FALSE(DeleteAtReboot(At("none")));
    SetLastError(7);
    EXPECT_TRUE(mMain.DeleteFileStep(plain, false));
    EXPECT_TRUE(PendingRenames::List().empty());
    SetLastError(8);
    EXPECT_TRUE(DeleteAtReboot(locked));
    EXPECT_FALSE(mMain.mRebootRequired); // the script decides
    EXPECT_FALSE(mMain.DeleteFileStep(locked, false));
    EXPECT_TRUE(mMain.mRebootRequired);
    EXPECT_EQ(PendingRenames::List(), (std::vector<std::string>{locked, "", locked, ""}));
    EXPECT_EQ(Traced(), "File @\\none\n, Missing\nFile @\\none\n, Missing\nFile @\\plain\n, Deleted Yes 7\n"
                        "File @\\locked\n, Reboot Yes 8\nFile @\\locked\n, Reboot Yes 32\n");
}

TEST_F(FileActions, RedirectionIsOffForTheScopeThatAsks)
{
    char system[MAX_PATH];
    GetSystemDirectoryA(system, sizeof system);
    const std::string name = JoinPath(system, "TavixRedirection.tmp");
    EnableWow64Redirection(true);
    ASSERT_TRUE(WriteText(name, "32"));
    const bool redirected = HasRedirection();
    {
        const STDisableRedirect untouched(false);
        EXPECT_FALSE(untouched.Disabled());
        EXPECT_STREQ(untouched.TraceText(), "");
        EXPECT_TRUE(PathExists(name));
    }
    {
        const STDisableRedirect redirect(true);
        EXPECT_STREQ(redirect.TraceText(), redirected ? ", 64 Yes" : ", 64 No");
        EXPECT_EQ(PathExists(name), !redirected);
        {
            const STDisableRedirect inner(true);
        }
        EXPECT_TRUE(PathExists(name)); // scopes do not count
    }
    EXPECT_TRUE(PathExists(name));
    RemoveTree(name);
}

} // namespace
