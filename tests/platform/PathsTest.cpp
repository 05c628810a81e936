// Paths, texts of code pages, owners of files and handles, and names that no page of cases can have.
#include "Common/Paths.h"

#include <gtest/gtest.h>

#include "Common/FileOwner.h"
#include "Common/Handles.h"
#include "Common/TextConversions.h"
#include "Files/Directories.h"
#include "Files/FileCopy.h"
#include "Files/FileDelete.h"
#include "ScratchFolder.h"

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

} // namespace
