#include "Common/TextConversions.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

TEST(TextConversions, Utf8AndWideKeepAllText)
{
    const std::wstring wide = std::wstring(L"a\0b", 3) + L"\x00FC\x20AC\x6F22\xD83D\xDE00";
    const std::string utf8 = std::string("a\0b", 3) + "\xC3\xBC\xE2\x82\xAC\xE6\xBC\xA2\xF0\x9F\x98\x80";
    EXPECT_EQ(Utf8ToWide(utf8), wide);
    EXPECT_EQ(WideToUtf8(wide), utf8);
    // What is no UTF-8 comes out as replacement characters between the text around it.
    const std::wstring broken = Utf8ToWide("<\xC3\xFF\x80\xE2\x82>");
    EXPECT_EQ(broken.front(), L'<');
    EXPECT_EQ(broken.back(), L'>');
    EXPECT_NE(broken.find(L'\xFFFD'), std::wstring::npos);
}

TEST(TextConversions, AnsiReadsBackByWayOfUtf8AndEmptyMakesNoCall)
{
    if (GetACP() == 1252) {
        std::string bytes;
        for (int byte = 0; byte < 256; ++byte) {
            bytes += static_cast<char>(byte);
        }
        EXPECT_EQ(AnsiToWide(bytes).size(), 256u);
        EXPECT_EQ(WideToAnsi(AnsiToWide(bytes)), bytes);
        EXPECT_EQ(Utf8ToAnsi(AnsiToUtf8(bytes)), bytes);
        EXPECT_EQ(AnsiToUtf8("\xFC\x80"), "\xC3\xBC\xE2\x82\xAC");
        EXPECT_EQ(Utf8ToAnsi("\xE6\xBC\xA2"), "?"); // not in the code page
    }
    SetLastError(4711);
    EXPECT_EQ(Utf8ToWide("") + AnsiToWide(""), L"");
    EXPECT_EQ(WideToUtf8(L"") + WideToAnsi(L"") + AnsiToUtf8("") + Utf8ToAnsi(""), "");
    EXPECT_EQ(GetLastError(), 4711u);
}

} // namespace
