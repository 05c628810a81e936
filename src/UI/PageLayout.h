// Where the controls of a page stand, in pixels of the window's inner area. The numbers of a script are taken as they
// are: what they move out of the window is reported and made all the same.
#pragma once

#include <cstdint>

struct ControlPlace {
    int32_t mX = 0;
    int32_t mY = 0;
    int32_t mWidth = 0;
    int32_t mHeight = 0;

    bool operator==(const ControlPlace &other) const
    {
        return mX == other.mX && mY == other.mY && mWidth == other.mWidth && mHeight == other.mHeight;
    }
};

struct WindowSize {
    int32_t mWidth;
    int32_t mHeight;
};
constexpr WindowSize kPageSize = {480, 205};
constexpr WindowSize kLicenseSize = {480, 370};
constexpr WindowSize kProgressSize = {480, 215};

// What a script may say about sizes; defaults where it does not.
struct PageMetrics {
    int32_t mTextHeight = 8; // size of the fonts in points
    int32_t mButtonWidth = 170;
    int32_t mButtonHeight = 30;
    uint32_t mTextMargin = 0;
};

// Bounds of what was read: text of 6 to 14 points, a margin of at most 50, to which 5 are added.
int32_t BoundedTextHeight(uint32_t read);
uint32_t BoundedTextMargin(uint32_t read);

struct PageLayout {
    ControlPlace mLeft;
    ControlPlace mRight;
    ControlPlace mText;
};
// A page with a text and up to two buttons; one button alone stands in the middle.
PageLayout LayOutPage(const PageMetrics &metrics, bool hasLeft, bool hasRight);

struct LicenseLayout {
    ControlPlace mAccept;
    ControlPlace mDecline;
    ControlPlace mUpperText;
    ControlPlace mLowerText;
    ControlPlace mAgreement;
};
LicenseLayout LayOutLicense(const PageMetrics &metrics);

constexpr ControlPlace kBarPlace = {5, 80, 464, 20};
constexpr ControlPlace kProgressTextPlace = {5, 60, 474, 40};

// Reports each number of a place that is below zero.
void ExpectInside(const ControlPlace &place);

// Upper left corner of a window that is centred in the area from (left, top) to (right, bottom).
struct WindowCorner {
    int32_t mX;
    int32_t mY;
};
WindowCorner Centred(int32_t left, int32_t top, int32_t right, int32_t bottom, const WindowSize &size);
