#include "Pack/ProfileReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

// What the wide functions of the platform see: text up to the first NUL.
std::u16string_view Text(std::u16string_view text)
{
    return text.substr(0, text.find(u'\0'));
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
    const ProfileSection *const found = opened == nullptr ? nullptr : opened->Find(mCodePage.ToWide(section));
    const ProfileLine *const line = found == nullptr ? nullptr : FindKey(*found, mCodePage.ToWide(key));
    return line != nullptr && line->mHasValue ? line : nullptr;
}

uint32_t CProfileReader::ReadValue(const std::string &file, const std::string &section, const std::string &key,
                                   const std::string &defaultValue, char *buffer_O, uint32_t size)
{
    const ProfileLine *const line = ValueLine(file, section, key);
    std::u16string value;
    if (line != nullptr) {
        value = Text(line->mValue);
        if (value.size() > 1 && (value.front() == u'"' || value.front() == u'\'') && value.back() == value.front()) {
            value = value.substr(1, value.size() - 2);
        }
    } else {
        value = mCodePage.ToWide(defaultValue);
        value.erase(value.find_last_not_of(u' ') + 1);
    }
    std::string bytes = mCodePage.FromWide(value.substr(0, size == 0 ? 0 : size - 1));
    bytes.resize(std::min<size_t>(bytes.size(), size == 0 ? 0 : size - 1));
    std::memcpy(buffer_O, bytes.c_str(), bytes.size() + 1);
    return static_cast<uint32_t>(bytes.size());
}

std::vector<SectionLine> CProfileReader::SectionLines(const std::string &file, const std::string &section, bool *cut_O,
                                                      uint32_t size)
{
    std::vector<SectionLine> lines;
    const CProfileFile *const opened = File(file);
    const ProfileSection *const found = opened == nullptr ? nullptr : opened->Find(mCodePage.ToWide(section));
    if (cut_O != nullptr) {
        *cut_O = false;
    }
    if (found == nullptr) {
        return lines;
    }
    uint32_t used = 0;
    for (const ProfileLine &line : found->mLines) {
        if (line.IsComment()) {
            continue;
        }
        std::u16string text(Text(line.mKey));
        if (line.mHasValue) {
            text += u'=';
            text += Text(line.mValue);
        }
        std::string bytes = mCodePage.FromWide(text);
        if (used + bytes.size() + 2 > size) {
            bytes.resize(size - 2 - used);
            lines.push_back({bytes, &line});
            if (cut_O != nullptr) {
                *cut_O = true;
            }
            break;
        }
        used += static_cast<uint32_t>(bytes.size()) + 1;
        lines.push_back({std::move(bytes), &line});
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
    return cut ? size - 2 : used;
}

uint32_t CProfileReader::ReadNumber(const std::string &file, const std::string &section, const std::string &key,
                                    uint32_t defaultValue)
{
    char text[30];
    if (ReadValue(file, section, key, "", text, sizeof text) == 0) {
        return defaultValue;
    }
    return static_cast<uint32_t>(std::atoi(text));
}
