// What the cases of the whole program cannot make: names beyond the code page, and damaged files by the thousand.
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

} // namespace
