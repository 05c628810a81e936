#include "Installer/Outcomes.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include "Common/Trace.h"

namespace {

struct OutcomeRow {
    EInstallType mType;
    uint32_t mSilent;
    uint32_t mWindowed;
};

constexpr OutcomeRow kOutcomes[] = {
    {EInstallAllowed, 0, 0}, {EUninstallAllowed, 0, 0}, {ENonAdmin, 1, 0}, {ERebootBefore, 9, 8},
    {ENotSupported, 33, 1},  {ENoISDHardware, 65, 64},  {EPreSplit, 1, 0},
};

uint32_t OutcomeOf(EInstallType type, uint32_t OutcomeRow::*column)
{
    const auto row =
        std::find_if(std::begin(kOutcomes), std::end(kOutcomes), [&](const OutcomeRow &r) { return r.mType == type; });
    if (row == std::end(kOutcomes)) {
        traceExpectation("!\"Unhandled Install type\"");
        return 0;
    }
    return row->*column;
}

uint32_t ResultBits(const RunOptions &options, const RunOutcome &outcome)
{
    return (outcome.mRebootRequired ? kResultRebootRequired : 0) | (options.mSuppressError ? kResultSuppressError : 0) |
           (outcome.mDeclined ? kResultDeclined : 0);
}

} // namespace

uint32_t SilentOutcome(EInstallType type)
{
    return OutcomeOf(type, &OutcomeRow::mSilent);
}

uint32_t WindowedOutcome(EInstallType type)
{
    return OutcomeOf(type, &OutcomeRow::mWindowed);
}

uint32_t SilentResult(const RunOptions &options, const RunOutcome &outcome)
{
    return SilentOutcome(outcome.mInstallType) | ResultBits(options, outcome);
}

uint32_t WindowedResult(const RunOptions &options, const RunOutcome &outcome)
{
    return WindowedOutcome(outcome.mInstallType) | ResultBits(options, outcome) |
           (outcome.mRebootNow ? kResultRebootNow : 0);
}

uint32_t Guarded(const std::function<uint32_t()> &run)
{
    try {
        return run();
    } catch (const std::exception &exception) {
        trace(0, "The run failed: %s\n", exception.what());
    }
    return kResultFailed;
}

uint32_t ExitCodeOf(uint32_t result)
{
    return (result & kResultSuppressError) != 0 ? 0 : result & ~kResultRebootNow;
}
