// The interpreter: runs a group of steps line by line. What a step does never ends its group; only the end of the list,
// a jump to "<DONE>" or to a label that is not there, an empty step and the step DONE do.
#include "Script/CRunState.h"

#include <algorithm>
#include <exception>

#include "Common/CSystemState.h"
#include "Common/Status.h"
#include "Common/Trace.h"
#include "Script/Macros.h"
#include "Script/Step.h"
#include "Script/StepList.h"

CRunState *volatile gWinInstallMain = nullptr;

namespace {

constexpr uint32_t kNoCommand = 0xFFFFFFFF;
constexpr size_t kGroupsShown = 8; // of those that call each other, when they do so without end

// The words of the run's language and the values of its host.
class CRunMacroValues : public IMacroValues {
public:
    CRunMacroValues(const CRunState &state, IRunHost &host) : mState(state), mHost(host) {}

    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override
    {
        return mState.Script().ReadLanguageString(mState.mLanguage.GetName(), key, defaultValue);
    }
    std::optional<std::string> Value(const std::string &upperName) override
    {
        return mHost.MacroValue(mState, upperName);
    }

private:
    const CRunState &mState;
    IRunHost &mHost;
};

} // namespace

CRunState::CRunState(IRunHost &host, CScriptFiles &script, const CommandRow *rows, size_t rowCount)
    : mHost(host), mScript(script), mRows(rows), mRowCount(rowCount)
{
    for (size_t at = 0; at < rowCount; ++at) {
        mCommandMap.insert({rows[at].mName, rows[at].mNumber});
    }
}

uint16_t CRunState::RunSteps(const std::string &group)
{
    if (IsEndless(group)) {
        return TVXSTATUS_SUCCESS;
    }
    mRunning.push_back(group);
    const uint16_t status = RunGroup(group);
    mRunning.pop_back();
    mEndless = mEndless && mRunning.size() > mEndlessFrom;
    return status;
}

// Whether the call of a group is refused. A circle that has used up the stack once would do so again at each further
// call on the way back, of which there may be more than any run has time for: until its first group has ended, no group
// of it is entered again.
bool CRunState::IsEndless(const std::string &group)
{
    const auto first = std::find(mRunning.begin(), mRunning.end(), group);
    if (!mEndless && mHost.IsStackLow()) {
        std::string chain;
        const size_t shown = std::min(mRunning.size(), kGroupsShown);
        for (size_t at = mRunning.size() - shown; at < mRunning.size(); ++at) {
            chain += mRunning[at] + " > ";
        }
        trace(0, "Group %s is not run, the stack is used up: %s%s%s\n", group.c_str(),
              shown < mRunning.size() ? "... > " : "", chain.c_str(), group.c_str());
        mEndless = first != mRunning.end();
        mEndlessFrom = static_cast<size_t>(first - mRunning.begin());
        return true;
    }
    if (!mEndless || first == mRunning.end()) {
        return false;
    }
    trace(0, "Group %s is not run again, it has no end\n", group.c_str());
    return true;
}

uint16_t CRunState::RunGroup(const std::string &group)
{
    trace(6, "Executing steps for group %s\n", group.c_str());
    StepList steps(mScript.ReadString(group, "", ""));
    if (mWatcher == nullptr) {
        return RunList(steps);
    }
    mWatcher->GroupBegins(group, steps);
    mWatcher->StepIsNext(steps);
    const uint16_t status = RunList(steps);
    mWatcher->GroupEnds();
    return status;
}

uint16_t CRunState::RunList(StepList &steps)
{
    // Only the outermost group counts for the bar.
    uint32_t lines = 0;
    if (mProgress != nullptr && !mProgress->HasBegun()) {
        lines = ProgressLines(steps.Count());
        SetBarPosition(0, false);
        mProgress->Begin();
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
            RunCommand(step, steps.Text(), number);
            if (step.EndsGroup()) {
                return TVXSTATUS_VALUE_NOT_FOUND;
            }
            if (lines != 0) {
                SetBarPosition(mBarTarget, false);
            }
        }
        steps.Advance(step.Jump());
        if (mWatcher != nullptr) {
            mWatcher->StepIsNext(steps);
        }
    }
    if (lines != 0) {
        SetBarPosition(PROGRESS_MAX, false);
    }
    return TVXSTATUS_SUCCESS;
}

// The text of a foreign file may raise an exception in an action; it ends that step only.
void CRunState::RunCommand(CStep &step, const std::string &text, uint32_t number) const
{
    const CommandRow *const end = mRows + mRowCount;
    const CommandRow *const row = std::lower_bound(
        mRows, end, number, [](const CommandRow &left, uint32_t right) { return left.mNumber < right; });
    if (row == end || row->mNumber != number) {
        trace(9, "Unknown step command: [%s]\n", step.Command().c_str());
        return;
    }
    try {
        row->mHandler(step);
    } catch (const std::exception &exception) {
        trace(0, "Step %s failed: %s\n", text.c_str(), exception.what());
    }
}

std::string CRunState::ConditionalTarget(const std::string &text)
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

bool CRunState::CallGroup(const std::string &group, const std::string &file)
{
    trace(7, "Goto command %s:%s\n", file.c_str(), group.c_str());
    if (!file.empty() && !mHost.PathExists(file)) {
        trace(7, "Skipping command: file does not exist\n");
        return false;
    }
    if (group.empty()) {
        return false;
    }
    const CScriptScope script(mScript, file);
    RunSteps(group);
    return true;
}

std::string CRunState::ExpandMacros(const std::string &text) const
{
    CRunMacroValues values(*this, mHost);
    return ::ExpandMacros(text, values);
}

std::string CRunState::ExpandHats(const std::string &text) const
{
    CRunMacroValues values(*this, mHost);
    return ::ExpandHats(text, values);
}

void CRunState::SetBarPosition(uint32_t value, bool relative)
{
    if (!HasBar()) {
        return;
    }
    mBarValue = relative ? mBarValue + value : value;
    if (mBarValue > PROGRESS_MAX) {
        traceExpectation("mBarValue <= PROGRESS_MAX");
    }
    mProgress->Show(mBarValue);
}

ServiceFacts CRunState::GetServiceFacts() const
{
    return {mDevicePresence, mDriverKind, CSystemState::GetOSType()};
}
