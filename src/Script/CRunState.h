// The state of one run, as steps, pages and the sequence of the run share it, and the interpreter that works on it.
// What it asks of Windows comes through the interfaces that it is made with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Common/LanguageProvider.h"
#include "Devices/DevicesFound.h"
#include "Script/CommandRow.h"
#include "Script/Flags.h"
#include "Script/InstallType.h"
#include "Script/Progress.h"
#include "Script/ScriptFiles.h"

// What the command line asks for.
struct RunOptions {
    std::string mCommandLine;     // the effective one: response text, blank, own tail
    std::string mCommandOverride; // the value of /command
    bool mUninstall = false;
    uint32_t mSilent = 0;
    bool mSuppressError = false;
    bool mFromIFE = false;
    bool mAgreed = false;
    uint32_t mDialogState = 0; // non-zero: a walk through all pages; also switches the silent options off
};

// What settings, script and machine say about the run.
struct RunSwitches {
    uint32_t mInk = 0;
    uint32_t mWinTE = 0;
    uint32_t mWin64 = 0;
    uint32_t mAllowOEM = 0;
    uint32_t mProductMask = 3;
    uint32_t mDriverKind = 0; // see PackageKind.h
    bool mTraceNamed = false; // the trace file's name was given, by option or setting
};

// What becomes of the run.
struct RunOutcome {
    EInstallType mInstallType = EInstallAllowed;
    std::string mCommand; // the group to run
    bool mRebootRequired = false;
    bool mRebootNow = false;
    bool mDeclined = false;
    bool mPreSplitDetected = false;
    std::string mDebugFilePath; // where the trace file goes at the end
};

class CRunState;
class StepList;

// What steps ask of Windows by way of the interpreter.
class IRunHost {
public:
    virtual ~IRunHost() = default;

    // Whether something stands at a path.
    virtual bool PathExists(const std::string &path) = 0;

    // The value of a macro by its upper-cased name; nothing for a name that means nothing.
    virtual std::optional<std::string> MacroValue(const CRunState &state, const std::string &upperName) = 0;

    // Whether so little stack is left to this thread that a further group might not come back.
    virtual bool IsStackLow() { return false; }
};

// Looks on while groups run, for a program that tells what a run would do. A run that does it has none.
class IStepWatcher {
public:
    virtual ~IStepWatcher() = default;

    // A group is going to run its steps; it has come to its end.
    virtual void GroupBegins(const std::string &group, StepList &steps_I_O) = 0;
    virtual void GroupEnds() = 0;

    // The cursor of the innermost group has come to a step, or behind the last one. It may be moved.
    virtual void StepIsNext(StepList &steps_I_O) = 0;
};

class CRunState : public RunOptions,
                  public RunSwitches,
                  public RunOutcome,
                  public DevicesFound,
                  public Flags,
                  public BarProgress {
public:
    // All three outlive the object. The progress may come later; until then nothing is shown.
    CRunState(IRunHost &host, CScriptFiles &script, const CommandRow *rows, size_t rowCount);
    virtual ~CRunState() = default;
    CRunState(const CRunState &) = delete;
    CRunState &operator=(const CRunState &) = delete;

    // Runs a group of the script, step by step. Answers 0, or TVXSTATUS_VALUE_NOT_FOUND when the step DONE ended it. A
    // group that calls itself without end is refused when the stack is nearly used up, and the groups go on from there.
    uint16_t RunSteps(const std::string &group);

    // Runs a group, of another script when `file` is not empty. Answers whether it was run: not when that file is
    // missing or the group has no name.
    bool CallGroup(const std::string &group, const std::string &file);

    // What becomes of a target: a group is run at once and the answer is empty, a label is the answer.
    std::string ConditionalTarget(const std::string &text);

    // Replaces the macros of a text; those of the language alone, the ^NAME^.
    std::string ExpandMacros(const std::string &text) const;
    std::string ExpandHats(const std::string &text) const;

    // Moves the bar to a position, or by it, when there is one.
    void SetBarPosition(uint32_t value, bool relative);

    // The facts on which the choice of services rests.
    ServiceFacts GetServiceFacts() const;

    CScriptFiles &Script() const { return mScript; }
    void SetProgress(IProgress *progress) { mProgress = progress; }
    void SetWatcher(IStepWatcher *watcher) { mWatcher = watcher; }

    std::map<std::string, uint32_t> mCommandMap; // numbers of the commands by their words
    LanguageProvider mLanguage;

private:
    uint16_t RunGroup(const std::string &group);
    uint16_t RunList(StepList &steps);
    bool IsEndless(const std::string &group);
    void RunCommand(CStep &step, const std::string &text, uint32_t number) const;
    bool HasBar() const { return mProgress != nullptr && mProgress->HasBar(); }

    IRunHost &mHost;
    CScriptFiles &mScript;
    const CommandRow *mRows; // in the order of their numbers
    size_t mRowCount;
    IProgress *mProgress = nullptr;
    IStepWatcher *mWatcher = nullptr;
    std::vector<std::string> mRunning; // the groups that call each other, the outermost first
    size_t mEndlessFrom = 0;           // how many of them stand around a circle without end; only while there is one
    bool mEndless = false;
};

// The one object of the process, set when its set-up has finished, cleared in its teardown. The threads and the window
// procedure reach the object only through this pointer.
extern CRunState *volatile gWinInstallMain;
