// The file commands of a script: their records word for word, and which files of a 64-bit Windows they mean.
#include "Fixture.h"

#include <algorithm>
#include <chrono>

namespace {

std::string Joined(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines) {
        text += line + "\n";
    }
    return text;
}

// Makes a file look as if written so many hours ago.
void SetAge(const std::string &path, int hours)
{
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    FILETIME time = {};
    GetSystemTimeAsFileTime(&time);
    ULARGE_INTEGER number = {};
    number.LowPart = time.dwLowDateTime;
    number.HighPart = time.dwHighDateTime;
    number.QuadPart -= static_cast<ULONGLONG>(hours) * 3600 * 10000000;
    time.dwLowDateTime = number.LowPart;
    time.dwHighDateTime = number.HighPart;
    EXPECT_TRUE(SetFileTime(file, nullptr, nullptr, &time));
    CloseHandle(file);
}

// A file of this content in one of the two system folders, gone with the object. The name is as a script has it.
class SystemFile {
public:
    SystemFile(const std::string &name, bool native, const std::string &content, int age = 0)
        : mPath(SystemFolder() + "\\" + name), mNative(native)
    {
        RedirectionOff *off = mNative ? new RedirectionOff : nullptr;
        EXPECT_TRUE(WriteText(mPath, content)) << mPath;
        SetAge(mPath, age);
        delete off;
    }
    ~SystemFile() { Read(mPath, mNative, true); }
    SystemFile(const SystemFile &) = delete;
    SystemFile &operator=(const SystemFile &) = delete;

    static std::string SystemFolder()
    {
        char folder[MAX_PATH];
        GetSystemDirectoryA(folder, sizeof folder);
        return folder;
    }
    static std::string Read(const std::string &path, bool native, bool remove = false)
    {
        std::string content;
        const auto look = [&] {
            content = FileExists(path) ? ReadText(path) : FolderExists(path) ? "folder" : "none";
            if (remove) {
                RemoveTree(path);
            }
        };
        if (native) {
            const RedirectionOff off;
            look();
        } else {
            look();
        }
        return content;
    }

private:
    std::string mPath;
    bool mNative;
};

// Contents of a file in the folder of 64-bit programs and in that of 32-bit programs; removes both.
std::string TakeBoth(const std::string &name)
{
    const std::string path = SystemFile::SystemFolder() + "\\" + name;
    const std::string native = SystemFile::Read(path, true, true);
    return native + " " + SystemFile::Read(path, false, true);
}

} // namespace

