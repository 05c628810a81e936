// What keys and the mouse wheel do on a page: they press buttons, move the focus round them and scroll the agreement.
#pragma once

#include <cstdint>

#include "UI/PageRules.h"

// Virtual keys, as Windows numbers them.
enum EKey : uint32_t {
    EKeyTab = 9,
    EKeyReturn = 13,
    EKeyEscape = 27,
    EKeyPageUp = 33,
    EKeyPageDown = 34,
    EKeyEnd = 35,
    EKeyHome = 36,
    EKeyLeft = 37,
    EKeyUp = 38,
    EKeyRight = 39,
    EKeyDown = 40,
};

// The buttons that a page has.
struct PageButtons {
    bool m129 = false;
    bool m130 = false;
    bool m131 = false;
    bool m132 = false;
};

// Whether a button hands the pressed key on to the window: Tab, the arrows and their neighbours.
bool IsPageKey(uint32_t key);

// The button that a key moves the focus to, which is `focus` itself where the key moves nothing. 132 has no place in
// the round.
EControl FocusBehindKey(uint32_t key, EControl focus, const PageButtons &buttons);

// The button that a released key presses when `focus` has the focus: Return that one, Escape the one that leaves.
// ENoControl when it presses none.
EControl ButtonOfKey(uint32_t key, EControl focus, const PageButtons &buttons);

// A message to the agreement: wParam of EM_SCROLL, or of WM_VSCROLL with mToEnd.
struct Scroll {
    bool mScrolls = false;
    bool mToEnd = false;
    uint32_t mHow = 0;

    bool operator==(const Scroll &other) const
    {
        return mScrolls == other.mScrolls && mToEnd == other.mToEnd && mHow == other.mHow;
    }
};
Scroll ScrollOfKey(uint32_t key);

// `delta` is the signed distance that the wheel turned; one notch is one line, whatever its size.
Scroll ScrollOfWheel(int16_t delta);
