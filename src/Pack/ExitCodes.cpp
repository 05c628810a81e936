#include "Pack/ExitCodes.h"

#include <algorithm>
#include <set>

#include "Installer/Outcomes.h"

namespace {

struct RunEnd {
    EInstallType mType;
    EExitKind mKind;
    const char *mWords;
};

// In the order in which they are told: what happens daily first. No run comes to the page of EPreSplit by itself.
constexpr RunEnd kRunEnds[] = {
    {EInstallAllowed, EExitKind::EDone, "Done."},
    {EUninstallAllowed, EExitKind::EDone, "Done."},
    {ERebootBefore, EExitKind::ERestartFirst,
     "Nothing was done: an earlier installation waits for a restart of Windows."},
    {ENotSupported, EExitKind::ENotSupported, "Nothing was done: the package does not know this Windows."},
    {ENoISDHardware, EExitKind::ENoHardware,
     "Nothing was done: the package is for built-in devices, and this machine has none of them."},
    {ENonAdmin, EExitKind::ENoRun, "Nothing was done: the user is no administrator (Windows XP)."},
};

constexpr char kFailedWords[] = "Nothing was done: the script's Version or PrefType is not known, another run is in "
                                "progress, or the run could not begin; the trace tells which.";
constexpr char kNotElevatedWords[] =
    "Nothing was done: the process with the rights of an administrator could not be started, or was refused.";

void AddMeaning(std::vector<ExitMeaning> &meanings_I, bool silent, EExitKind kind, const std::string &words)
{
    const auto same = std::find_if(meanings_I.begin(), meanings_I.end(),
                                   [&](const ExitMeaning &other) { return other.mWords == words; });
    ExitMeaning &meaning = same != meanings_I.end() ? *same : meanings_I.emplace_back();
    meaning.mKind = kind;
    meaning.mWords = words;
    (silent ? meaning.mSilent : meaning.mWindowed) = true;
}

// Calls `visit(code, silent, kind, words)` for each end that a run can come to.
template <typename TVisit>
void VisitRuns(TVisit visit)
{
    for (const bool silent : {true, false}) {
        visit(ExitCodeOf(kResultFailed), silent, EExitKind::ENoRun, kFailedWords);
        visit(ExitCodeOf(kResultNotElevated), silent, EExitKind::ENotElevated, kNotElevatedWords);
    }
    for (const RunEnd &end : kRunEnds) {
        for (const bool silent : {true, false}) {
            for (const bool restart : {false, true}) {
                for (const bool declined : {false, true}) {
                    const bool runs = end.mKind == EExitKind::EDone;
                    // The question is asked of installations with a window, and a restart comes of steps or of what an
                    // earlier installation left.
                    if ((declined && (silent || end.mType != EInstallAllowed || restart)) ||
                        (restart && !runs && end.mType != ERebootBefore)) {
                        continue;
                    }
                    RunOutcome outcome;
                    outcome.mInstallType = end.mType;
                    outcome.mRebootRequired = restart;
                    outcome.mDeclined = declined;
                    const RunOptions options;
                    const uint32_t code =
                        ExitCodeOf(silent ? SilentResult(options, outcome) : WindowedResult(options, outcome));
                    if (declined) {
                        visit(code, silent, EExitKind::EDeclined, "Nothing was done: the agreement was declined.");
                    } else if (runs && restart) {
                        visit(code, silent, EExitKind::EDoneRestart,
                              "Done. Windows has to be restarted before all of it takes effect.");
                    } else {
                        visit(code, silent, end.mKind, end.mWords);
                    }
                }
            }
        }
    }
}

struct CrashWords {
    uint32_t mCode;
    const char *mWords;
};

constexpr CrashWords kCrashes[] = {
    {0x00000103, "still active: whoever asked did so while the process ran"},
    {0x40010004, "ended by a debugger"},
    {0x40010005, "ended with Ctrl+C"},
    {0x80000003, "a break point outside of a debugger"},
    {0xC0000005, "access violation"},
    {0xC0000006, "a page of the program could not be read from its disk"},
    {0xC0000017, "out of memory"},
    {0xC000001D, "an instruction that this processor does not have"},
    {0xC0000094, "a division by zero"},
    {0xC00000FD, "stack overflow"},
    {0xC000007B, "a library for another kind of processor"},
    {0xC0000135, "a library is missing"},
    {0xC0000139, "a library lacks a function"},
    {0xC000013A, "ended with Ctrl+C, or its console was closed"},
    {0xC0000142, "a library could not be set up, as when the session ends"},
    {0xC0000374, "damaged heap"},
    {0xC0000409, "damaged stack, or the program ended itself at once"},
    {0xE06D7363, "an exception of C++ that nobody caught"},
};

} // namespace

std::vector<ExitMeaning> MeaningsOf(uint32_t code)
{
    std::vector<ExitMeaning> meanings;
    VisitRuns([&](uint32_t other, bool silent, EExitKind kind, const char *words) {
        if (other == code) {
            AddMeaning(meanings, silent, kind, words);
        }
    });
    return meanings;
}

std::vector<uint32_t> ExitCodesOfRuns()
{
    std::set<uint32_t> codes;
    VisitRuns([&](uint32_t code, bool, EExitKind, const char *) { codes.insert(code); });
    return {codes.begin(), codes.end()};
}

std::string WordsOfCrash(uint32_t code)
{
    for (const CrashWords &crash : kCrashes) {
        if (crash.mCode == code) {
            return crash.mWords;
        }
    }
    return std::string();
}