// A "~" stands for the words of a redirection that was switched off.
TEST(Files, EachCommandTracesItsWords)
{
    Package package;
    package.File("a.txt", "new").File("old.txt", "old").File("older.txt", "old").File("tree\\sub\\f", "f");
    SetAge(package.Path("old.txt"), 1);
    SetAge(package.Path("older.txt"), 1);
    MakeFolders(package.Path("tree\\empty"));
    const struct {
        const char *mStep;
        std::vector<std::string> mMessages;
    } rows[] = {
        {"CopyFile;a.txt;.\\\\new\\\\t", {"Source a.txt, Destination .\\new\\t~", ", New, Copied Yes 0"}},
        {"CopyFile;a.txt;new2\\\\t", {"Source a.txt, Destination new2\\t~", ", New, Copied No *"}},
        {"CopyFileRedir;a.txt;.\\\\new\\\\t", {"Source a.txt, Destination .\\new\\t", ", Deleted, Copyed Yes 0"}},
        {"CopyFileCustom;a.txt;u", {"File a.txt, 64 ~", "Source a.txt, Destination u~", ", New, Copied Yes *"}},
        {"CopyFileCustomRedir;none;u", {"File none, 64 ~", "Source none, Destination u", ", Source missing"}},
        {"CopyFileIfNewer;a.txt;old.txt",
         {"File1 a.txt, File2 old.txt", "FileVersionCompare: old.txt (*) vs a.txt (*), 64 *:", "* < *", ", Copying",
          "Source a.txt, Destination old.txt~", ", Deleted, Copyed Yes 0"}},
        {"CopyFileIfNewerRedir;a.txt;older.txt",
         {"File1 a.txt, File2 older.txt", "FileVersionCompare: older.txt (*) vs a.txt (*), 64 *:", "* < *", ", Copying",
          "Source a.txt, Destination older.txt", ", Deleted, Copyed Yes 0"}},
        {"CopyFileIfNewer;a.txt;none",
         {"File1 a.txt, File2 none", "FileVersionCompare: none (*) vs a.txt (*), 64 *:", "* > *", ", Not Newer"}},
        {"CopyOEMINF;none.inf", {"Source Inf none.inf", ", Source Inf missing"}},
        {"CopyDir;tree;.\\\\copy",
         {"Source tree, Destination .\\copy", "Directory 'tree\\empty', Copied Yes => *",
          "Source tree\\sub\\f, Destination .\\copy\\sub\\f~", ", New, Copied Yes 0",
          "Directory 'tree\\sub', Copied Yes => *", ", DirCopied Yes *"}},
        {"CopyDir;none;.\\\\none", {"Source none, Destination .\\none", ", Source missing"}},
        {"CreateDir;.\\\\d\\\\e", {"Directory .\\d\\e, Created Yes *"}},
        {"CreateDir;bare", {"Directory bare, Created No *"}},
        {"DeleteDir;d", {"Directory d, Removed No 64 *"}},
        {"DeleteDir;d\\\\e", {"Directory d\\e, Removed Yes 64 *"}},
        {"DeleteDirRedir;d", {"Directory d, Removed Yes *"}},
        {"DeleteDirContents;copy",
         {"Directory copy\\empty, Emptied Yes *", "Long Directory copy\\empty, Removed Yes 0",
          "Long File copy\\sub\\f, Deleted Yes *", "Directory copy\\sub, Emptied Yes *",
          "Long Directory copy\\sub, Removed Yes 0", "Directory copy, Emptied Yes *"}},
        {"DeleteFile;old.txt", {"File old.txt~", ", Deleted Yes *"}},
        {"DeleteFile;old.txt", {"File old.txt~", ", Missing"}},
        {"DeleteFileRedir;older.txt", {"File older.txt", ", Deleted Yes *"}},
        {"DeleteFileCustom;u", {"File u, 64 ~", "File u", ", Deleted Yes *"}},
        {"DeleteFileReboot;none", {"File none", ", Missing"}},
    };
    // The step in front takes the records of the first use of the redirection.
    std::string steps = "DeleteFile;none\n";
    for (const auto &row : rows) {
        steps += "Log;row " + std::to_string(&row - rows) + "\n" + row.mStep + "\n";
    }
    const RunResult run = package.Steps(steps + "Log;row " + std::to_string(std::size(rows))).Run();
    EXPECT_EQ(run.mExitCode, 0u);
    for (const auto &row : rows) {
        const size_t number = static_cast<size_t>(&row - rows);
        const std::vector<std::string> got =
            MessagesBetween(run, "row " + std::to_string(number), "row " + std::to_string(number + 1));
        const std::string step = row.mStep;
        std::string expected = "Instruction " + step.substr(0, step.find(';')) + "\n" + Joined(row.mMessages);
        for (size_t mark; (mark = expected.find('~')) != std::string::npos;) {
            expected.replace(mark, 1, ", 64 Yes");
        }
        EXPECT_TRUE(Fits(expected + "Instruction Log\n", Joined(got))) << step << "\nexpected\n"
                                                                       << expected << "got\n"
                                                                       << Joined(got);
    }
    EXPECT_EQ(Tree(package.Folder()),
              (std::vector<std::string>{"TavixSetup.exe", "a.txt", "copy\\", "installer.dat", "new\\", "new\\t",
                                        "tree\\", "tree\\empty\\", "tree\\sub\\", "tree\\sub\\f"}));
    EXPECT_EQ(ReadText(package.Path("new\\t")), "new");
}

