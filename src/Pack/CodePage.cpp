#include "Pack/CodePage.h"

#include <array>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace {

struct CodePageRow {
    uint32_t mNumber;
    char16_t mUnknown; // for bytes that mean nothing
    uint8_t mFirstLead, mLastLead, mFirstTrail, mLastTrail;
    std::u16string_view mSingles; // of the bytes from 0x80 on
    std::u16string_view mPairs;
    std::u16string_view mNearest; // a letter that the code page lacks, and the one that is written for it
    std::vector<std::pair<char16_t, uint16_t>> mNearestCodes;
};

constexpr char16_t kNone = u' ';

const std::vector<CodePageRow> &Rows()
{
    static const std::vector<CodePageRow> rows = {
#include "Pack/CodePageData.inc"
    };
    return rows;
}

} // namespace

struct CodePageTables {
    std::array<char16_t, 256> mSingles{};
    std::array<bool, 256> mIsLead{};
    std::vector<char16_t> mPairs; // 256 for each lead byte, from the first one on
    uint8_t mFirstLead = 0;
    std::vector<uint16_t> mCodes; // of each wide unit

    explicit CodePageTables(const CodePageRow &row) : mFirstLead(row.mFirstLead), mCodes(0x10000, '?')
    {
        for (size_t byte = 0x100; byte-- > 0;) {
            const char16_t letter = byte < 0x80 ? static_cast<char16_t>(byte) : row.mSingles[byte - 0x80];
            mSingles[byte] = letter == kNone && byte >= 0x80 ? row.mUnknown : letter;
        }
        TakePairs(row);
        for (size_t byte = 0x100; byte-- > 0;) {
            if (byte < 0x80 || row.mSingles[byte - 0x80] != kNone) {
                mCodes[mSingles[byte]] = static_cast<uint16_t>(byte);
            }
        }
        for (size_t at = 0; at + 1 < row.mNearest.size(); at += 2) {
            mCodes[row.mNearest[at]] = mCodes[row.mNearest[at + 1]];
        }
        for (const auto &[letter, code] : row.mNearestCodes) {
            mCodes[letter] = code;
        }
    }

private:
    // A letter with several codes is written with the lowest.
    void TakePairs(const CodePageRow &row)
    {
        if (row.mPairs.empty()) {
            return;
        }
        const size_t trails = row.mLastTrail - row.mFirstTrail + 1U;
        mPairs.assign((row.mLastLead - row.mFirstLead + size_t{1}) * 0x100, row.mUnknown);
        for (size_t lead = row.mFirstLead; lead <= row.mLastLead; ++lead) {
            mIsLead[lead] = row.mSingles[lead - 0x80] == kNone;
        }
        for (size_t at = row.mPairs.size(); at-- > 0;) {
            const size_t lead = row.mFirstLead + at / trails, trail = row.mFirstTrail + at % trails;
            if (row.mPairs[at] != kNone) {
                mPairs[(lead - row.mFirstLead) * 0x100 + trail] = row.mPairs[at];
                mCodes[row.mPairs[at]] = static_cast<uint16_t>(lead << 8 | trail);
            }
        }
    }
};

CCodePage gCodePage;

CCodePage::CCodePage(uint32_t number) : mNumber(number), mTables(nullptr)
{
    static std::mutex lock;
    static std::vector<std::pair<uint32_t, std::unique_ptr<CodePageTables>>> made;
    const std::lock_guard<std::mutex> locked(lock);
    for (const auto &[known, tables] : made) {
        if (known == number) {
            mTables = tables.get();
            return;
        }
    }
    for (const CodePageRow &row : Rows()) {
        if (row.mNumber == number) {
            made.emplace_back(number, std::make_unique<CodePageTables>(row));
            mTables = made.back().second.get();
            return;
        }
    }
    throw std::invalid_argument("no such code page: " + std::to_string(number));
}

std::vector<uint32_t> CCodePage::Known()
{
    std::vector<uint32_t> numbers;
    for (const CodePageRow &row : Rows()) {
        numbers.push_back(row.mNumber);
    }
    return numbers;
}

std::u16string CCodePage::ToWide(std::string_view bytes, std::vector<uint32_t> *places_O) const
{
    std::u16string wide;
    wide.reserve(bytes.size());
    if (places_O != nullptr) {
        places_O->clear();
        places_O->reserve(bytes.size() + 1);
    }
    for (size_t at = 0; at < bytes.size(); ++at) {
        const auto byte = static_cast<uint8_t>(bytes[at]);
        if (places_O != nullptr) {
            places_O->push_back(static_cast<uint32_t>(at));
        }
        // A byte that leads a pair takes whatever comes, unless that is a NUL.
        if (mTables->mIsLead[byte] && at + 1 < bytes.size() && bytes[at + 1] != '\0') {
            ++at;
            wide.push_back(mTables->mPairs[(byte - mTables->mFirstLead) * 0x100U + static_cast<uint8_t>(bytes[at])]);
        } else {
            wide.push_back(mTables->mSingles[byte]);
        }
    }
    if (places_O != nullptr) {
        places_O->push_back(static_cast<uint32_t>(bytes.size()));
    }
    return wide;
}

