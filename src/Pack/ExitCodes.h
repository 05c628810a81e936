// What the exit codes of a run mean. The numbers come from the product itself: an exit code means whatever run would
// answer it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// How a run ended, as far as whoever started it has to act upon it.
enum class EExitKind {
    EDone,
    EDoneRestart,  // done, complete behind a restart of Windows
    ERestartFirst, // nothing was done, an earlier installation waits for a restart
    ENotSupported, // nothing was done on this Windows
    ENoHardware,   // nothing was done without the device
    ENotElevated,  // nothing was done without the rights
    EDeclined,     // nothing was done, a person declined
    ENoRun,        // nothing was done, for one of several reasons
};

struct ExitMeaning {
    EExitKind mKind = EExitKind::ENoRun;
    bool mSilent = false;   // a silent run answers it
    bool mWindowed = false; // a run with a window answers it
    std::string mWords;     // a sentence
};

// All that the code of a run can mean, the likelier first; empty for a code that no run answers.
std::vector<ExitMeaning> MeaningsOf(uint32_t code);

// The codes that a run can answer, rising.
std::vector<uint32_t> ExitCodesOfRuns();

// What Windows means by the exit code of a process that did not end by itself; empty for a code without such a meaning.
std::string WordsOfCrash(uint32_t code);
