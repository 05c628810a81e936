// The file actions on real files in a folder of their own: what the whole
// program doesn't show, such as the last errors that callers trace. The rest
// stands in the cases on files and deletion.
#include <gtest/gtest.h>

#include <windows.h>

#include "../system/Files.h"
#include "../system/PendingRenames.h"
#include "Actions/Directories.h"
#include "Actions/FileCopy.h"
#include "Actions/FileDelete.h"
#include "Actions/Redirection.h"
#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Common/TraceFile.h"
#include "Installer/CWinInstallMain.h"
#include "TraceCapture.h"

namespace {

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
    std::string Make(const std::string &name, const std::string &content = "old",
                     DWORD attributes = FILE_ATTRIBUTE_NORMAL) const
    {
        EXPECT_TRUE(WriteText(At(name), content)) << name;
        SetFileAttributesA(At(name).c_str(), attributes);
        return At(name);
    }

    std::string mFolder;
    CWinInstallMain mMain;
    std::string mTraceOfSetup; // the set-up of the object above opens a trace file
    CTraceCapture mTrace;
};

// What stands at a path, marked when it is read-only or hidden.
std::string Kind(const std::string &path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return "none";
    }
    const bool marked = (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN)) != 0;
    return std::string(marked ? "marked " : "") + ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? "folder" : "file");
}

TEST(Paths, AreJoinedAndCut)
{
    const char *const joins[][3] = {{"", "a", "a"},           {"", "\\a", "a"},     {"a", "b", "a\\b"},
                                    {"a\\", "b", "a\\b"},     {"a", "\\b", "a\\b"}, {"a\\", "\\b", "a\\b"},
                                    {"a", "\\\\b", "a\\\\b"}, {"a", "", "a\\"},     {"a\\\\", "b", "a\\\\b"}};
    for (const auto &[left, right, whole] : joins) {
        EXPECT_EQ(JoinPath(left, right), whole) << left << " + " << right;
    }
    const std::string flat = "C:\\" + std::string(32000, 'x');
    const std::string cuts[][4] = {
        {"", "", "", ""},           {"a.b", "", "a.b", ".b"},   {"c:\\x\\a.b.c", "c:\\x", "a.b.c", ".c"},
        {"c:\\a", "c:\\", "a", ""}, {"x.y\\a", "x.y", "a", ""}, {flat + "\\y.z", flat, "y.z", ".z"}};
    for (const auto &[path, directory, name, extension] : cuts) {
        EXPECT_EQ(DirectoryPart(path), directory);
        EXPECT_EQ(FindFileName(path), name);
        EXPECT_EQ(FindExtension(path), extension);
    }
    // In code page 950 A5 5C is one character.
    EXPECT_EQ(FindBackslashes("\\\xa5\\\\x\xa5\\", 950), (std::vector<size_t>{0, 3}));
    EXPECT_EQ(FindBackslashes("\\\xa5\\\\x\xa5\\", 1252), (std::vector<size_t>{0, 2, 3, 6}));
    EXPECT_TRUE(IsRootPath("C:\\"));
    EXPECT_FALSE(IsRootPath("C:\\x"));
}

TEST_F(FileActions, ParkedNameCountsThroughTheWholeByte)
{
    const PendingRenames pending;
    const LockedFile last(Make("foo\xff"));
    mMain.CopyFileCore(Make("source", "new"), At("foo\xff"), false);
    EXPECT_EQ(ReadText(At("foo")),
              "new"); // counted up to NUL the name ends one byte early
}

