#include "UI/PageLayout.h"

#include <algorithm>

#include "Common/Trace.h"

namespace {

constexpr int32_t kTextHeightMin = 6;
constexpr int32_t kTextHeightMax = 14;
constexpr uint32_t kMarginMax = 50;
constexpr uint32_t kMarginAdded = 5;

constexpr int32_t kInnerWidth = 474;
constexpr int32_t kHalfInnerWidth = kInnerWidth / 2;
constexpr int32_t kRightEdge = 468; // of the right button
constexpr int32_t kLeftEdge = 6;    // of the left button
constexpr int32_t kPageButtonBottom = 160;
constexpr int32_t kPageTextArea = 170;
constexpr int32_t kPageTextLines = 8;

constexpr int32_t kLicenseButtonBottom = 325;
constexpr int32_t kLicenseTextTop = 5;
constexpr int32_t kLicenseTextLines = 6;
constexpr int32_t kAgreementHeight = 320;

// Numbers of a script can be any 32 bits; a sum that leaves them wraps, as the platform's own arithmetic does.
int32_t Wrapped(int64_t number)
{
    return static_cast<int32_t>(static_cast<uint32_t>(number));
}

int32_t TextWidth(const PageMetrics &metrics)
{
    return Wrapped((kHalfInnerWidth - int64_t{metrics.mTextMargin}) * 2);
}

} // namespace

int32_t BoundedTextHeight(uint32_t read)
{
    return std::clamp(static_cast<int32_t>(read), kTextHeightMin, kTextHeightMax);
}

uint32_t BoundedTextMargin(uint32_t read)
{
    return std::min(read, kMarginMax) + kMarginAdded;
}

PageLayout LayOutPage(const PageMetrics &metrics, bool hasLeft, bool hasRight)
{
    const bool both = hasLeft && hasRight;
    const int32_t width = std::min(metrics.mButtonWidth, kInnerWidth);
    const int64_t height = metrics.mButtonHeight;
    const int32_t middle = Wrapped(kInnerWidth - int64_t{width}) / 2;
    const int32_t y = Wrapped(kPageButtonBottom - height);
    const int32_t textHeight = kPageTextLines * metrics.mTextHeight;

    PageLayout layout;
    layout.mLeft = {both ? kLeftEdge : middle, y, width, metrics.mButtonHeight};
    layout.mRight = {both ? Wrapped(kRightEdge - int64_t{width}) : middle, y, width, metrics.mButtonHeight};
    layout.mText = {Wrapped(metrics.mTextMargin), Wrapped(kPageTextArea - height - textHeight) / 2, TextWidth(metrics),
                    textHeight};
    return layout;
}

LicenseLayout LayOutLicense(const PageMetrics &metrics)
{
    const int32_t width = std::min(metrics.mButtonWidth, kHalfInnerWidth);
    const int64_t height = metrics.mButtonHeight;
    const int32_t buttonY = Wrapped(kLicenseButtonBottom - height);
    const int32_t margin = Wrapped(metrics.mTextMargin);
    const int32_t textWidth = TextWidth(metrics);
    const int32_t textHeight = kLicenseTextLines * metrics.mTextHeight;

    LicenseLayout layout;
    // Twice the distance: the two buttons stand side by side at the right edge.
    layout.mAccept = {Wrapped((kRightEdge / 2 - int64_t{width}) * 2), buttonY, width, metrics.mButtonHeight};
    layout.mDecline = {Wrapped(kRightEdge - int64_t{width}), buttonY, width, metrics.mButtonHeight};
    layout.mLowerText = {margin, Wrapped(kLicenseButtonBottom - textHeight - height), textWidth, textHeight};
    layout.mUpperText = {margin, kLicenseTextTop, textWidth, textHeight};
    layout.mAgreement = {5, 4 * metrics.mTextHeight + 10, 464,
                         Wrapped(kAgreementHeight - 12 * int64_t{metrics.mTextHeight} - height)};
    return layout;
}

void ExpectInside(const ControlPlace &place)
{
    if (place.mX < 0) {
        traceExpectation("x >= 0");
    }
    if (place.mY < 0) {
        traceExpectation("y >= 0");
    }
    if (place.mWidth < 0) {
        traceExpectation("width >= 0");
    }
    if (place.mHeight < 0) {
        traceExpectation("height >= 0");
    }
}

WindowCorner Centred(int32_t left, int32_t top, int32_t right, int32_t bottom, const WindowSize &size)
{
    return {((right - left - size.mWidth) >> 1) + left, ((bottom - top - size.mHeight) >> 1) + top};
}
