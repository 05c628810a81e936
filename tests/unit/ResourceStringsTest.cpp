#include "Common/ResourceStrings.h"

#include "Tables.h"
#include "TraceRecorder.h"

namespace {

std::u16string StringOf(const std::string &block, unsigned index)
{
    return StringOfBlock(reinterpret_cast<const uint8_t *>(block.data()), block.size(), index);
}

TEST(ResourceStrings, ABlockThatBreaksOffHasNothingBehindTheBreak)
{
    // Empty, "one", empty, two characters beyond ASCII, "five".
    const std::string block("\0\0\3\0o\0n\0e\0\0\0\2\0\x14\x7B\x98\2\4\0f\0i\0v\0e\0", 28);
    EXPECT_EQ(StringOf(block, 1), u"one");
    EXPECT_EQ(StringOf(block, 3), u"\u7B14\u0298");
    EXPECT_EQ(StringOf(block, 0) + StringOf(block, 2) + StringOf(block, 5) + StringOf(block, 15), u"");
    for (size_t size = 0; size < block.size(); ++size) {
        EXPECT_EQ(StringOf(block.substr(0, size), 4), u"") << size;
        EXPECT_EQ(StringOf(block.substr(0, size), 1), size < 10 ? u"" : u"one") << size;
    }
}

// Characters behind the mark.
TEST(ResourceStrings, CodedTextReadsWithAndWithoutPadding)
{
    EXPECT_TRUE(IsCodedString(u"\u0298Zm8"));
    EXPECT_FALSE(IsCodedString(u"") || IsCodedString(u"Z\u0298"));
    ExpectTable("coded-strings", [](const std::string &row) {
        std::u16string coded = u"\u0298";
        for (const char unit : row) {
            coded += unit == '~' ? u'\u0141' : static_cast<char16_t>(unit); // its low byte is an A
        }
        return WithAssertions(DecodeCodedString(coded));
    });
}

} // namespace
