// The central object: the state of one run, what the run holds for its whole length, and the sequence from the command
// line to the result.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Script/CRunState.h"

// An instance handle of Windows (HINSTANCE), declared as its headers do.
struct HINSTANCE__;

class CWinInstallMain : public CRunState {
public:
    // Set-up of a run. `commandLine` is the effective command line (response text, blank, own tail);
    // `removeRole` says that the module was started under the name of the uninstaller.
    CWinInstallMain(const std::string &commandLine, bool removeRole);

    // Gives back what the process holds for the run and puts the trace file where the script wants it. The object
    // itself has to outlive the process's end: nobody waits for its threads, which may be at work on it until then.
    void TearDown();

    // The whole run. Answers the raw result word, see Outcomes.h.
    uint32_t Run(HINSTANCE__ *instance, HINSTANCE__ *previousInstance, int showCommand);

private:
    // What needs Windows: the mutex, the instance, the window and its threads. See RunHandles.h.
    struct Handles;

    // --- set-up and teardown: Setup.cpp ---
    void OpenTraceFile();
    void PlaceTraceFile() const;

    // --- the sequence: Run.cpp ---
    bool CheckScriptVersion();
    void ReadIncludes();
    bool TakeRunningMutex();
    uint32_t RunElevatedCopy();
    uint32_t SilentRun();
    uint32_t WindowedRun(int showCommand);

    std::unique_ptr<Handles> mHandles;
};
