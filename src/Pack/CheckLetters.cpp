// Letters beyond ASCII: what the bytes of a file say on the machines that it is for.
#include <algorithm>

#include "Pack/CheckContext.h"

namespace {

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsUtf8(std::string_view text)
{
    const std::u16string wide = WideOfUtf8(text);
    return wide.find(u'\xFFFD') == std::u16string::npos;
}

// The bytes of a line's value.
std::string_view BytesOf(const CProfileFile &file, const ProfileLine &line)
{
    const std::string_view text = file.LineText(line.mValuePlace.mLine);
    return text.substr(std::min<size_t>(line.mValuePlace.mColumn - 1, text.size()));
}

// The first byte of a character whose second one is a back-slash that nothing stands up for.
size_t FindSplit(const CCodePage &codePage, std::string_view bytes)
{
    std::vector<uint32_t> places;
    codePage.ToWide(bytes, &places);
    for (size_t at = 0; at + 1 < places.size(); ++at) {
        const bool split = places[at + 1] - places[at] == 2 && bytes[places[at] + 1] == '\\';
        if (split && (places[at + 1] >= bytes.size() || bytes[places[at + 1]] != '\\')) {
            return places[at];
        }
    }
    return std::string_view::npos;
}

struct WordsCheck {
    CheckContext &mContext;
    uint32_t mFile;
    const std::string &mLanguage;
    const CCodePage &mCodePage;

    void Tell(ECheck check, const ProfileLine &line, const std::string &text) const
    {
        mContext.mFound.Add(check, CPackageModel::PlaceOfValue(&line, mFile), text);
    }

    void CheckLine(const ProfileLine &line, bool utf8) const
    {
        const std::string page = "code page " + std::to_string(mCodePage.Number());
        const CProfileFile &file = mContext.mModel.File(mFile);
        if (file.Encoding() != EProfileEncoding::ECodePage) {
            if (!mCodePage.Fits(line.mValue)) {
                Tell(ECheckWrongCodePage, line,
                     "the program works in " + page + ", which has not all of these letters");
            }
            return;
        }
        const std::string_view bytes = BytesOf(file, line);
        if (!line.mHasValue || IsAscii(bytes)) {
            return;
        }
        if (utf8) {
            Tell(ECheckWrongCodePage, line, "this is UTF-8; words of " + mLanguage + " are read in " + page);
        } else if (mCodePage.FromWide(mCodePage.ToWide(bytes)) != bytes) {
            Tell(ECheckWrongCodePage, line, "these bytes are no text in " + page);
        } else if (const size_t split = FindSplit(mCodePage, bytes); split != std::string_view::npos) {
            ScriptPlace place = CPackageModel::PlaceOfValue(&line, mFile);
            place.mColumn += static_cast<uint32_t>(split);
            place.mLength = 2;
            mContext.mFound.Add(ECheckSplitCharacter, place,
                                "the second byte of this character is read as a back-slash: write that byte twice");
        }
    }
};

void CheckWords(CheckContext &context, uint32_t file, const ProfileSection &section, const std::string &language)
{
    const CCodePage codePage(CodePageOf(language));
    const WordsCheck check{context, file, language, codePage};
    std::string all;
    for (const ProfileLine &line : section.mLines) {
        all += line.mHasValue && !line.IsComment() ? std::string(BytesOf(context.mModel.File(file), line)) + "\n" : "";
    }
    const bool utf8 = !IsAscii(all) && IsUtf8(all);
    for (const ProfileLine &line : section.mLines) {
        if (!line.IsComment()) {
            check.CheckLine(line, utf8);
        }
    }
}

} // namespace

void CheckLetters(CheckContext &context)
{
    for (uint32_t file = 0; file < context.mModel.Files().size(); ++file) {
        for (const ProfileSection &section : context.mModel.File(file).Sections()) {
            const std::string name = gCodePage.FromWide(section.mName);
            if (context.mModel.IsLanguageSection(name)) {
                CheckWords(context, file, section, name);
            }
        }
    }
    ForEachStep(context, [&](const CheckedStep &checked) {
        const std::string &raw = checked.mStep.mLine.Raw();
        if (!IsAscii(raw) && !context.mModel.IsLanguageSection(checked.mGroup.mName)) {
            const auto first = static_cast<size_t>(
                std::find_if(raw.begin(), raw.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; }) -
                raw.begin());
            context.mFound.Add(
                ECheckMachineLetters, checked.mStep.mLine.PlaceOf(first),
                "what this letter is depends on the machine's code page; a ^word^ of a language does not");
        }
    });
}
