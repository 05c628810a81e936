#include "Common/FileVersion.h"

#include <cstdio>
#include <cstring>

#include "Common/Trace.h"

namespace {

// Letters of the release kinds as they are written, in the order of the kinds.
constexpr char kWrittenLetters[] = "?abwd-";
constexpr char kReadLetters[] = "AaBbWwFfDd-.?";

uint8_t ReleaseOfLetter(char letter)
{
    switch (letter) {
    case 'A':
    case 'a':
        return FileVersion::EAlphaVersion;
    case 'B':
    case 'b':
        return FileVersion::EBetaVersion;
    case 'W':
    case 'w':
        return FileVersion::EWebVersion;
    case 'D':
    case 'd':
        return FileVersion::EDevelopmentVersion;
    case '?':
        return FileVersion::EUnknownVersion;
    default:
        return FileVersion::EFinalVersion;
    }
}

// Takes blank-separated decimal integers off a text one by one. Once a number cannot be read the reader has
// failed for good, and every further call repeats the last number that was good (0 if there was none).
class CIntegerReader {
public:
    explicit CIntegerReader(const std::string &text) : mText(text) {}

    int32_t Next()
    {
        mFailed = mFailed || !Read();
        return mNumber;
    }

private:
    bool Read()
    {
        mAt = mText.find_first_not_of(" \t\n\v\f\r", mAt);
        if (mAt == std::string::npos) {
            return false;
        }
        const bool negative = mText[mAt] == '-';
        if (negative || mText[mAt] == '+') {
            ++mAt;
        }
        const size_t firstDigit = mAt;
        int64_t value = 0;
        for (; mAt < mText.size() && mText[mAt] >= '0' && mText[mAt] <= '9'; ++mAt) {
            value = value * 10 + (mText[mAt] - '0');
            if (value > INT64_C(0x80000000)) {
                return false; // more than an int holds
            }
        }
        value = negative ? -value : value;
        if (mAt == firstDigit || value > INT32_MAX) {
            return false;
        }
        mNumber = static_cast<int32_t>(value);
        return true;
    }

    const std::string &mText;
    size_t mAt = 0;
    int32_t mNumber = 0;
    bool mFailed = false;
};

uint8_t LowByte(int64_t number)
{
    return static_cast<uint8_t>(number & 0xFF);
}

} // namespace

FileVersion::FileVersion(uint8_t major, uint8_t minor, uint8_t variation, uint8_t release, uint8_t build)
    : mMajor(major), mMinor(minor), mVariation(variation), mRelease(release), mBuild(build)
{
}

FileVersion::FileVersion(const std::string &text, bool bIsWeb_I)
{
    std::string numbers = text;
    const size_t firstDot = numbers.find('.');
    if (firstDot == std::string::npos) {
        return;
    }
    numbers[firstDot] = ' ';
    const size_t secondDot = numbers.find('.', firstDot);
    if (secondDot == std::string::npos) {
        TVX_ASSERT(!bIsWeb_I);
        CIntegerReader reader(numbers);
        mMajor = LowByte(reader.Next());
        const int32_t minorAndVariation = reader.Next();
        mMinor = LowByte(minorAndVariation / 10);
        mVariation = LowByte(minorAndVariation % 10);
        return;
    }
    numbers[secondDot] = ' ';
    const size_t letter = numbers.find_first_of(kReadLetters, secondDot);
    if (letter == std::string::npos) {
        mRelease = EFinalVersion;
        numbers += " 0";
    } else {
        mRelease = ReleaseOfLetter(numbers[letter]);
        numbers[letter] = ' ';
    }
    CIntegerReader reader(numbers);
    mMajor = LowByte(reader.Next());
    mMinor = LowByte(reader.Next());
    mVariation = LowByte(reader.Next());
    mBuild = LowByte(reader.Next());
    if (bIsWeb_I) {
        mRelease = EWebVersion;
    }
}

