// Names that the code page lacks, lists that lack their end, paths that cannot be files.
#include <gtest/gtest.h>

#include "../system/Registry.h"
#include "Common/FileOwner.h"
#include "Common/Handles.h"
#include "Common/Status.h"
#include "Common/TextConversions.h"
#include "Common/WinFileVersion.h"
#include "Files/Directories.h"
#include "Files/FileCopy.h"
#include "Files/FileDelete.h"
#include "Registry/RegAccess.h"
#include "ScratchFolder.h"

namespace {

void MakeWide(const std::wstring &path)
{
    CHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
}

TEST(LostNames, AreCopiedAndEmptiedByTheirShortOnes)
{
    const CScratchFolder folder;
    const std::wstring from = AnsiToWide(folder.Path("from"));
    bool reboot = false;
    MakeFolders(folder.Path("from"));
    CreateDirectoryW((from + L"\\\x4e2d\x6587 folder").c_str(), nullptr);
    MakeWide(from + L"\\\x4e2d\x6587 folder\\\x4e2d\x6587 file");
    MakeWide(from + L"\\plain");
    EXPECT_TRUE(CopyDirectory(folder.Path("from"), folder.Path("to"), reboot));
    EXPECT_EQ(GetLastError(), 0u);
    EXPECT_EQ(Tree(folder.Path("to")).size(), 3u);
    EXPECT_TRUE(EmptyDirectory(folder.Path("from"), false));
    EXPECT_TRUE(Tree(folder.Path("from")).empty());
}

TEST(LostNames, ACopyIntoItselfEnds)
{
    const CScratchFolder folder;
    bool reboot = false;
    folder.Write("a\\b\\file", "x");
    for (const char *target : {"a\\b\\c", "a\\B", "a"}) {
        EXPECT_TRUE(CopyDirectory(folder.Path("a"), folder.Path(target), reboot));
        EXPECT_EQ(GetLastError(), 0u);
    }
    EXPECT_EQ(ReadText(folder.Path("a\\b\\c\\b\\file")) + ReadText(folder.Path("a\\b\\file")), "xx");
    EXPECT_LT(Tree(folder.Path("a")).size(), 20u);
}

TEST(LostNames, ADriveIsNotEmptied)
{
    char former[MAX_PATH];
    GetCurrentDirectoryA(sizeof former, former);
    const CScratchFolder folder;
    SetCurrentDirectoryA(folder.Write("d\\f", "x").substr(0, 3).c_str());
    for (const char *root :
         {"C:\\", "\\", "\\\\", "c:/", "C:\\\\.\\", "C:\\windows\\..", "C:", "\\\\?\\C:\\",
          "\\\\.\\C:", "\\\\server\\share", "\\\\server\\share\\", "\\\\?\\UNC\\server\\share\\", "."}) {
        EXPECT_TRUE(LeadsToRoot(root)) << root;
    }
    EXPECT_FALSE(EmptyDirectory("C:\\windows\\..\\", false));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
    SetCurrentDirectoryA(folder.Path("d").c_str());
    for (const char *below : {"C:\\windows", ".", "C:", "\\windows\\", "\\\\?\\C:\\windows", "\\\\server\\share\\x"}) {
        EXPECT_FALSE(LeadsToRoot(below)) << below;
    }
    SetCurrentDirectoryA(former);
}

// "|" stands for a zero byte.
TEST(LostNames, ListsWithoutTheirEndKeepTheirEntries)
{
    const char key[] = "Software\\TAVIX\\Tests\\Lists";
    const RegistrySnapshot snapshot(HKEY_LOCAL_MACHINE, key);
    RegLocation location;
    location.mRootKey = kRootLocalMachine;
    location.mPath = key;
    const auto bar = [](std::string text, char from, char to) {
        std::replace(text.begin(), text.end(), from, to);
        return text;
    };
    const struct {
        const char *mBefore, *mAdded, *mRemoved;
    } rows[] = {{"a|b|", "a|b|c||", "b||"}, {"a|b", "a|b|c||", "b||"},  {"a||b||", "a||b|c||", "|b||"},
                {"a|||", "a||c||", "||"},   {"|b||", "|b|c||", "|b||"}, {"||", "|c||", "none"},
                {"a||", "a|c||", "none"},   {"a", "a|c||", "none"}};
    for (const auto &row : rows) {
        for (const bool add : {true, false}) {
            WriteValue(HKEY_LOCAL_MACHINE, key, "n", RegData{REG_MULTI_SZ, bar(row.mBefore, '|', '\0')});
            EXPECT_EQ(AtRegLocation(location, ERegViewProcess,
                                    [&] {
                                        return add ? WriteRegString("", "n", "c", REG_MULTI_SZ)
                                                   : RemoveFromRegMultiString("", "n", "a", REG_MULTI_SZ);
                                    }),
                      TVXSTATUS_SUCCESS);
            const auto data = ReadValue(HKEY_LOCAL_MACHINE, key, "n");
            EXPECT_EQ(data ? bar(data->mBytes, '\0', '|') : "none", add ? row.mAdded : row.mRemoved) << row.mBefore;
        }
    }
}

TEST(LostNames, APathThatCannotBeAFileHasNoDriverVersion)
{
    for (const std::string &path : {std::string(3000, 'x'), "C:\\" + std::string(300, 'x') + ".inf", std::string()}) {
        EXPECT_FALSE(ReadInfDriverVersion(path).IsSet());
    }
}

TEST(LostNames, FilesKnowTheirOwners)
{
    const CScratchFolder folder;
    const auto open = [&](const std::string &name) {
        return CHandle(CreateFileA(folder.Path(name).c_str(), READ_CONTROL, 7, nullptr, OPEN_EXISTING, 0, nullptr));
    };
    folder.Write("f", "");
    EXPECT_TRUE(IsOwnFile(open("f").Get()));
    EXPECT_FALSE(IsLinkedFile(open("f").Get()));
    CreateHardLinkA(folder.Path("g").c_str(), folder.Path("f").c_str(), nullptr);
    EXPECT_TRUE(IsLinkedFile(open("g").Get()));
    EXPECT_FALSE(IsOwnFile(nullptr));
    EXPECT_TRUE(OthersMayWrite(folder.Path("none")));
    EXPECT_FALSE(OthersMayWrite(folder.Path(".")));
}

} // namespace
