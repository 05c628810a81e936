#include "Pack/ProfileFile.h"

#include <algorithm>
#include <utility>

namespace {

constexpr char kUtf8Mark[] = "\xEF\xBB\xBF";

// The end of a text of DOS counts as a blank, too.
bool IsBlank(char16_t unit)
{
    return (unit >= 0x09 && unit <= 0x0D) || unit == 0x1A || unit == 0x20;
}

// Half a unit at the end is dropped; what the platform makes of it depends on what lies in its memory.
std::u16string WideOfUtf16(std::string_view bytes, bool swapped, std::vector<uint32_t> &places_O)
{
    std::u16string wide;
    wide.reserve(bytes.size() / 2);
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto first = static_cast<uint8_t>(bytes[at]), second = static_cast<uint8_t>(bytes[at + 1]);
        wide.push_back(static_cast<char16_t>(swapped ? first << 8 | second : second << 8 | first));
        places_O.push_back(static_cast<uint32_t>(at));
    }
    places_O.push_back(static_cast<uint32_t>(bytes.size()));
    return wide;
}

} // namespace

CProfileFile::CProfileFile(std::string bytes, const CCodePage &codePage) : mBytes(std::move(bytes))
{
    std::string_view text = mBytes;
    size_t mark = 0;
    if (text.substr(0, 3) == kUtf8Mark) {
        mEncoding = EProfileEncoding::EUtf8;
        mark = 3;
    } else if (text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF") {
        mEncoding = text[0] == '\xFF' ? EProfileEncoding::EUtf16 : EProfileEncoding::EUtf16Swapped;
        mark = 2;
    }
    text.remove_prefix(mark);
    std::vector<uint32_t> places;
    std::u16string wide;
    switch (mEncoding) {
    case EProfileEncoding::ECodePage:
        wide = codePage.ToWide(text, &places);
        break;
    case EProfileEncoding::EUtf8:
        wide = WideOfUtf8(text, &places);
        break;
    default:
        wide = WideOfUtf16(text, mEncoding == EProfileEncoding::EUtf16Swapped, places);
        break;
    }
    for (uint32_t &place : places) {
        place += static_cast<uint32_t>(mark);
    }
    Cut(wide, places);
}

void CProfileFile::Cut(const std::u16string &text, const std::vector<uint32_t> &places)
{
    mSections.emplace_back();
    size_t next = 0;
    while (next < text.size()) {
        size_t from = next;
        size_t end = std::min(text.find_first_of(u"\r\n", from), text.size());
        next = end + (end < text.size() ? 1 : 0);
        if (next < text.size() && text[end] == u'\r' && text[next] == u'\n') {
            ++next;
        }
        mLineStarts.push_back(mLineStarts.empty() ? 0 : places[from]);
        const auto line = static_cast<uint32_t>(mLineStarts.size());
        const auto placeOf = [&](size_t at) { return ProfilePlace{line, places[at] - mLineStarts.back() + 1}; };

        while (from < end && IsBlank(text[from])) {
            ++from;
        }
        while (end > from && IsBlank(text[end - 1])) {
            --end;
        }
        if (from == end) {
            continue;
        }
        if (text[from] == u'[') {
            const size_t close = from + std::u16string_view(text).substr(from, end - from).rfind(u']');
            if (close > from && close < end) {
                size_t name = from + 1, nameEnd = close;
                while (name < nameEnd && IsBlank(text[name])) {
                    ++name;
                }
                while (nameEnd > name && IsBlank(text[nameEnd - 1])) {
                    --nameEnd;
                }
                ProfileSection &section = mSections.emplace_back();
                section.mName = text.substr(name, nameEnd - name);
                section.mPlace = placeOf(from);
                continue;
            }
        }
        ProfileLine entry;
        entry.mKeyPlace = placeOf(from);
        // Within the line: a search to the end of the file, line by line, would take long.
        size_t nameEnd = std::min(std::u16string_view(text).substr(0, end).find(u'=', from), end);
        if (nameEnd < end) {
            size_t value = nameEnd + 1;
            while (value < end && IsBlank(text[value])) {
                ++value;
            }
            entry.mHasValue = true;
            entry.mValue = text.substr(value, end - value);
            entry.mValuePlace = placeOf(value < end ? value : nameEnd);
            while (nameEnd > from && IsBlank(text[nameEnd - 1])) {
                --nameEnd;
            }
        }
        entry.mKey = text.substr(from, nameEnd - from);
        // Of several lines without a key in a row the platform takes the first.
        std::vector<ProfileLine> &lines = mSections.back().mLines;
        if (!entry.mKey.empty() || lines.empty() || !UpToNul(lines.back().mKey).empty()) {
            lines.push_back(std::move(entry));
        }
    }
}

const ProfileSection *CProfileFile::Find(std::u16string_view name) const
{
    const auto found = std::find_if(mSections.begin(), mSections.end(), [&](const ProfileSection &section) {
        return SameName(UpToNul(section.mName), name);
    });
    return found == mSections.end() ? nullptr : &*found;
}

std::string_view CProfileFile::LineText(uint32_t line) const
{
    if (line == 0 || line > mLineStarts.size()) {
        return {};
    }
    const size_t from = mLineStarts[line - 1];
    const size_t end = line < mLineStarts.size() ? mLineStarts[line] : mBytes.size();
    std::string_view text = std::string_view(mBytes).substr(from, end - from);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    return text;
}

std::u16string_view UpToNul(std::u16string_view text)
{
    return text.substr(0, text.find(u'\0'));
}

bool SameName(std::u16string_view left, std::u16string_view right)
{
    const auto lower = [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char16_t a, char16_t b) { return lower(a) == lower(b); });
}

const ProfileLine *FindKey(const ProfileSection &section, std::u16string_view key)
{
    const auto found = std::find_if(section.mLines.begin(), section.mLines.end(),
                                    [&](const ProfileLine &line) { return SameName(UpToNul(line.mKey), key); });
    return found == section.mLines.end() ? nullptr : &*found;
}