FileVersion::FileVersion(uint32_t number, int style)
{
    switch (style) {
    case EStyleThreePart:
    case EStyleShortAlt:
        mMajor = LowByte(number >> 16);
        mMinor = LowByte(number >> 8);
        mVariation = LowByte(number);
        mRelease = style == EStyleThreePart ? EFinalVersion : EUnknownVersion;
        break;
    case EStyleShort:
        mMajor = LowByte(number >> 16);
        mMinor = LowByte((number & 0xFFFF) / 10);
        mVariation = LowByte((number & 0xFFFF) % 10);
        break;
    case EStyleHex:
        mMajor = LowByte(number >> 8);
        mMinor = LowByte(number);
        break;
    default:
        TVX_ASSERT(!"This style not supported from number");
        break;
    }
}

std::string FileVersion::ToText(int style) const
{
    char text[24] = "";
    switch (style) {
    case EStyleFull: {
        const char letter = mRelease <= EFinalVersion ? kWrittenLetters[mRelease] : kWrittenLetters[0];
        snprintf(text, sizeof text, "%u.%u.%u%c%u", mMajor, mMinor, mVariation, letter, mBuild);
        break;
    }
    case EStyleDotted:
        TVX_ASSERT(mRelease == FileVersion::EFinalVersion);
        snprintf(text, sizeof text, "%u.%u.%u.%u", mMajor, mMinor, mVariation, mBuild);
        break;
    case EStyleThreePart:
        TVX_ASSERT(mRelease == FileVersion::EFinalVersion);
        TVX_ASSERT(mBuild == 0);
        snprintf(text, sizeof text, "%u.%u.%u", mMajor, mMinor, mVariation);
        break;
    case EStyleShort:
    case EStyleShortAlt:
        TVX_ASSERT(mVariation < 10);
        TVX_ASSERT(mRelease == FileVersion::EUnknownVersion);
        TVX_ASSERT(mBuild == 0);
        snprintf(text, sizeof text, "%u.%u%u", mMajor, mMinor, mVariation);
        break;
    case EStyleHex:
        TVX_ASSERT(mVariation == 0);
        TVX_ASSERT(mBuild == 0);
        TVX_ASSERT(mRelease == FileVersion::EUnknownVersion);
        snprintf(text, sizeof text, "%x.%x", mMajor, mMinor);
        break;
    default:
        break;
    }
    return text;
}

uint32_t FileVersion::ToNumber(int style) const
{
    switch (style) {
    case EStyleThreePart:
        TVX_ASSERT(mRelease == FileVersion::EFinalVersion);
        return uint32_t{mMajor} << 16 | uint32_t{mMinor} << 8 | mVariation;
    case EStyleShort:
        TVX_ASSERT(mMinor < 25);
        TVX_ASSERT(mVariation < 10);
        TVX_ASSERT(mRelease == FileVersion::EUnknownVersion);
        return (uint32_t{mMajor} << 16) + mMinor * 10u + mVariation;
    case EStyleHex:
        return mMajor * 256u + mMinor;
    case EStyleShortAlt:
        TVX_ASSERT(mRelease == FileVersion::EUnknownVersion);
        return uint32_t{mMajor} << 16 | uint32_t{mMinor} << 8 | mVariation;
    default:
        TVX_ASSERT(!"This style not supported as number");
        return 0;
    }
}

int FileVersion::Compare(const FileVersion &other) const
{
    static_assert(sizeof(FileVersion) == 5, "the fields are compared as bytes in their storage order");
    return memcmp(this, &other, sizeof *this);
}

bool IsNewerThan(const FileVersion &a, const FileVersion &b)
{
    if (!a.IsSet() || !b.IsSet()) {
        return a.IsSet();
    }
    if (a.Major() != b.Major()) {
        return a.Major() > b.Major();
    }
    if (a.Minor() != b.Minor()) {
        return a.Minor() > b.Minor();
    }
    if (a.Variation() != b.Variation()) {
        return a.Variation() > b.Variation();
    }
    if (a.IsFinalOrWeb() && b.IsFinalOrWeb() && a.Build() != b.Build()) {
        return a.Build() > b.Build();
    }
    if (a.Release() != b.Release()) {
        return a.Release() > b.Release();
    }
    return a.Build() > b.Build();
}
