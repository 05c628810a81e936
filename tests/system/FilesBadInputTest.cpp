// File commands with paths that name nothing, too much or something else: each step leaves its records and
// the next one runs, and what the step does not name stays as it was.
#include "Fixture.h"

namespace {

// Paths as a script has them. The long ones come from the section of texts, as a line holds less.
const char *const kPaths[] = {
    "",
    "^L260^",
    "^L1000^",
    "^L8000^^L8000^^L8000^^L8000^",
    ".\\\\^L260^\\\\x",
    "^DEEP^^DEEP^^DEEP^",
    "none\\\\",
    "none\\\\none\\\\",
    "keep.txt\\\\",
    "keep.txt\\\\below",
    "*",
    "*.txt",
    "?eep.txt",
    ".\\\\*\\\\*",
    "keep.txt:stream\\\\x",
    "<>|\"",
    "\\\\\\\\?\\\\",
    "\\\\\\\\?\\\\Q:\\\\none\\\\none",
    "\\\\\\\\.\\\\none",
    "\\\\\\\\none\\\\none\\\\none",
    "none:\\\\x",
    "./none/none",
};

std::string Texts()
{
    std::string deep;
    while (deep.size() < 8000) {
        deep += "a\\\\";
    }
    return "[en]\nL260=" + std::string(260, 'l') + "\nL1000=" + std::string(1000, 'm') +
           "\nL8000=" + std::string(8000, 'n') + "\nDEEP=" + deep + "\n";
}

// Runs one step for each path and checks that each was followed by the next; "%" in the step is the path.
RunResult RunOnAll(Package &package, const std::string &step)
{
    std::string steps;
    std::vector<std::string> ends;
    for (const char *path : kPaths) {
        ends.push_back("behind " + std::to_string(ends.size()));
        steps +=
            step.substr(0, step.find('%')) + path + step.substr(step.find('%') + 1) + "\nLog;" + ends.back() + "\n";
    }
    const RunResult run = package.Steps(steps, Texts()).Run();
    EXPECT_EQ(run.mExitCode, 0u) << step; // nothing is put off to a restart either
    EXPECT_TRUE(HasInOrder(run, ends)) << step;
    return run;
}

} // namespace

TEST(FilesBadInput, PathsThatNameNothingTouchNothing)
{
    Package package;
    package.File("keep.txt", "kept").File("folder\\keep.txt", "kept");
    package.Steps("NULL").Run();
    const std::vector<std::string> before = Tree(package.Folder());
    const struct {
        const char *mStep;
        const char *mOutcome; // of every one of these paths
    } rows[] = {
        {"CopyFile;%;out", ", Source missing"},
        {"CopyFileRedir;%;out", ", Source missing"},
        {"CopyFileCustom;%;out", ", Source missing"},
        {"CopyFileIfNewer;%;out", ", Not Newer"},
        {"CopyOEMINF;%", ", Source Inf missing"},
        {"CopyDir;%;.\\\\out", ", Source missing"},
        {"DeleteFile;%", ", Missing"},
        {"DeleteFileCustom;%", ", Missing"},
        {"DeleteFileReboot;%", ", Missing"},
        {"DeleteDir;%", "Directory *, Removed No *"},
        {"DeleteDirContents;%", "Directory *, Emptied No *"},
    };
    for (const auto &row : rows) {
        const RunResult run = RunOnAll(package, row.mStep);
        EXPECT_EQ(CountRecords(run, row.mOutcome), std::size(kPaths)) << row.mStep;
        EXPECT_EQ(Tree(package.Folder()), before) << row.mStep;
        EXPECT_EQ(ReadText(package.Path("keep.txt")), "kept") << row.mStep;
    }
}

TEST(FilesBadInput, TargetsThatCannotBeMakeNothing)
{
    Package package;
    package.File("keep.txt", "kept").File("folder\\sub\\file", "");
    package.Steps("NULL").Run();
    const std::vector<std::string> before = Tree(package.Folder());
    const struct {
        const char *mStep;
        const char *mOutcome;
        size_t mRoots = 0; // of the paths, those that count as the root of a share, and roots as made
    } rows[] = {
        {"CopyFile;keep.txt;%", ", New, Copied No *"},
        {"CopyFileRedir;keep.txt;%", ", New, Copied No *"},
        {"CreateDir;%", "Directory *, Created No *", 2},
        {"CopyDir;folder;%\\\\x", ", New, Copied No *"},
    };
    for (const auto &row : rows) {
        const RunResult run = RunOnAll(package, row.mStep);
        EXPECT_EQ(CountRecords(run, row.mOutcome) + row.mRoots, std::size(kPaths)) << row.mStep;
        EXPECT_EQ(Tree(package.Folder()), before) << row.mStep;
        EXPECT_EQ(ReadText(package.Path("keep.txt")), "kept") << row.mStep;
    }
}

TEST(FilesBadInput, FilesAndFoldersAreNotTakenForEachOther)
{
    const struct {
        const char *mStep;
        const char *mOutcome;
    } rows[] = {
        {"CopyFile;folder;out", ", New, Copied No *"},
        {"CopyDir;keep.txt;.\\\\out", ", DirCopied No *"},
        {"CopyDir;folder;keep.txt", ", DirCopied Yes *"},
        {"CreateDir;keep.txt", "Directory keep.txt, Created Yes *"}, // something is there
        {"CreateDir;keep.txt\\\\below", "Directory keep.txt\\below, Created No *"},
        {"DeleteDir;keep.txt", "Directory keep.txt, Removed No *"},
        {"DeleteDir;folder", "Directory folder, Removed No *"}, // not empty
        {"DeleteDirContents;keep.txt", "Directory keep.txt, Emptied No *"},
        // Windows spells a folder with either separator, with several, and through its special names.
        {"CopyFile;folder/file;.\\\\folder\\\\..\\\\out", ", New, Copied Yes 0"},
        {"DeleteFile;.\\\\.\\\\folder\\\\\\\\..\\\\out", ", Deleted Yes *"},
    };
    Package package;
    package.File("keep.txt", "kept").File("folder\\file", "");
    package.Steps("NULL").Run();
    const std::vector<std::string> before = Tree(package.Folder());
    for (const auto &row : rows) {
        const RunResult run = package.Steps(std::string(row.mStep) + "\nLog;behind").Run();
        EXPECT_TRUE(HasInOrder(run, {row.mOutcome, "behind"})) << row.mStep;
        EXPECT_EQ(run.mExitCode, 0u) << row.mStep;
    }
    EXPECT_EQ(Tree(package.Folder()), before);
    EXPECT_EQ(ReadText(package.Path("keep.txt")), "kept");
}
