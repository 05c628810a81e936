#include "Pack/ProfileReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

// The number at the front of a text: blanks, a sign, 0b, 0o or 0x, digits. One that is too large wraps around.
uint32_t NumberOf(std::string_view text)
{
    size_t at = 0;
    while (at < text.size() && static_cast<uint8_t>(text[at]) <= ' ') {
        ++at;
    }
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        ++at;
    }
    uint32_t base = 10;
    const std::string_view prefix = text.substr(at, 2);
    if (prefix == "0b" || prefix == "0o" || prefix == "0x") {
        base = prefix == "0b" ? 2 : prefix == "0o" ? 8 : 16;
        at += 2;
    }
    uint32_t number = 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'A' && c <= 'Z' ? c - 'A' + 10
                          : c >= 'a' && c <= 'z' ? c - 'a' + 10
                                                 : -1;
        if (digit < 0 || static_cast<uint32_t>(digit) >= base) {
            break;
        }
        number = number * base + static_cast<uint32_t>(digit);
    }
    return negative ? 0 - number : number;
}

} // namespace

CProfileReader::CProfileReader(IScriptSource &source, CCodePage codePage, std::string mainScript)
    : mSource(source), mCodePage(codePage), mMainScript(std::move(mainScript))
{
}

const CProfileFile *CProfileReader::Opened(const std::string &file)
{
    auto at = mFiles.find(file);
    if (at == mFiles.end()) {
        std::optional<std::string> bytes = mSource.ReadFile(file);
        at = mFiles.emplace(file, std::nullopt).first;
        if (bytes) {
            at->second.emplace(std::move(*bytes), mCodePage);
        }
    }
    return at->second ? &*at->second : nullptr;
}

bool CProfileReader::CanOpen(const std::string &file)
{
    return Opened(file) != nullptr;
}

const CProfileFile *CProfileReader::File(const std::string &file)
{
    return file.find_first_of("\\/:") == std::string::npos ? nullptr : Opened(file);
}

const ProfileLine *CProfileReader::ValueLine(const std::string &file, const std::string &section,
                                             const std::string &key)
{
    const CProfileFile *const opened = File(file);
    const ProfileSection *const found = opened == nullptr ? nullptr : opened->Find(mCodePage.ArgumentToWide(section));
    const ProfileLine *const line = found == nullptr ? nullptr : FindKey(*found, mCodePage.ArgumentToWide(key));
    return line != nullptr && line->mHasValue ? line : nullptr;
}

uint32_t CProfileReader::ReadValue(const std::string &file, const std::string &section, const std::string &key,
                                   const std::string &defaultValue, char *buffer_O, uint32_t size)
{
    const ProfileLine *const line = ValueLine(file, section, key);
    std::u16string value(line != nullptr ? UpToNul(line->mValue) : mCodePage.ArgumentToWide(defaultValue));
    if (line == nullptr) {
        value.erase(value.find_last_not_of(u' ') + 1);
    }
    const bool quoted =
        value.size() > 1 && (value.front() == u'"' || value.front() == u'\'') && value.back() == value.front();
    if (quoted) {
        value.erase(0, 1);
    }
    const size_t length = value.size(), room = size == 0 ? 0 : size - 1;
    value.resize(std::min(length, room));
    // The closing quote goes at last: from a text that just did not fit, its last letter goes.
    if (quoted && length <= size && !value.empty()) {
        value.pop_back();
    }
    const std::string bytes = mCodePage.FromWide(value);
    if (bytes.size() <= room) {
        std::memcpy(buffer_O, bytes.c_str(), bytes.size() + 1);
        return static_cast<uint32_t>(bytes.size());
    }
    // A pair of bytes that does not fit leaves what the buffer held.
    size_t whole = 0;
    for (const char16_t &unit : value) {
        const size_t next = whole + mCodePage.FromWide(std::u16string_view(&unit, 1)).size();
        if (next > room) {
            break;
        }
        whole = next;
    }
    std::memcpy(buffer_O, bytes.data(), whole);
    buffer_O[room] = '\0';
    return static_cast<uint32_t>(room);
}

std::vector<SectionLine> CProfileReader::SectionLines(const std::string &file, const std::string &section, bool *cut_O,
                                                      uint32_t size)
{
    std::vector<SectionLine> lines;
    const CProfileFile *const opened = File(file);
    const ProfileSection *const found = opened == nullptr ? nullptr : opened->Find(mCodePage.ArgumentToWide(section));
    if (cut_O != nullptr) {
        *cut_O = false;
    }
    if (found == nullptr) {
        return lines;
    }
    size_t used = 0;
    for (const ProfileLine &line : found->mLines) {
        std::u16string text(UpToNul(line.mKey));
        if (line.IsComment() || (text.empty() && !line.mHasValue)) {
            continue;
        }
        if (line.mHasValue) {
            text += u'=';
            text += UpToNul(line.mValue);
        }
        std::string bytes = mCodePage.FromWide(text);
        used += bytes.size() + 1;
        lines.push_back({std::move(bytes), &line});
    }
    // What fills the buffer to its last byte counts as cut, too, although nothing is missing.
    if (used + 1 >= size) {
        const size_t kept = size < 2 ? 0 : size - 2;
        while (!lines.empty() && used - lines.back().mText.size() - 1 >= kept) {
            used -= lines.back().mText.size() + 1;
            lines.pop_back();
        }
        if (!lines.empty()) {
            const size_t last = kept - (used - lines.back().mText.size() - 1);
            lines.back().mText.resize(std::min(last, lines.back().mText.size()));
        }
        if (cut_O != nullptr) {
            *cut_O = true;
        }
    }
    return lines;
}

uint32_t CProfileReader::ReadSection(const std::string &file, const std::string &section, char *buffer_O, uint32_t size)
{
    bool cut = false;
    uint32_t used = 0;
    for (const SectionLine &line : SectionLines(file, section, &cut, size)) {
        std::memcpy(buffer_O + used, line.mText.c_str(), line.mText.size() + 1);
        used += static_cast<uint32_t>(line.mText.size()) + 1;
    }
    buffer_O[used] = '\0';
    if (size > 1 && (used == 0 || cut)) {
        buffer_O[used == 0 ? 1 : size - 2] = '\0';
        buffer_O[size - 1] = '\0';
    }
    return cut ? size - 2 : used;
}

uint32_t CProfileReader::ReadNumber(const std::string &file, const std::string &section, const std::string &key,
                                    uint32_t defaultValue)
{
    char text[30];
    if (ReadValue(file, section, key, "", text, sizeof text) == 0) {
        return defaultValue;
    }
    return NumberOf(text);
}
