#include "UI/BarRules.h"
#include "UI/PageKeyboard.h"
#include "UI/PageLayout.h"
#include "UI/PageRules.h"

#include <sstream>

#include "Tables.h"
#include "TraceRecorder.h"

namespace {

// A page by its title, with its buttons when they are to be told.
std::string Page(EPage page, bool buttons)
{
    if (page == EPageLicense) {
        return "License";
    }
    const PageKeys &keys = KeysOf(page);
    EXPECT_EQ(keys.mPage, page);
    const std::string title(keys.mTitle, std::string(keys.mTitle).rfind("Title"));
    EXPECT_EQ(keys.mText, title + "Text");
    std::string text = title;
    if (buttons) {
        text += keys.HasLeft() ? " " + std::to_string(keys.LeftId()) + " " + keys.mLeft : "";
        text += keys.HasRight() ? std::string(" 130 ") + keys.mRight : "";
    }
    return text;
}

std::string Told(const PageAction &action, bool buttons)
{
    std::string text;
    const auto add = [&text](bool holds, const std::string &word) {
        text += holds ? (text.empty() ? "" : " ") + word : "";
    };
    add(action.mClearControls, "clear");
    add(action.mPage != ENoPage, action.mPage != ENoPage ? Page(action.mPage, buttons) : "");
    add(action.mStartWorker, "start");
    add(action.mRebootNow, "restart");
    add(action.mDeclined, "decline");
    add(action.mClose, "close");
    return text;
}

TEST(PageRules, FirstPageFollowsTheTypeOfTheRun)
{
    ExpectTable("first-page", [](const std::string &row) {
        const PageAction action =
            FirstPage(static_cast<EInstallType>(std::stoi(row)), row.find("agree") != std::string::npos);
        const bool keyed = action.mPage != ENoPage && action.mPage != EPageLicense;
        return WithAssertions(Told(action, true) +
                              (keyed ? " focus " + std::to_string(KeysOf(action.mPage).FocusId()) : ""));
    });
}

TEST(PageRules, ClicksWorkOrWalk)
{
    ExpectTable("clicks", [](const std::string &row) {
        std::istringstream stream(row);
        uint32_t state = 0;
        std::string told;
        stream >> state;
        for (int id = 0; stream >> id;) {
            const std::string action = Told(ButtonClick(id, state), false);
            told += (told.empty() ? "" : ", ") + action;
        }
        return told + (told.empty() ? "" : " ") + std::to_string(state);
    });
}

TEST(PageRules, TheEndFollowsWhatTheRunWasAndFound)
{
    ExpectTable("end-page", [](const std::string &row) {
        const auto has = [&row](char letter) { return row.find(letter) != std::string::npos; };
        bool asked = false;
        const EndFacts facts = {has('u'), has('f'), has('r'), has('i') ? 1u : 3u,
                                [&] { return asked = true, has('o'); }};
        const PageAction action = EndDecision(facts);
        const bool split = action.mPage == EPagePreSplit || action.mPage == EPagePreSplitReboot;
        return Told(action, split) + (asked ? " ?" : "");
    });
}

TEST(PageKeyboard, KeysMoveClickAndScroll)
{
    ExpectTable("page-keys", [](const std::string &row) {
        std::istringstream stream(row);
        std::vector<uint32_t> numbers;
        for (uint32_t number = 0; stream >> number;) {
            numbers.push_back(number);
        }
        const auto has = [&](uint32_t id) { return std::count(numbers.begin(), numbers.end() - 1, id) != 0; };
        const PageButtons buttons = {has(129), has(130), has(131), has(132)};
        const auto focus = static_cast<EControl>(numbers.front());
        const uint32_t key = numbers.back();
        const EControl clicked = ButtonOfKey(key, focus, buttons);
        const Scroll scroll = ScrollOfKey(key);
        EXPECT_TRUE(!scroll.mScrolls || IsPageKey(key));
        return std::to_string(FocusBehindKey(key, focus, buttons)) +
               (clicked != ENoControl ? " click " + std::to_string(clicked) : "") +
               (scroll.mScrolls ? (scroll.mToEnd ? " end " : " scroll ") + std::to_string(scroll.mHow) : "");
    });
    EXPECT_FALSE(IsPageKey(13) || IsPageKey(32) || IsPageKey(41) || ScrollOfWheel(0).mScrolls);
    for (const int delta : {1, 120, 32767, -1, -120, -32768}) { // any turn of the wheel is one line
        EXPECT_EQ(ScrollOfWheel(static_cast<int16_t>(delta)), (Scroll{true, false, delta > 0 ? 0u : 1u})) << delta;
    }
}

PageMetrics Metrics(std::istringstream &stream)
{
    PageMetrics metrics;
    int64_t textHeight = 0, margin = 0;
    stream >> textHeight >> metrics.mButtonWidth >> metrics.mButtonHeight >> margin;
    metrics.mTextHeight = BoundedTextHeight(static_cast<uint32_t>(textHeight));
    metrics.mTextMargin = BoundedTextMargin(static_cast<uint32_t>(margin));
    return metrics;
}

std::string Places(const std::vector<ControlPlace> &places)
{
    std::string text;
    for (const ControlPlace &place : places) {
        std::ostringstream one;
        one << place.mX << ' ' << place.mY << ' ' << place.mWidth << ' ' << place.mHeight;
        text += (text.empty() ? "" : ", ") + (place == ControlPlace() ? "-" : one.str());
        ExpectInside(place);
    }
    std::string reports;
    for (const std::string &report : TakeTraceRecords()) {
        reports += (reports.empty() ? " -> " : ", ") + report;
    }
    return text + reports;
}

TEST(PageLayout, ControlsStandWhereTheScriptsNumbersPutThem)
{
    ExpectTable("page-layout", [](const std::string &row) {
        std::istringstream stream(row);
        const PageMetrics metrics = Metrics(stream);
        std::string which;
        stream >> which;
        const PageLayout layout = LayOutPage(metrics, which != "right", which != "left");
        return Places({which != "right" ? layout.mLeft : ControlPlace(),
                       which != "left" ? layout.mRight : ControlPlace(), layout.mText});
    });
    ExpectTable("license-layout", [](const std::string &row) {
        std::istringstream stream(row);
        const LicenseLayout layout = LayOutLicense(Metrics(stream));
        const std::string agreement = Places({layout.mAgreement});
        TakeTraceRecords(); // the agreement has words of its own for this
        const std::string others = Places({layout.mAccept, layout.mDecline, layout.mUpperText, layout.mLowerText});
        const size_t arrow = others.find(" ->");
        return others.substr(0, arrow) + ", " + agreement.substr(0, agreement.find(" ->")) +
               (arrow != std::string::npos ? others.substr(arrow) : "");
    });
    for (const auto &[read, bounded] : {std::pair(5u, 6), {20u, 14}, {0xFFFFFFFFu, 6}, {8u, 8}}) {
        EXPECT_EQ(BoundedTextHeight(read), bounded) << read;
    }
    // A screen whose upper left corner lies left of another's, and an odd rest that is rounded down.
    const WindowCorner corner = Centred(-1024, 0, 0, 768, kLicenseSize);
    EXPECT_TRUE(corner.mX == -752 && corner.mY == 199);
    EXPECT_EQ(Centred(0, 0, 479, 204, kPageSize).mX, -1);
}

TEST(Bar, CreepsToWhatTheStepsJustifyAndFlashes)
{
    static_assert(NextBarTurn(0, 125).mMoves && NextBarTurn(0, 125).mPauseMs == 500);
    static_assert(!NextBarTurn(125, 125).mMoves && NextBarTurn(125, 125).mPauseMs == 100);
    static_assert(NextBarTurn(500, 600).mEnds && !NextBarTurn(499, 600).mEnds);
    EXPECT_EQ(BarColour(0), 0xFF000000u);
    EXPECT_EQ(BarColour(1), 0x0083003Bu);
    EXPECT_EQ(BarColour(2), BarColour(0));
}

} // namespace