TEST(Files, InfArrivesUnderOneNameOrTheOther)
{
    Package package;
    char windows[MAX_PATH];
    GetWindowsDirectoryA(windows, sizeof windows);
    const std::string folder = std::string(windows) + "\\inf";
    const std::vector<std::string> former = Tree(folder);
    package.File("tavixtest.inf", "[Version]\r\nSignature=\"$CHICAGO$\"\r\nClass=HIDClass\r\n; tavix test\r\n");
    const RunResult run = package.Steps("CopyOEMINF;.\\\\tavixtest.inf").Run();
    EXPECT_TRUE(Has(run, "Source Inf .\\tavixtest.inf"));
    std::vector<std::string> added;
    const std::vector<std::string> present = Tree(folder);
    std::set_difference(present.begin(), present.end(), former.begin(), former.end(), std::back_inserter(added));
    if (Has(run, ", SetupCopyOEMInf .\\tavixtest.inf, Yes *")) {
        ASSERT_FALSE(added.empty());
        EXPECT_TRUE(Fits("oem*", added[0])) << added[0];
    } else { // the own copy, under the own name
        EXPECT_TRUE(Has(run, "Source .\\tavixtest.inf, Destination *\\inf\\tavixtest.inf, 64 *"));
        EXPECT_EQ(added, std::vector<std::string>{"tavixtest.inf"});
    }
    for (const std::string &name : added) {
        RemoveTree(folder + "\\" + name);
    }
}

TEST(Files, WordRedirLeavesTheRedirectionOn)
{
    Package package;
    package.File("new", "new");
    const struct {
        const char *mStep;
        const char *mNative; // before; null for no file
        const char *mRedirected;
        const char *mBoth; // behind, native first
    } rows[] = {
        {"CopyFile;new;!SYSTEM!\\\\tavix.tmp", nullptr, nullptr, "new none"},
        {"CopyFileRedir;new;!SYSTEM!\\\\tavix.tmp", nullptr, nullptr, "none new"},
        {"CopyFileCustom;new;!SYSTEM!\\\\tavix.tmp", nullptr, nullptr, "new none"},
        {"CopyFileCustomRedir;new;!SYSTEM!\\\\tavix.tmp", nullptr, nullptr, "none new"},
        {"DeleteFile;!SYSTEM!\\\\tavix.tmp", "a", "b", "none b"},
        {"DeleteFileRedir;!SYSTEM!\\\\tavix.tmp", "a", "b", "a none"},
        {"DeleteFileCustom;!SYSTEM!\\\\tavix.tmp", "a", "b", "a none"},
        {"CreateDir;!SYSTEM!\\\\tavix.tmp", nullptr, nullptr, "none folder"},
        {"DeleteDirContents;!SYSTEM!\\\\tavix.tmp", nullptr, nullptr, "none none"},
    };
    for (const auto &row : rows) {
        {
            const RunResult run = [&] {
                std::optional<SystemFile> native;
                std::optional<SystemFile> redirected;
                package.Steps(row.mStep);
                if (row.mNative != nullptr) {
                    native.emplace("tavix.tmp", true, row.mNative);
                    redirected.emplace("tavix.tmp", false, row.mRedirected);
                }
                const RunResult result = package.Run();
                EXPECT_EQ(TakeBoth("tavix.tmp"), row.mBoth) << row.mStep;
                return result;
            }();
            EXPECT_EQ(run.mExitCode, 0u) << row.mStep;
        }
    }
}

TEST(Files, DirectoryIsListedRedirectedAndCopiedReal)
{
    Package package;
    const SystemFile both("tavix.dir\\both", true, "native");
    const SystemFile bothRedirected("tavix.dir\\both", false, "redirected");
    const SystemFile listed("tavix.dir\\listed", false, "redirected");
    const SystemFile hidden("tavix.dir\\hidden", true, "native");
    const RunResult run = package.Steps("CopyDir;!SYSTEM!\\\\tavix.dir;.\\\\copy").Run();
    EXPECT_EQ(Tree(package.Path("copy")), std::vector<std::string>{"both"});
    EXPECT_EQ(ReadText(package.Path("copy\\both")), "native");
    EXPECT_TRUE(
        HasInOrder(run, {"Source *\\tavix.dir\\listed, Destination .\\copy\\listed, 64 Yes", ", Source missing"}));
    // The folder stands in both places; the plain form takes away the one and the Redir form the other.
    package.Steps("DeleteDirContents;!SYSTEM!\\\\tavix.dir\nDeleteDir;!SYSTEM!\\\\tavix.dir").Run();
    EXPECT_EQ(SystemFile::Read(SystemFile::SystemFolder() + "\\tavix.dir", true), "none");
    EXPECT_EQ(SystemFile::Read(SystemFile::SystemFolder() + "\\tavix.dir\\listed", false), "redirected");
    RemoveTree(SystemFile::SystemFolder() + "\\tavix.dir\\both");
    RemoveTree(SystemFile::SystemFolder() + "\\tavix.dir\\listed");
    package.Steps("DeleteDirRedir;!SYSTEM!\\\\tavix.dir").Run();
    EXPECT_EQ(SystemFile::Read(SystemFile::SystemFolder() + "\\tavix.dir", false), "none");
}

