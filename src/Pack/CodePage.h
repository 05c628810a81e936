// The ANSI code pages of Windows, as its own conversions have them: what a byte says, and what is written for a letter
// that the code page lacks (the nearest letter, or a question mark).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CCodePage {
public:
    // A code page by its number; throws std::invalid_argument for one that is not known.
    explicit CCodePage(uint32_t number = 1252);

    // The numbers that are known, in rising order.
    static std::vector<uint32_t> Known();

    uint32_t Number() const { return mNumber; }

    // Text of the code page as wide text. Any bytes are taken. `places_O` gets the place in `bytes` of each unit of the
    // answer and the size behind the last, when it is asked for.
    std::u16string ToWide(std::string_view bytes, std::vector<uint32_t> *places_O = nullptr) const;

    // An argument of one of the platform's functions as wide text: half a pair at its end is dropped.
    std::u16string ArgumentToWide(std::string_view text) const;

    // Wide text in the code page. Answers the same for half a pair as for a letter that is not to be had.
    std::string FromWide(std::u16string_view text) const;

    // Whether the code page holds the text as it is, so that it comes back the same.
    bool Fits(std::u16string_view text) const { return ToWide(FromWide(text)) == text; }

    std::string ToUtf8(std::string_view bytes) const;
    std::string FromUtf8(std::string_view text) const;

private:
    char16_t Letter(uint8_t lead, uint8_t trail) const;

    uint32_t mNumber;
    const struct CodePageTables *mTables;
};

// UTF-8 and wide text; what is malformed becomes U+FFFD, in the way of the platform.
std::u16string WideOfUtf8(std::string_view text, std::vector<uint32_t> *places_O = nullptr);
std::string Utf8OfWide(std::u16string_view text);

// The code page of the machine that the tool works for: the option --code-page, western Europe without it.
extern CCodePage gCodePage;
