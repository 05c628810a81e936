// A file of sections and keys, cut as the platform's profile functions cut it, with the place of each piece. Blanks are
// gone where the platform drops them; nothing is left out: comments, lines without a key, sections and keys that come a
// second time stand here, too, and those who look for them find them in the order of the file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Pack/CodePage.h"

// Lines count from 1 as the platform parts them; columns count bytes of the line in the file, from 1.
struct ProfilePlace {
    uint32_t mLine = 0; // 0: no place
    uint32_t mColumn = 0;
};

// A line inside a section: key=value, or a key alone.
struct ProfileLine {
    std::u16string mKey;
    std::u16string mValue;  // with its quotes
    bool mHasValue = false; // there is a "="
    ProfilePlace mKeyPlace;
    ProfilePlace mValuePlace; // of the value's first letter; the "=" when it is empty and has a value

    bool IsComment() const { return !mKey.empty() && mKey.front() == u';'; }
};

struct ProfileSection {
    std::u16string mName;
    ProfilePlace mPlace; // of the "["; none for what stands in front of the first section
    std::vector<ProfileLine> mLines;
};

enum class EProfileEncoding { ECodePage, EUtf8, EUtf16, EUtf16Swapped };

class CProfileFile {
public:
    CProfileFile() = default;
    CProfileFile(std::string bytes, const CCodePage &codePage);

    const std::vector<ProfileSection> &Sections() const { return mSections; } // the first has no name and no place
    EProfileEncoding Encoding() const { return mEncoding; }

    // The first section of a name; null when there is none.
    const ProfileSection *Find(std::u16string_view name) const;

    // How many lines there are, and the bytes of one without its line end; empty for a line that is not there.
    uint32_t LineCount() const { return static_cast<uint32_t>(mLineStarts.size()); }
    std::string_view LineText(uint32_t line) const;

private:
    void Cut(const std::u16string &text, const std::vector<uint32_t> &places);

    std::string mBytes;
    EProfileEncoding mEncoding = EProfileEncoding::ECodePage;
    std::vector<ProfileSection> mSections;
    std::vector<uint32_t> mLineStarts; // places in the bytes
};

// A text as the platform's functions see it, which end at the first NUL.
std::u16string_view UpToNul(std::u16string_view text);

// Whether two names are the same to the platform: case does not count.
bool SameName(std::u16string_view left, std::u16string_view right);

// The first line of a key in a section; null when there is none.
const ProfileLine *FindKey(const ProfileSection &section, std::u16string_view key);