// Each action answers whether it worked and sets the last error, 0 for success.
TEST_F(FileActions, LastErrorTellsHowTheActionWent)
{
    using Action = bool (*)(const std::string &);
    const Action clear = ClearFileAttributes;
    const Action make = [](const std::string &path) { return CreateDirTree(path) != FALSE; };
    const Action remove = [](const std::string &path) { return DeleteOrFail(path); };
    const Action removeFolder = RemoveDirectoryForced;
    MakeFolders(At("folder"));
    SetFileAttributesA(At("folder").c_str(), FILE_ATTRIBUTE_HIDDEN);
    const LockedFile lock(Make("locked"));
    const std::string both = Make("both", "", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    const struct {
        Action mAction;
        std::string mPath;
        bool mDone;
        DWORD mError;
        const char *mBehind;
    } rows[] = {
        {clear, "", false, ERROR_INVALID_PARAMETER, "none"},
        {clear, At("none"), false, ERROR_FILE_NOT_FOUND, "none"},
        {clear, At("none\\none"), false, ERROR_PATH_NOT_FOUND, "none"},
        {clear, Make("plain"), true, 0, "file"},
        {clear, both, true, 0, "file"},
        {clear, At("folder"), true, 0, "folder"},
        {make, At("folder"), true, 0, "folder"},
        {make, "\\\\server\\share", true, 0, "none"},             // a root counts, whether it is there or not
        {make, At("d\\"), false, ERROR_ALREADY_EXISTS, "folder"}, // the last component is empty
        {make, At("plain\\e"), false, ERROR_PATH_NOT_FOUND, "none"},
        {make, At("f/g"), false, ERROR_PATH_NOT_FOUND, "none"},
        {make, "", false, ERROR_PATH_NOT_FOUND, "none"},
        {make, "never made", false, ERROR_FILE_NOT_FOUND, "none"},
        {remove, "", true, 0, "none"},
        {remove, At("none"), true, 0, "none"},
        {remove, both, true, 0, "none"},
        {remove, At("folder"), false, ERROR_ACCESS_DENIED, "folder"},
        {remove, At("locked"), false, ERROR_SHARING_VIOLATION, "file"},
        {removeFolder, mFolder, false, ERROR_DIR_NOT_EMPTY, "folder"},
    };
    for (const auto &row : rows) {
        const std::string which = "row " + std::to_string(&row - rows) + " " + row.mPath;
        SetLastError(12345);
        EXPECT_EQ(row.mAction(row.mPath), row.mDone) << which;
        EXPECT_EQ(GetLastError(), row.mError) << which;
        EXPECT_EQ(Kind(row.mPath), row.mBehind) << which;
    }
    SetLastError(12345);
    EXPECT_TRUE(mMain.CopyDirectoryTree(At("folder"), At("copy")));
    EXPECT_EQ(GetLastError(), 0u);
    EXPECT_TRUE(mMain.EmptyDirectory(At("copy")));
    EXPECT_EQ(GetLastError(), 0u);
    EXPECT_FALSE(mMain.EmptyDirectory(""));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

TEST_F(FileActions, EmptyingEndsOnNamesThatTheCodePageLacks)
{
    const std::wstring folder(mFolder.begin(), mFolder.end());
    CHandle(CreateFileW((folder + L"\\\x4e2d\x6587.txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    CreateDirectoryW((folder + L"\\\x4e2d\x6587").c_str(), nullptr);
    Make("z");
    EXPECT_TRUE(mMain.EmptyDirectory(mFolder));
    EXPECT_TRUE(Tree(mFolder).empty()); // each by its short name
}

TEST_F(FileActions, DeletionsTraceTheErrorInFrontOfThem)
{
    const PendingRenames pending;
    const std::string locked = Make("locked");
    const std::string plain = Make("plain");
    const LockedFile lock(locked);
    mTrace.Take();
    SetLastError(7);
    EXPECT_TRUE(mMain.DeleteFileStep(plain, false));
    SetLastError(8);
    EXPECT_TRUE(DeleteAtReboot(locked));
    EXPECT_FALSE(mMain.mRebootRequired); // the script decides
    SetLastError(9);
    EXPECT_FALSE(mMain.DeleteFileStep(locked, false)); // in front of what is put off stands the first attempt
    EXPECT_TRUE(mMain.mRebootRequired);
    EXPECT_EQ(mTrace.Take(), (std::vector<std::string>{"File " + plain, ", Deleted Yes 7", "File " + locked,
                                                       ", Reboot Yes 8", "File " + locked, ", Reboot Yes 32"}));
}

TEST_F(FileActions, RedirectionIsOffForTheScopeThatAsks)
{
    char system[MAX_PATH];
    GetSystemDirectoryA(system, sizeof system);
    const std::string name = JoinPath(system, "TavixRedirection.tmp");
    EnableWow64Redirection(true);
    const Scratch scratch(name);
    ASSERT_TRUE(WriteText(name, "32"));
    const bool redirected = STDisableRedirect(true).Disabled();
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
}

} // namespace
