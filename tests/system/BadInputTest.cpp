// Scripts that no page can hold: the run ends with its code and its records, and never otherwise.
#include "Fixture.h"

namespace {

const std::string kMain = "[MAIN]\r\nVersion=1.10\r\nPrefType=Pen_Tablet\r\n[Install]\r\nLog;first\r\n";

TEST(BadInput, ABinaryScript)
{
    std::string binary;
    unsigned state = 1;
    for (int i = 0; i < 200000; ++i) {
        state = state * 1103515245u + 12345u;
        binary += static_cast<char>(state >> 16);
    }
    Package package;
    package.File("installer.dat", binary);
    const RunResult run = package.Run();
    EXPECT_EQ(run.mOutputFile, "1");
    EXPECT_TRUE(Has(run, "Version mismatch: exe-1.10.01, dat-"));
}

TEST(BadInput, TenMegabytes)
{
    std::string ballast = "[Ballast]\r\n";
    while (ballast.size() < 10u * 1024 * 1024) {
        ballast += "Log;" + std::string(96, 'b') + "\r\n";
    }
    Package package;
    package.File("installer.dat", kMain + "!Later!\r\n" + ballast + "[Later]\r\nLog;later\r\n");
    EXPECT_EQ(Logged(package.Run()), (std::vector<std::string>{"first", "later"}));
}

TEST(BadInput, NulAndHighBytesInAScript)
{
    static const char kBytes[] = "Log;\x80\xFE\xFF\xC3\r\n\xFF\xFE;x\r\nLog;\x01\x02\x1F\r\nLog;end\r\nLog;b\0c\r\n";
    Package package;
    package.File("installer.dat", kMain + std::string(kBytes, sizeof kBytes - 1));
    const RunResult run = package.Run();
    EXPECT_EQ(run.mOutputFile, "0");
    EXPECT_TRUE(HasInOrder(run, {"first", "\x80\xFE\xFF\xC3", "Instruction \xFF\xFE", "\x01\x02\x1F", "end"}));
}

} // namespace
