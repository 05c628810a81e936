#include "Pack/PageFit.h"

#include <algorithm>

namespace {

constexpr int32_t kPixelsAnInch = 96;
constexpr int32_t kPointsAnInch = 72;

// Widths in hundredths of the font's size, those of the usual fonts of the window.
int32_t WidthOf(char16_t letter)
{
    if (letter >= 0x2E80) {
        return 100;
    }
    if (letter == u' ' || letter == u'.' || letter == u',' || letter == u'\'' || letter == u'!' || letter == u':' ||
        letter == u';' || letter == u'|' || letter == u'i' || letter == u'j' || letter == u'l' || letter == u'I') {
        return 29;
    }
    if (letter == u'f' || letter == u't' || letter == u'r' || letter == u'(' || letter == u')' || letter == u'-' ||
        letter == u'/') {
        return 36;
    }
    if (letter == u'm' || letter == u'w' || letter == u'M' || letter == u'W') {
        return 82;
    }
    return letter >= u'A' && letter <= u'Z' ? 62 : 53;
}

constexpr int32_t kLineHeight = 121; // in hundredths, too

int32_t Pixels(int64_t hundredths, int32_t points)
{
    return static_cast<int32_t>(hundredths * points * kPixelsAnInch / kPointsAnInch / 100);
}

// In hundredths of the font's size.
int64_t WidthOfText(std::u16string_view text)
{
    int64_t width = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] == u'&' && at + 1 < text.size()) {
            ++at;
        }
        width += WidthOf(text[at]);
    }
    return width;
}

// Where a text may be broken behind its letter at `at`.
bool BreaksBehind(std::u16string_view text, size_t at)
{
    return text[at] == u' ' || text[at] >= 0x2E80 || (at + 1 < text.size() && text[at + 1] >= 0x2E80);
}

int32_t LinesOf(std::u16string_view paragraph, int32_t width, int32_t points)
{
    int32_t lines = 1;
    int64_t used = 0;
    size_t from = 0;
    for (size_t at = 0; at < paragraph.size(); ++at) {
        if (!BreaksBehind(paragraph, at) && at + 1 < paragraph.size()) {
            continue;
        }
        std::u16string_view word = paragraph.substr(from, at + 1 - from);
        const int64_t whole = WidthOfText(word);
        while (!word.empty() && word.back() == u' ') {
            word.remove_suffix(1);
        }
        if (used != 0 && Pixels(used + WidthOfText(word), points) > width) {
            ++lines;
            used = 0;
        }
        used += whole;
        from = at + 1;
    }
    return lines;
}

} // namespace

int32_t LineWidth(std::u16string_view line, int32_t points)
{
    return Pixels(WidthOfText(line), points);
}

int32_t TextHeight(std::u16string_view text, int32_t width, int32_t points)
{
    int32_t lines = 0;
    for (size_t from = 0; from <= text.size();) {
        const size_t end = std::min(text.find(u'\n', from), text.size());
        lines += LinesOf(text.substr(from, end - from), width, points);
        from = end + 1;
    }
    return Pixels(int64_t{lines} * kLineHeight, points);
}
