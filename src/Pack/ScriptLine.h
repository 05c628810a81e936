// The lines of a section as the program reads them, with the way back to the bytes of the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Pack/Diagnostics.h"
#include "Pack/ProfileReader.h"

// A piece of a line of a section: all of it, or what stands between two "\0", each of which begins a line of its own.
class CScriptLine {
public:
    // `line` is a line that SectionLines() has given, of file number `file`.
    static std::vector<CScriptLine> Cut(const SectionLine &line, uint32_t file);

    // The piece with its escapes, and as the program sees it.
    const std::string &Raw() const { return mRaw; }
    const std::string &Text() const { return mText; }

    // Whether "\0" ends it in the middle of its line.
    bool EndsInNul() const { return mEndsInNul; }

    // Where a byte of the raw piece stands in the file, with `length` bytes behind it.
    ScriptPlace PlaceOf(size_t rawOffset, size_t length = 1) const;

    // The place in the raw piece of a byte of the text.
    size_t RawOffset(size_t textOffset) const;

private:
    std::string mRaw;
    std::string mText;
    size_t mFrom = 0; // of the piece in its line
    size_t mEquals = 0;
    bool mEndsInNul = false;
    uint32_t mFile = 0;
    ProfilePlace mKey;   // of what stands in front of the first "="
    ProfilePlace mValue; // and of what stands behind it
};
