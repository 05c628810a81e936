#include "UI/PageKeyboard.h"

#include <limits>

namespace {

// SB_LINEUP and so on.
enum EScroll : uint32_t {
    EScrollLineUp = 0,
    EScrollLineDown = 1,
    EScrollPageUp = 2,
    EScrollPageDown = 3,
    EScrollTop = 6,
    EScrollBottom = 7,
};

Scroll By(uint32_t how)
{
    return {true, false, how};
}

Scroll ToEnd(uint32_t how)
{
    return {true, true, how};
}

} // namespace

bool IsPageKey(uint32_t key)
{
    return key == EKeyTab || (key >= EKeyPageUp && key <= EKeyDown);
}

EControl FocusBehindKey(uint32_t key, EControl focus, const PageButtons &buttons)
{
    if (key != EKeyTab && key != EKeyLeft && key != EKeyRight) {
        return focus;
    }
    const auto first = [focus](bool has, EControl one, bool hasOther, EControl other) {
        return has ? one : hasOther ? other : focus;
    };
    switch (focus) {
    case EButton129:
        return first(buttons.m130, EButton130, buttons.m131, EButton131);
    case EButton130:
        return first(buttons.m131, EButton131, buttons.m129, EButton129);
    case EButton131:
        return first(buttons.m129, EButton129, buttons.m130, EButton130);
    default:
        return focus;
    }
}

EControl ButtonOfKey(uint32_t key, EControl focus, const PageButtons &buttons)
{
    if (key == EKeyReturn) {
        return focus;
    }
    if (key == EKeyEscape) {
        return buttons.m130 ? EButton130 : buttons.m132 ? EButton132 : ENoControl;
    }
    return ENoControl;
}

Scroll ScrollOfKey(uint32_t key)
{
    switch (key) {
    case EKeyPageUp:
        return By(EScrollPageUp);
    case EKeyPageDown:
        return By(EScrollPageDown);
    case EKeyEnd:
        return ToEnd(EScrollBottom);
    case EKeyHome:
        return ToEnd(EScrollTop);
    case EKeyUp:
        return By(EScrollLineUp);
    case EKeyDown:
        return By(EScrollLineDown);
    default:
        return {};
    }
}

// No notch is as far as a whole page.
Scroll ScrollOfWheel(int16_t delta)
{
    const int32_t distance = delta;
    if (distance > 0) {
        return By(distance == std::numeric_limits<int32_t>::max() ? EScrollPageUp : EScrollLineUp);
    }
    if (distance < 0) {
        return By(distance == std::numeric_limits<int32_t>::min() ? EScrollPageDown : EScrollLineDown);
    }
    return {};
}