// Packages rely on it: the comparison looks at the real folder, the copy goes into the redirected one.
TEST(Files, NewerRedirComparesOneFileAndWritesAnother)
{
    Package package;
    package.File("new", "new");
    SetAge(package.Path("new"), 2);
    const struct {
        const char *mCommand;
        int mNativeAge;
        int mRedirectedAge;
        const char *mBoth;
    } rows[] = {
        {"CopyFileIfNewerRedir", 1, 3, "a b"},
        {"CopyFileIfNewerRedir", 3, 1, "a new"},
        {"CopyFileIfNewer", 1, 3, "a b"},
        {"CopyFileIfNewer", 3, 1, "new b"},
    };
    for (const auto &row : rows) {
        const SystemFile native("tavix.tmp", true, "a", row.mNativeAge);
        const SystemFile redirected("tavix.tmp", false, "b", row.mRedirectedAge);
        package.Steps(std::string(row.mCommand) + ";new;!SYSTEM!\\\\tavix.tmp").Run();
        EXPECT_EQ(TakeBoth("tavix.tmp"), row.mBoth) << row.mCommand << " " << row.mNativeAge;
    }
}

TEST(Files, UninstallSparesItselfAndTheScript)
{
    Package package;
    const std::string script = "[MAIN]\nVersion=1.10\nPrefType=Pen_Tablet\n[Install]\nDeleteDirContents;sub\n"
                               "[Uninstall]\nDeleteDirContents;sub\n";
    for (const char *option : {"", "/u"}) {
        package.Script(script).File("sub\\installer.dat", "").File("sub\\Remove.exe", "").File("sub\\x.dll", "");
        package.Run(option);
        EXPECT_EQ(FileExists(package.Path("sub\\installer.dat")), *option != '\0') << option;
        EXPECT_TRUE(FileExists(package.Path("sub\\Remove.exe"))) << option;
        EXPECT_FALSE(FileExists(package.Path("sub\\x.dll"))) << option;
    }
}

TEST(Files, TreeOfTwoThousandFilesGoes)
{
    Package package;
    for (int number = 0; number < 2000; ++number) {
        package.File("tree\\" + std::to_string(number % 40) + "\\" + std::to_string(number), "");
    }
    const auto begin = std::chrono::steady_clock::now();
    const RunResult run = package.Steps("DeleteDirContents;tree\nDeleteDir;tree").Run();
    const auto spent = std::chrono::steady_clock::now() - begin;
    RecordProperty("milliseconds",
                   static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(spent).count()));
    EXPECT_FALSE(FolderExists(package.Path("tree")));
    EXPECT_EQ(CountRecords(run, "Long File tree\\*, Deleted Yes *"), 2000u);
}

TEST(FilesWin32Prefix, RedirectionHasNoEffectThere)
{
    const struct {
        const char *mVersion;
        bool mLooksForEntry;
    } rows[] = {{"winxp", false}, {"win7", true}};
    for (const auto &row : rows) {
        const WindowsVersion version(row.mVersion);
        Package package;
        package.File("a", "a");
        const RunResult run = package
                                  .Steps("CopyFile;a;!SYSTEM!\\\\tavix.tmp\nDeleteFile;!SYSTEM!\\\\tavix.tmp\n"
                                         "CopyFileRedir;a;.\\\\b\nCreateDir;.\\\\d\nDeleteDir;d")
                                  .Run();
        EXPECT_TRUE(HasInOrder(run, {"Source a, Destination *\\tavix.tmp, 64 No", ", New, Copied Yes 0",
                                     "File *\\tavix.tmp, 64 No", ", Deleted Yes *", "Source a, Destination .\\b",
                                     ", New, Copied Yes 0"}));
        EXPECT_TRUE(Lacks(run, "Directory d, Removed Yes 64 *"));
        EXPECT_EQ(CountRecords(run, "STDisableRedirect: GetProcAddress of Wow64EnableWow64FsRedirection"),
                  row.mLooksForEntry ? 1u : 0u);
        if (!row.mLooksForEntry) {
            EXPECT_EQ(CountRecords(run, "CWinInstallMain: using Wow64EnableWow64FsRedirectionStub"), 1u);
        }
    }
}
