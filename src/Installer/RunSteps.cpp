// The interpreter: runs a group of steps line by line. What a step does never ends its group; only the end of the list,
// a jump to "<DONE>" or to a label that is not there, an empty step and the step DONE do.
#include <windows.h>

#include <exception>

#include "Common/ComApartment.h"
#include "Common/Paths.h"
#include "Common/Status.h"
#include "Common/Trace.h"
#include "Installer/CommandTable.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/Macros.h"
#include "Installer/Progress.h"
#include "Installer/ScriptAccess.h"
#include "Installer/Step.h"
#include "Installer/StepList.h"
#include "UI/WindowCalls.h"

namespace {

constexpr uint32_t kNoCommand = 0xFFFFFFFF;

// No box for a critical error, none for a file that cannot be opened: nobody may be there to answer it.
constexpr UINT kWorkErrorMode = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;

class CErrorModeScope {
public:
    explicit CErrorModeScope(UINT mode) : mFormer(SetErrorMode(mode)) {}
    ~CErrorModeScope() { SetErrorMode(mFormer); }
    CErrorModeScope(const CErrorModeScope &) = delete;
    CErrorModeScope &operator=(const CErrorModeScope &) = delete;

private:
    UINT mFormer;
};

// Runs the command of a step. The text of a foreign file may raise an exception in an action; it ends that step only.
void RunCommand(CStep &step, uint32_t number)
{
    const CommandRow *const row = FindCommand(number);
    if (row == nullptr) {
        trace(9, "Unknown step command: [%s]\n", step.Command().c_str());
        return;
    }
    try {
        row->mHandler(step);
    } catch (const std::exception &exception) {
        trace(0, "Step %s failed: %s\n", step.Command().c_str(), exception.what());
    }
}

} // namespace

uint16_t CWinInstallMain::RunSteps(const std::string &group)
{
    trace(6, "Executing steps for group %s\n", group.c_str());
    StepList steps(ReadString(group, "", ""));

    // Only the outermost group counts for the bar; it is the one that finds no progress thread.
    uint32_t lines = 0;
    if (mProgressThread == nullptr) {
        lines = ProgressLines(steps.Count());
        if (mProgressBar != nullptr) {
            SetBarPosition(0, false);
        }
        StartProgressThread();
    }

    uint32_t done = 0;
    while (!steps.Text().empty()) {
        CStep step(*this, steps.Text());
        const auto command = mCommandMap.find(step.Command());
        const uint32_t number = command == mCommandMap.end() ? kNoCommand : command->second;
        trace(7, "Instruction %s\n", step.Command().c_str());
        if (lines != 0) {
            mBarTarget = ProgressTarget(++done, lines);
        }
        if (number == kNoCommand) {
            // A group call in its bare form, or a word of a script that is younger than this program: passed over.
            // The bar is not told here; the creeping thread and the next step carry it.
            const std::string name = ExtractBangName(step.Command());
            if (!name.empty()) {
                CallGroup(name, step.Expanded());
            }
        } else {
            RunCommand(step, number);
            if (step.EndsGroup()) {
                return TVXSTATUS_VALUE_NOT_FOUND;
            }
            if (lines != 0 && mProgressBar != nullptr) {
                SetBarPosition(mBarTarget, false);
            }
        }
        steps.Advance(step.Jump());
    }
    if (lines != 0 && mProgressBar != nullptr) {
        SetBarPosition(PROGRESS_MAX, false);
    }
    return TVXSTATUS_SUCCESS;
}

std::string CWinInstallMain::ConditionalTarget(const std::string &text)
{
    const std::string name = ExtractBangName(text);
    if (name.empty()) {
        trace(7, ", True goto label %s\n", text.c_str());
        return text;
    }
    trace(7, ", True goto command %s\n", name.c_str());
    RunSteps(name);
    return std::string();
}

bool CWinInstallMain::CallGroup(const std::string &group, const std::string &file)
{
    trace(7, "Goto command %s:%s\n", file.c_str(), group.c_str());
    if (!file.empty() && !PathExists(file)) {
        trace(7, "Skipping command: file does not exist\n");
        return false;
    }
    if (group.empty()) {
        return false;
    }
    const std::string former = SetConfigFile(file.empty() ? "." : file);
    RunSteps(group);
    SetConfigFile(former);
    return true;
}

DWORD CWinInstallMain::DoWork()
{
    trace(6, "DoWork\n");
    const CErrorModeScope errorMode(kWorkErrorMode); // restored last
    const CComApartmentScope apartment;
    const CWaitCursor cursor(mhWnd);
    RunSteps(mCommand);
    return 0;
}
