// What the window shows at each turn of a run, and what its buttons do. Decisions alone: the window carries them out.
#pragma once

#include <cstdint>
#include <functional>

#include "Script/InstallType.h"

// Ids of the controls. A page has at most two of the buttons; 129 stands left and goes on, 130 stands right and leaves,
// 131 stands left and asks for a restart, 132 declines the agreement.
enum EControl : int {
    ENoControl = 0,
    EAgreementControl = 128,
    EButton129 = 129,
    EButton130 = 130,
    EButton131 = 131,
    EButton132 = 132,
};

enum EPage {
    ENoPage,
    EPageLicense, // has a layout and texts of its own; all others have a row of keys
    EPageUnConfirm,
    EPageNonAdmin,
    EPageRebootBefore,
    EPageNotSupported,
    EPageNoISDHardware,
    EPagePreSplit,
    EPagePreSplitReboot,
    EPageUnReboot,
    EPageReboot,
    EPageDone,
};

// Keys of a page's words in the section of the language. A button without a key, an empty text, does not exist.
struct PageKeys {
    EPage mPage;
    const char *mTitle;
    const char *mText;
    const char *mLeft;
    const char *mRight;
    bool mLeftRestarts; // the left button is 131 and not 129

    bool HasLeft() const { return *mLeft != '\0'; }
    bool HasRight() const { return *mRight != '\0'; }
    EControl LeftId() const { return mLeftRestarts ? EButton131 : EButton129; }
    // The button that holds the focus first.
    EControl FocusId() const { return HasLeft() || mLeftRestarts ? LeftId() : EButton130; }
};

// The row of a page other than the agreement; the Done page for what has none.
const PageKeys &KeysOf(EPage page);

// What happens at an event, in the order of the members.
struct PageAction {
    bool mClearControls = false;
    EPage mPage = ENoPage;
    bool mStartWorker = false;
    bool mRebootNow = false;
    bool mDeclined = false;
    bool mClose = false;

    bool operator==(const PageAction &other) const;
};

// The first page. A type that has none is reported, and the window closes.
PageAction FirstPage(EInstallType type, bool agreed);

// A click on the button `id`. While `dialogState_I_O` is 0 the button does its work; otherwise it walks on through the
// pages and counts the state.
PageAction ButtonClick(int id, uint32_t &dialogState_I_O);

// What decides the page behind the last step.
struct EndFacts {
    bool mUninstall = false;
    bool mFromIFE = false;
    bool mRebootRequired = false;
    uint32_t mDriverKind = 0;
    // Whether an old driver of a desk tablet is installed; looks at the machine, so it is asked only when it counts.
    std::function<bool()> mOldDeskDriver;
};
PageAction EndDecision(const EndFacts &facts);
