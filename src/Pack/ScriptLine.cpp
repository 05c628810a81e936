#include "Pack/ScriptLine.h"

#include <algorithm>

#include "Common/Escapes.h"

namespace {

// The text of a piece that holds no "\0", by the program's own reader.
std::string TextOf(const std::string &raw)
{
    std::string section = raw;
    section.append(2, '\0');
    std::string text = UnescapeSection(section.data(), section.size());
    text.resize(std::min(text.size(), text.find('\0')));
    return text;
}

} // namespace

std::vector<CScriptLine> CScriptLine::Cut(const SectionLine &line, uint32_t file)
{
    std::vector<CScriptLine> pieces;
    const auto take = [&](size_t from, size_t end) {
        CScriptLine piece;
        piece.mRaw = line.mText.substr(from, end - from);
        piece.mText = TextOf(piece.mRaw);
        piece.mFrom = from;
        piece.mEquals = line.mLine->mHasValue ? line.mText.find('=') : std::string::npos;
        piece.mFile = file;
        piece.mKey = line.mLine->mKeyPlace;
        piece.mValue = line.mLine->mValuePlace;
        piece.mEndsInNul = end < line.mText.size();
        pieces.push_back(std::move(piece));
    };
    size_t from = 0;
    for (size_t at = line.mText.find('\\'); at != std::string::npos && at + 1 < line.mText.size();
         at = line.mText.find('\\', at + 2)) {
        if (line.mText[at + 1] == '0') {
            take(from, at);
            from = at + 2;
        }
    }
    take(from, line.mText.size());
    return pieces;
}

ScriptPlace CScriptLine::PlaceOf(size_t rawOffset, size_t length) const
{
    const size_t at = mFrom + rawOffset;
    const bool inValue = mEquals != std::string::npos && at > mEquals;
    const ProfilePlace &place = inValue ? mValue : mKey;
    const size_t behind = inValue ? at - mEquals - 1 : at;
    return {mFile, place.mLine, place.mColumn + static_cast<uint32_t>(behind),
            static_cast<uint32_t>(std::max<size_t>(length, 1))};
}

// Every escape is two characters that make one.
size_t CScriptLine::RawOffset(size_t textOffset) const
{
    size_t at = 0;
    for (size_t passed = 0; passed < textOffset && at < mRaw.size(); ++passed) {
        at += mRaw[at] == '\\' ? 2 : 1;
    }
    return std::min(at, mRaw.size());
}
