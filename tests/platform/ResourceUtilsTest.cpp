// Strings of resource libraries that the test writes, asked for in the languages that Windows may show.
#include "Common/ResourceUtils.h"

#include <gtest/gtest.h>

#include <windows.h>

#include "EntryDetour.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

LANGID gUILanguage = 0x409;

LANGID WINAPI UILanguage()
{
    return gUILanguage;
}

// The bytes of a table block with one string.
std::wstring BlockWith(unsigned index, const std::wstring &text)
{
    return std::wstring(index, L'\0') + static_cast<wchar_t>(text.size()) + text;
}

class ResourceUtils : public testing::Test {
protected:
    ResourceUtils()
    {
        const HANDLE update = BeginUpdateResourceA(mLibrary.c_str(), FALSE);
        const auto put = [update](unsigned id, LANGID lang, std::wstring block) {
            EXPECT_TRUE(UpdateResourceA(update, RT_STRING, MAKEINTRESOURCEA(id / 16 + 1), lang, block.data(),
                                        static_cast<DWORD>(block.size() * sizeof(wchar_t))))
                << id;
        };
        put(3, 0x804, BlockWith(3, L"\x7B14"));
        put(3, 0x409, BlockWith(3, L"pen") + BlockWith(0, L"\x0298UGVuIMO8"));
        put(20, 9, BlockWith(4, L"English"));
        put(33, 9, std::wstring(1, L'\0') + L"\tcut"); // a length of nine, and three characters
        put(50, 9, BlockWith(2, L"\x0298!!!!"));
        EXPECT_TRUE(EndUpdateResourceA(update, FALSE));
    }

    // Text, library and number for the link behind "@" and the library.
    std::string Of(const std::string &id, bool searchIdOnFailure = false, LANGID lang = 0x409)
    {
        gUILanguage = lang;
        std::string text = "former", library = "former";
        const int number = LoadDLLStringResource("@" + mLibrary + "," + id, text, library, searchIdOnFailure);
        EXPECT_EQ(library, mLibrary);
        return text + "/" + std::to_string(number);
    }

    const CEntryDetour mLanguage{"kernel32.dll", "GetUserDefaultUILanguage", UILanguage};
    const CScratchFolder mScratch;
    const std::string mLibrary = mScratch.Write("strings.dll", ReadBytes(BuiltDouble("versions\\Version32.dll")));
};

TEST_F(ResourceUtils, StringsComeInTheNearestLanguage)
{
    EXPECT_EQ(Of("3"), "pen/3");
    EXPECT_EQ(Of("-3"), "pen/-3"); // the sign is no part of the number looked for
    EXPECT_EQ(Of(" 4 more"), "Pen \xFC/4");
    EXPECT_EQ(Of("20"), "English/20");
    EXPECT_EQ(Of("20", false, 0x40C), "English/20"); // French: by way of English
    EXPECT_EQ(Of("3", false, 0x1004), "?/3");        // Singapore reads the Chinese of the mainland
}

TEST_F(ResourceUtils, WhatIsNotThereIsEmptyOrTheNumberAndIsTraced)
{
    CTraceCapture trace;
    for (const char *const missing : {"5", "33", "50", "1000000", "-2147483648", "2147483647", "text", ""}) {
        EXPECT_EQ(Of(missing).substr(0, 1), "/") << missing;
        EXPECT_EQ(Of(missing, true), missing + Of(missing)) << missing;
    }
    std::string text, library;
    trace.Take();
    EXPECT_EQ(LoadDLLStringResource("@no such.dll,7", text, library, true), 7);
    EXPECT_EQ(text + "|" + library, "7|no such.dll");
    const std::vector<std::string> records = trace.Take();
    ASSERT_EQ(records.size(), 7u); // once for English of the States, English, and no language
    EXPECT_EQ(records[1].substr(0, 49), "Couldn't get table string 7 (lang 0409, mod 00000");
    EXPECT_EQ(records[4] + records[6], "LoadDLLStringResource: resStr_O: 7LoadDLLStringResource: resID: 7");
    EXPECT_EQ(LoadDLLStringResource("plain, text", text, library, true), 0);
    EXPECT_EQ(text + "|" + library, "plain, text|");
    EXPECT_EQ(LoadDLLStringResource("@only", text, library, true), 0);
    EXPECT_EQ(text + "|" + library, "only|");
}

} // namespace
