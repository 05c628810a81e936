#include "Common/WinFileVersion.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <malloc.h>

#include <cstring>

#include "Common/TextConversions.h"
#include "ScratchFolder.h"

namespace {

std::string VersionOf(const std::string &path)
{
    return ReadProductVersion(path).ToText(FileVersion::EStyleFull);
}

std::string VersionOfDouble(const std::string &name)
{
    EXPECT_NE(ReadBytes(BuiltDouble("versions\\" + name)), "") << "not there: " << name;
    return VersionOf(BuiltDouble("versions\\" + name));
}

const std::string kNone = FileVersion().ToText(FileVersion::EStyleFull);

TEST(ProductVersion, IsTheTextInTheFirstLanguageOfTheList)
{
    EXPECT_EQ(VersionOfDouble("Version32.dll"), "5.3.5-5"); // the binary numbers say 9.9.9.9
    EXPECT_EQ(VersionOfDouble("Beta32.dll"), "6.1.0b12");
    EXPECT_EQ(VersionOfDouble("LongText.dll"), "1.2.3-4");
    EXPECT_EQ(VersionOfDouble("SeveralLanguages.dll"), "7.1.2w3");
}

TEST(ProductVersion, IsReadFromFilesOf64BitWindows)
{
    if (ReadBytes(BuiltDouble("versions\\Version64.dll")).empty()) {
        GTEST_SKIP() << "this build had no tools to make a 64-bit file";
    }
    EXPECT_EQ(VersionOfDouble("Version64.dll"), "5.3.5-6");
}

TEST(ProductVersion, IsUnknownWithoutTheTextOrTheFile)
{
    EXPECT_EQ(VersionOfDouble("LanguageWithoutTexts.dll"), kNone);
    EXPECT_EQ(VersionOfDouble("NoProductVersion.dll"), kNone);
    EXPECT_EQ(VersionOfDouble("NoTranslation.dll"), kNone);
    EXPECT_EQ(VersionOfDouble("NoVersion.dll"), kNone);
    const CScratchFolder scratch;
    EXPECT_EQ(VersionOf(scratch.Write("text.dll", "ProductVersion 5.3.5-5")), kNone);
    EXPECT_EQ(VersionOf(scratch.Write("empty.dll", "")), kNone);
    EXPECT_EQ(VersionOf(scratch.Path("missing.dll")), kNone);
    EXPECT_EQ(VersionOf(scratch.Path("")), kNone);
    EXPECT_EQ(VersionOf(""), kNone);
    EXPECT_EQ(VersionOf(std::string(5000, 'x')), kNone);
}

TEST(ProductVersion, PathIsUtf8)
{
    const CScratchFolder scratch;
    const std::string content = ReadBytes(BuiltDouble("versions\\Version32.dll"));
    const std::string name = "\xC3\xBC\xE2\x82\xAC\xE6\xBC\xA2.dll"; // a letter, a sign and a han character
    ASSERT_TRUE(
        MoveFileW(Utf8ToWide(scratch.Write("plain.dll", content)).c_str(), Utf8ToWide(scratch.Path(name)).c_str()));
    EXPECT_EQ(VersionOf(scratch.Path(name)), "5.3.5-5");
    EXPECT_TRUE(DeleteFileW(Utf8ToWide(scratch.Path(name)).c_str()));
}

// Where the version resource begins in the bytes of a file.
size_t FindResource(const std::string &file)
{
    std::string wideKey;
    for (const char letter : std::string("VS_VERSION_INFO")) {
        wideKey += letter;
        wideKey += '\0';
    }
    return file.find(wideKey) - 3 * sizeof(WORD);
}

TEST(ProductVersion, TruncatedFilesAreUnknownOrRead)
{
    const CScratchFolder scratch;
    const std::string whole = ReadBytes(BuiltDouble("versions\\Version32.dll"));
    const size_t resource = FindResource(whole);
    ASSERT_LT(resource, whole.size());
    for (size_t length = 0; length < resource; length += 16) {
        EXPECT_EQ(VersionOf(scratch.Write("cut.dll", whole.substr(0, length))), kNone) << length;
    }
    for (size_t length = resource; length < whole.size(); length += 16) {
        const std::string version = VersionOf(scratch.Write("cut.dll", whole.substr(0, length)));
        EXPECT_TRUE(version == kNone || version == "5.3.5-5") << version << " at " << length;
    }
}

TEST(ProductVersion, DamagedLengthsLeadNowhere)
{
    const CScratchFolder scratch;
    const std::string whole = ReadBytes(BuiltDouble("versions\\Version32.dll"));
    const size_t resource = FindResource(whole);
    WORD length = 0;
    ASSERT_LT(resource, whole.size());
    memcpy(&length, whole.data() + resource, sizeof length);
    ASSERT_LE(resource + length, whole.size());
    unsigned changed = 0;
    for (size_t at = resource; at + sizeof(WORD) <= resource + length; at += sizeof(WORD)) {
        for (const WORD word : {0x0000, 0x0001, 0x7FFE, 0xFFFF}) {
            std::string damaged = whole;
            memcpy(&damaged[at], &word, sizeof word);
            changed += VersionOf(scratch.Write("damaged.dll", damaged)) != "5.3.5-5" ? 1 : 0;
        }
        ASSERT_EQ(_heapchk(), _HEAPOK) << "after damage at " << at - resource;
    }
    EXPECT_GT(changed, length / sizeof(WORD)); // the damage was where it matters
}

DriverDate ReadInf(const CScratchFolder &scratch, const std::string &content)
{
    return ReadInfDriverVersion(scratch.Write("driver.inf", content));
}

TEST(InfDriverVersion, IsTheDriverVerEntryOfSectionVersion)
{
    const CScratchFolder scratch;
    const DriverDate date = ReadInf(scratch, "; driver\r\n[version]\r\nSignature=\"$CHICAGO$\"\r\ndriverver = "
                                             "01/13/2012,6.1.2.3 ; day\r\n[Other]\r\nDriverVer=01/01/2000,1.1.1.1\r\n");
    EXPECT_EQ(FormatDriverDate(date), "13/01/2012,6.1.2.3");
    // 49 characters are read
    const DriverDate longEntry = ReadInf(scratch, "[Version]\r\nDriverVer=01/13/2012,6.1.2." + std::string(100, '7'));
    EXPECT_EQ(longEntry.mVersion, FileVersion(6, 1, 2, FileVersion::EFinalVersion, 2));
}

TEST(InfDriverVersion, IsEmptyWithoutFileOrEntry)
{
    const CScratchFolder scratch;
    EXPECT_FALSE(ReadInfDriverVersion(scratch.Path("missing.inf")).IsSet());
    EXPECT_FALSE(ReadInf(scratch, "").IsSet());
    EXPECT_FALSE(ReadInf(scratch, "[Version]\r\nDriverVer=\r\n").IsSet());
    EXPECT_FALSE(ReadInf(scratch, "[Other]\r\nDriverVer=01/13/2012,6.1.2.3\r\n").IsSet());
}

TEST(InfDriverVersion, DateOutOfBoundsIsAnException)
{
    const CScratchFolder scratch;
    EXPECT_THROW(ReadInf(scratch, "[Version]\r\nDriverVer=13/01/2012,1.2.3.4\r\n"), CDriverDateException);
}

} // namespace
