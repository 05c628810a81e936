// The file commands on a tree that is larger, deeper and named otherwise than a page of cases can have it.
#include "Fixture.h"

#include <chrono>

TEST(Files, LargeTreeIsCopiedWholeAndEmptied)
{
    Package package;
    std::string deep = "tree";
    while (package.Path(deep).size() < 235) { // within the limit of Windows for its files
        deep += "\\twelve chars";
    }
    const std::string folders[] = {"tree", "tree\\one\\two words", "tree\\g\xfcltig \xe9\xdf", deep};
    for (int number = 0; number < 400; ++number) {
        const std::string name = folders[number % 4] + "\\" + std::to_string(number);
        package.File(name, name);
        if (number % 7 == 0) {
            SetFileAttributesA(package.Path(name).c_str(), FILE_ATTRIBUTE_READONLY);
        }
    }
    MakeFolders(package.Path("tree\\empty"));
    const std::vector<std::string> names = Tree(package.Path("tree"));

    const RunResult copying = package.Steps("CopyDir;tree;.\\\\copy").Run();
    EXPECT_EQ(CountRecords(copying, ", New, Copied Yes *"), 400u);
    EXPECT_EQ(Tree(package.Path("copy")), names);
    for (const std::string &name : names) {
        const DWORD attributes = GetFileAttributesA(package.Path("copy\\" + name).c_str());
        EXPECT_EQ(attributes & FILE_ATTRIBUTE_READONLY, 0u) << name;
        EXPECT_TRUE(name.back() == '\\' || ReadText(package.Path("copy\\" + name)) == "tree\\" + name) << name;
    }

    for (int number = 400; number < 2000; ++number) {
        package.File("tree\\folder " + std::to_string(number % 40) + "\\" + std::to_string(number), "");
    }
    const auto begin = std::chrono::steady_clock::now();
    const RunResult deleting = package.Steps("DeleteDirContents;tree\nDeleteDir;tree").Run();
    const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - begin;
    RecordProperty("milliseconds", static_cast<int>(spent.count()));
    EXPECT_EQ(CountRecords(deleting, "Long File tree\\*, Deleted Yes *"), 2000u);
    EXPECT_FALSE(FolderExists(package.Path("tree")));
}
