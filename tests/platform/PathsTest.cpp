// Paths, texts of code pages, and a folder with names that no page of cases can have.
#include "Common/Paths.h"

#include <gtest/gtest.h>

#include "Common/Handles.h"
#include "Common/TextConversions.h"
#include "Files/Directories.h"
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

TEST(Paths, EmptyingEndsOnNamesThatTheCodePageLacks)
{
    const CScratchFolder scratch;
    const std::string folder = scratch.Path("");
    const std::wstring name = AnsiToWide(folder) + L"\x4e2d\x6587";
    CHandle(CreateFileW((name + L".txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    CreateDirectoryW(name.c_str(), nullptr);
    EXPECT_TRUE(EmptyDirectory(folder, false));
    EXPECT_TRUE(Tree(folder).empty()); // each by its short name
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

} // namespace
