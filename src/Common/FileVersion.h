// Version numbers of files, drivers and packages, and the order that installing goes by.
#pragma once

#include <cstdint>
#include <string>

// Five small numbers such as 5.3.5-5. A value type; all zero means that no version is known.
class FileVersion {
public:
    // Kind of a release, in the order of the plain operators.
    enum EReleaseKind : uint8_t {
        EUnknownVersion = 0,
        EAlphaVersion = 1,
        EBetaVersion = 2,
        EWebVersion = 3,
        EDevelopmentVersion = 4,
        EFinalVersion = 5,
    };

    // How a version is written as text or packed into a number. A plain integer: foreign numbers are allowed and
    // answered with an empty text, the number 0 or the zero value.
    enum EStyle : int {
        EStyleFull = 0,      // 5.3.5-5, with the letter of the release kind
        EStyleDotted = 1,    // 5.3.5.5
        EStyleThreePart = 2, // 5.3.5       packed 0x00MMmmvv
        EStyleShort = 3,     // 1.25        packed 0x00MM0000 + minor * 10 + variation
        EStyleHex = 4,       // major.minor in hexadecimal, packed 0xMMmm
        EStyleShortAlt = 5,  // text of EStyleShort, packing of EStyleThreePart
    };

    FileVersion() = default;
    FileVersion(uint8_t major, uint8_t minor, uint8_t variation, uint8_t release, uint8_t build);

    // Reads 5.3.5-5, 5.3.5.5, 6.1.0b12, 5.3.5 (a final build 0) or the short form 1.25. No text is refused: a
    // number keeps its low eight bits, a number that is missing repeats the one before it, a text without a
    // dot is the zero value. `bIsWeb_I` makes a long form a web release.
    FileVersion(const std::string &text, bool bIsWeb_I);

    // Unpacks a number of style 2 to 5; any other style asserts and gives the zero value.
    FileVersion(uint32_t number, int style);

    // Text of a style; empty for a style that does not exist. Asserts, without any effect on the result, that the
    // style leaves nothing out that this version has.
    std::string ToText(int style) const;

    // Number of a style 2 to 5, with assertions as ToText; 0 for any other style.
    uint32_t ToNumber(int style) const;

    bool IsSet() const { return (mMajor | mMinor | mVariation | mRelease | mBuild) != 0; }
    bool IsFinalOrWeb() const { return mRelease == EFinalVersion || mRelease == EWebVersion; }

    uint8_t Major() const { return mMajor; }
    uint8_t Minor() const { return mMinor; }
    uint8_t Variation() const { return mVariation; }
    int Release() const { return mRelease; }
    uint8_t Build() const { return mBuild; }

    // Field by field in storage order, so the kind outranks the build. Which of two versions is newer is a
    // question for IsNewerThan(), whose order is another one.
    bool operator==(const FileVersion &other) const { return Compare(other) == 0; }
    bool operator!=(const FileVersion &other) const { return Compare(other) != 0; }
    bool operator<=(const FileVersion &other) const { return Compare(other) <= 0; }
    bool operator>(const FileVersion &other) const { return Compare(other) > 0; }

private:
    // Below, equal or above 0 as this version sorts before, with or behind the other.
    int Compare(const FileVersion &other) const;

    uint8_t mMajor = 0;
    uint8_t mMinor = 0;
    uint8_t mVariation = 0;
    uint8_t mRelease = 0;
    uint8_t mBuild = 0;
};

// Whether `a` replaces `b`: an unknown version never does, and any known one replaces an unknown one. Behind the
// three numbers the build decides among final and web releases, and so a web release can follow a final one;
// as soon as one of the two is of another kind, the kind comes before the build. Strict: equal is not newer.
bool IsNewerThan(const FileVersion &a, const FileVersion &b);