std::u16string CCodePage::ArgumentToWide(std::string_view text) const
{
    std::vector<uint32_t> places;
    std::u16string wide = ToWide(text, &places);
    if (!wide.empty() && places[wide.size() - 1] + 1 == text.size() &&
        mTables->mIsLead[static_cast<uint8_t>(text.back())]) {
        wide.pop_back();
    }
    return wide;
}

std::string CCodePage::FromWide(std::u16string_view text) const
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const char16_t unit : text) {
        const uint16_t code = mTables->mCodes[unit];
        if (code > 0xFF) {
            bytes.push_back(static_cast<char>(code >> 8));
        }
        bytes.push_back(static_cast<char>(code & 0xFF));
    }
    return bytes;
}

std::string CCodePage::ToUtf8(std::string_view bytes) const
{
    return Utf8OfWide(ToWide(bytes));
}

std::string CCodePage::FromUtf8(std::string_view text) const
{
    return FromWide(WideOfUtf8(text));
}

namespace {

// Takes the letter that begins at a place of a text in UTF-8 and moves the place behind it.
uint32_t TakeUtf8(std::string_view text, size_t &at_I)
{
    constexpr uint32_t kMalformed = 0xFFFD;
    const auto lead = static_cast<uint8_t>(text[at_I++]);
    if (lead < 0x80) {
        return lead;
    }
    const size_t more = lead < 0xC2 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF5 ? 3 : 0;
    if (more == 0) {
        return kMalformed;
    }
    if (text.size() - at_I < more) {
        at_I = text.size();
        return kMalformed;
    }
    uint32_t letter = lead & (0x3FU >> more);
    for (size_t taken = 1; taken <= more; ++taken) {
        const auto byte = static_cast<uint8_t>(text[at_I]);
        letter = letter << 6 | (byte & 0x3FU);
        if ((byte & 0xC0) != 0x80 || (more == 3 && taken == 2 && letter >= 0x110000 >> 6)) {
            return kMalformed;
        }
        ++at_I;
        // What is longer than needed, and halves of pairs.
        if ((more == 3 && taken == 1 && letter < 0x10) ||
            (more == 2 && taken == 1 && (letter < 0x20 || (letter >= 0xD800 >> 6 && letter <= 0xDFFF >> 6)))) {
            return kMalformed;
        }
    }
    return letter;
}

} // namespace

std::u16string WideOfUtf8(std::string_view text, std::vector<uint32_t> *places_O)
{
    std::u16string wide;
    wide.reserve(text.size());
    std::vector<uint32_t> places;
    for (size_t at = 0; at < text.size();) {
        const auto start = static_cast<uint32_t>(at);
        const uint32_t letter = TakeUtf8(text, at);
        places.push_back(start);
        if (letter > 0xFFFF) {
            places.push_back(start);
            wide.push_back(static_cast<char16_t>(0xD800 + ((letter - 0x10000) >> 10)));
            wide.push_back(static_cast<char16_t>(0xDC00 + (letter & 0x3FF)));
        } else {
            wide.push_back(static_cast<char16_t>(letter));
        }
    }
    places.push_back(static_cast<uint32_t>(text.size()));
    if (places_O != nullptr) {
        *places_O = std::move(places);
    }
    return wide;
}

std::string Utf8OfWide(std::u16string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (size_t at = 0; at < text.size(); ++at) {
        uint32_t letter = text[at];
        if (letter >= 0xD800 && letter < 0xE000) {
            if (letter < 0xDC00 && at + 1 < text.size() && text[at + 1] >= 0xDC00 && text[at + 1] < 0xE000) {
                letter = 0x10000 + ((letter - 0xD800) << 10) + (text[++at] - 0xDC00U);
            } else {
                letter = 0xFFFD;
            }
        }
        if (letter < 0x80) {
            bytes.push_back(static_cast<char>(letter));
            continue;
        }
        if (letter < 0x800) {
            bytes.push_back(static_cast<char>(0xC0 | letter >> 6));
        } else {
            if (letter < 0x10000) {
                bytes.push_back(static_cast<char>(0xE0 | letter >> 12));
            } else {
                bytes.push_back(static_cast<char>(0xF0 | letter >> 18));
                bytes.push_back(static_cast<char>(0x80 | (letter >> 12 & 0x3F)));
            }
            bytes.push_back(static_cast<char>(0x80 | (letter >> 6 & 0x3F)));
        }
        bytes.push_back(static_cast<char>(0x80 | (letter & 0x3F)));
    }
    return bytes;
}
