#include "Devices/CompanionLine.h"

#include <gtest/gtest.h>

#include "Devices/TabletSize.h"

namespace {

TEST(CompanionLine, FormGoesByTheNameAndVerbsQuoteInTheirOwnWays)
{
    EXPECT_TRUE(IsCompanionProgram(".\\c.exe") && IsCompanionProgram("C:\\a.exe.d\\c.dll"));
    EXPECT_FALSE(IsCompanionProgram("") || IsCompanionProgram("C.EXE") || IsCompanionProgram("exe.dll"));
    EXPECT_EQ(InstallParameters("USB\\A", "C:\\b c.inf"), "Install USB\\A \"C:\\b c.inf\"");
    EXPECT_EQ(UpdateParameters("USB\\A", "C:\\b c.inf"), "Update \"USB\\A\" \"C:\\b c.inf\"");
    // Only ".\" in front stands for the current directory.
    EXPECT_EQ(InfFullPath(".\\b.inf", "C:\\p"), "C:\\p\\b.inf");
    for (const char *const inf : {"..\\b.inf", ".b.inf", "b.inf", "./b.inf", "C:\\.\\b.inf", ".", ""}) {
        EXPECT_EQ(InfFullPath(inf, "C:\\p"), inf);
    }
}

TEST(TabletSize, NumbersComeInThreePieces)
{
    static const struct {
        TabletReply mReply;
        uint32_t mMaxX, mMaxY;
    } kRows[] = {
        {{0xFF, 0, 0, 0, 0, 0xFF, 0x87, 0xFF, 0xFF, 0xFF, 0xFF}, 0, 0}, // nothing of them counts
        {{0, 1, 0, 2, 0, 0, 0x20}, 0x201, 0x400},
        {{0, 0, 1, 0, 2, 0, 0x08}, 4, 9},
        {{0, 0, 0, 0, 0, 0, 0x50}, 2, 2},
        {{0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0xFF}, 0x1FFFF, 0x1FFFF}, // bytes are taken whole
    };
    for (const auto &row : kRows) {
        const TabletSize size = DecodeTabletSize(row.mReply);
        EXPECT_EQ(std::pair(size.mMaxX, size.mMaxY), std::pair(row.mMaxX, row.mMaxY));
    }
}

} // namespace
