#include "UI/PageRules.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "Common/Trace.h"
#include "Script/PackageKind.h"

namespace {

constexpr PageKeys kPages[] = {
    {EPageUnConfirm, "UnConfirmTitle", "UnConfirmText", "YesText", "NoText", false},
    {EPageNonAdmin, "NonAdminTitle", "NonAdminText", "", "OkText", false},
    {EPageRebootBefore, "RebootBeforeTitle", "RebootBeforeText", "RebootNowText", "RebootLaterText", true},
    {EPageNotSupported, "NotSupportedTitle", "NotSupportedText", "", "OkText", false},
    {EPageNoISDHardware, "NoISDHardwareTitle", "NoISDHardwareText", "", "OkText", false},
    {EPagePreSplit, "PreSplitTitle", "PreSplitText", "", "OkText", false},
    {EPagePreSplitReboot, "PreSplitTitle", "PreSplitText", "RebootNowText", "RebootLaterText", true},
    {EPageUnReboot, "UnRebootTitle", "UnRebootText", "RebootNowText", "RebootLaterText", true},
    {EPageReboot, "RebootTitle", "RebootText", "RebootNowText", "RebootLaterText", true},
    {EPageDone, "DoneTitle", "DoneText", "", "OkText", false},
};

// The walk, from state 1 on; behind its end the window closes.
constexpr EPage kWalk[] = {EPageUnConfirm,    EPageReboot,       EPageNonAdmin,      EPageUnConfirm, EPageUnReboot,
                           EPageRebootBefore, EPageNotSupported, EPageNoISDHardware, EPagePreSplit};

// By name, since designated initialisers are no part of the language yet.
PageAction Show(EPage page)
{
    PageAction action;
    action.mPage = page;
    return action;
}

PageAction StartWorker()
{
    PageAction action;
    action.mStartWorker = true;
    return action;
}

PageAction Close()
{
    PageAction action;
    action.mClose = true;
    return action;
}

PageAction WorkingClick(int id)
{
    PageAction action;
    switch (id) {
    case EButton129:
        return StartWorker();
    case EButton130:
    case EButton131:
    case EButton132:
        action.mRebootNow = id == EButton131;
        action.mDeclined = id == EButton132;
        action.mClose = true;
        break;
    default:
        break;
    }
    return action;
}

PageAction WalkingClick(int id, uint32_t &dialogState_I_O)
{
    PageAction action;
    switch (id) {
    case EButton129:
        action = Show(EPageDone);
        dialogState_I_O = 2;
        break;
    case EButton131:
        action = Show(EPageLicense);
        dialogState_I_O = 1;
        break;
    case EButton130:
    case EButton132:
        action = dialogState_I_O <= std::size(kWalk) ? Show(kWalk[dialogState_I_O - 1]) : Close();
        ++dialogState_I_O;
        break;
    default:
        return action;
    }
    action.mClearControls = true;
    return action;
}

} // namespace

bool PageAction::operator==(const PageAction &other) const
{
    return std::tie(mClearControls, mPage, mStartWorker, mRebootNow, mDeclined, mClose) ==
           std::tie(other.mClearControls, other.mPage, other.mStartWorker, other.mRebootNow, other.mDeclined,
                    other.mClose);
}

const PageKeys &KeysOf(EPage page)
{
    const auto *const row =
        std::find_if(std::begin(kPages), std::end(kPages), [page](const PageKeys &keys) { return keys.mPage == page; });
    return row != std::end(kPages) ? *row : *std::prev(std::end(kPages));
}

PageAction FirstPage(EInstallType type, bool agreed)
{
    switch (type) {
    case EInstallAllowed:
        return agreed ? StartWorker() : Show(EPageLicense);
    case EUninstallAllowed:
        return Show(EPageUnConfirm);
    case ENonAdmin:
        return Show(EPageNonAdmin);
    case ERebootBefore:
        return Show(EPageRebootBefore);
    case ENotSupported:
        return Show(EPageNotSupported);
    case ENoISDHardware:
        return Show(EPageNoISDHardware);
    case EPreSplit:
        return Show(EPagePreSplit);
    case EUnhandledType:
        break;
    }
    traceExpectation("!\"Unhandled Install type\"");
    return Close();
}

PageAction ButtonClick(int id, uint32_t &dialogState_I_O)
{
    return dialogState_I_O == 0 ? WorkingClick(id) : WalkingClick(id, dialogState_I_O);
}

// An uninstall always asks about the restart, needed or not; a front end decides about it itself.
PageAction EndDecision(const EndFacts &facts)
{
    if (facts.mUninstall) {
        return Show(EPageUnReboot);
    }
    if (facts.mFromIFE) {
        return Close();
    }
    if (facts.mDriverKind == kDriverKindISD && facts.mOldDeskDriver()) {
        return Show(facts.mRebootRequired ? EPagePreSplitReboot : EPagePreSplit);
    }
    return Show(facts.mRebootRequired ? EPageReboot : EPageDone);
}
