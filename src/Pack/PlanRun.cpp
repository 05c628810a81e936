#include "Pack/PlanRun.h"

#include <algorithm>
#include <array>

#include "Commands/CommandTable.h"
#include "Common/CSystemState.h"
#include "Common/TokenSplitter.h"
#include "Pack/ScriptLine.h"
#include "Script/MacroValues.h"
#include "Script/Macros.h"
#include "Script/Step.h"

namespace {

constexpr uint32_t kMostFrames = 600;  // groups inside groups, before that counts as a circle without end
constexpr uint32_t kMostRounds = 1000; // of one step inside one run of its group

void PlanHandler(CStep &step)
{
    static_cast<CPlanRun &>(step.Main()).Do(step);
}

const CommandRow *PlanRows()
{
    static const auto &rows = *new std::array<CommandRow, kCommandCount>([] {
        std::array<CommandRow, kCommandCount> made{};
        for (size_t at = 0; at < kCommandCount; ++at) {
            made[at] = {gCommandInfos[at].mName, gCommandInfos[at].mNumber, PlanHandler};
        }
        return made;
    }());
    return rows.data();
}

} // namespace

PlanState Joined(const PlanState &left, const PlanState &right)
{
    PlanState joined;
    joined.mFiles = CTreeFacts::Joined(left.mFiles, right.mFiles);
    joined.mRegistry = CRegistryFacts::Joined(left.mRegistry, right.mRegistry);
    std::set<std::string> names;
    for (const PlanState *state : {&left, &right}) {
        for (const auto &[name, value] : state->mFlags) {
            names.insert(name);
        }
    }
    for (const std::string &name : names) {
        std::set<int32_t> values;
        for (const PlanState *state : {&left, &right}) {
            const auto maybe = state->mMaybeFlags.find(name);
            if (maybe != state->mMaybeFlags.end()) {
                values.insert(maybe->second.begin(), maybe->second.end());
            } else {
                const auto flag = state->mFlags.find(name);
                values.insert(flag == state->mFlags.end() ? 0 : flag->second);
            }
        }
        joined.mFlags[name] = *values.begin();
        if (values.size() > 1) {
            joined.mMaybeFlags[name] = values;
        }
    }
    joined.mReboot = left.mReboot == right.mReboot ? left.mReboot : EAnswer::EOpen;
    joined.mDebugFilePath = left.mDebugFilePath == right.mDebugFilePath ? left.mDebugFilePath : std::string();
    for (const auto &[question, answer] : left.mAnswers) {
        const auto other = right.mAnswers.find(question);
        if (other != right.mAnswers.end() && other->second == answer) {
            joined.mAnswers[question] = answer;
        }
    }
    joined.mChanges = left.mChanges + right.mChanges + 1;
    return joined;
}

bool PlanState::SaysAs(const PlanState &other) const
{
    return mFiles == other.mFiles && mRegistry == other.mRegistry && mFlags == other.mFlags &&
           mMaybeFlags == other.mMaybeFlags && mReboot == other.mReboot && mDebugFilePath == other.mDebugFilePath &&
           mAnswers == other.mAnswers;
}

CPlanRun::CPlanRun(PlanContext &context, const PlanState &state)
    : PlanRunParts(context.mReader), CRunState(*this, mFiles, PlanRows(), kCommandCount), mContext(context),
      mState(state)
{
    static_cast<DevicesFound &>(*this) = context.mDevices;
    mFlags = state.mFlags;
    mWin64 = context.mMachine.Is64() ? 1 : 0;
    mRebootRequired = state.mReboot == EAnswer::EYes;
    mDebugFilePath = state.mDebugFilePath;
    SetWatcher(this);
}

void CPlanRun::ReadScriptHead()
{
    Script().SetConfigFile("");
    Script().SetDialogData(Script().ReadString("MAIN", "DialogData", ""));
    TokenSplitter items(";", Script().ReadString("MAIN", "Include", ""));
    for (std::string item = items.First(); !items.AtEnd(); item = items.Next()) {
        Script().AddIncludeFile(ExpandMacros(item));
    }
}

PlanState CPlanRun::TakeState() const
{
    PlanState state = mState;
    state.mFlags = mFlags;
    state.mDebugFilePath = mDebugFilePath;
    return state;
}

void CPlanRun::RunNoted(const std::string &group, PlanBlock &block)
{
    mTop = &block;
    RunSteps(group);
}

PlanNode &CPlanRun::Node()
{
    static PlanNode unseen; // of a step that only leads to where a course begins
    PlanNode *const step = mFrames.empty() ? nullptr : mFrames.back().mStep;
    return step != nullptr ? *step : unseen = PlanNode();
}

// --- what the interpreter asks and tells ---------------------------------------------------------------------------

// Asked for the file of a called group.
bool CPlanRun::PathExists(const std::string &path)
{
    return mOnTheWay || Decide(FileQuestion(path, EPlanView::EProcess));
}

std::optional<std::string> CPlanRun::MacroValue(const CRunState &state, const std::string &upperName)
{
    if (upperName == "APP VERSION") {
        return kAppVersion;
    }
    if (upperName == "INSTALL_BASE") {
        return state.mWin64 != 0 ? ".\\System32\\64" : ".\\System32";
    }
    if (upperName == "ISD_OEM") {
        return state.mOemDataFile;
    }
    if (upperName == "PRODUCT_NAME") {
        return state.mProductName;
    }
    if (upperName == "HIDROUTER_NAME_ISD") {
        return std::string("tvxhidrouter_isd") + (IsOSTypeWin8(mContext.mMachine.Windows().mOSType) ? "_win8" : "");
    }
    if (upperName == "ROUTERFILTER_NAME") {
        return "tavixrouterfilter";
    }
    return mContext.mMachine.Macro(upperName);
}

bool CPlanRun::IsStackLow()
{
    if (mContext.mFrames < kMostFrames) {
        return false;
    }
    Node().mNote = "groups call each other without end";
    throw PlanCourseEnd{false, "groups call each other without end"};
}

void CPlanRun::GroupBegins(const std::string &group, StepList &steps_I_O)
{
    Frame frame;
    frame.mGroup = group;
    frame.mFile = mNoted.mLastFile;
    frame.mSteps = &steps_I_O;
    ++mContext.mFrames;
    if (mOnTheWay) {
        steps_I_O.MoveTo(mWay[mFrames.size()]);
        frame.mBlock = mCourseBlock;
        mFrames.push_back(frame);
        return;
    }
    PlanBlock *block = mTop;
    if (!mFrames.empty()) {
        block = mFrames.back().mStep != nullptr ? &mFrames.back().mStep->mInner : mFrames.back().mBlock;
    }
    PlanNode &node = block->emplace_back();
    node.mKind = EPlanNode::EGroup;
    node.mGroup = group;
    node.mFile = frame.mFile;
    const CProfileFile *const file = frame.mFile.empty() ? nullptr : mContext.mReader.File(frame.mFile);
    const ProfileSection *const section = file == nullptr ? nullptr : file->Find(gCodePage.ToWide(group));
    node.mLine = section == nullptr ? 0 : section->mPlace.mLine;
    frame.mBlock = &node.mInner;
    mFrames.push_back(frame);
}

void CPlanRun::GroupEnds()
{
    const bool courseEnds = mFrames.size() == mStopDepth;
    --mContext.mFrames;
    mFrames.pop_back();
    mMoveTo.reset();
    if (courseEnds) {
        throw PlanCourseEnd{true, {}};
    }
}

void CPlanRun::StepIsNext(StepList &steps_I_O)
{
    Frame &frame = mFrames.back();
    if (mOnTheWay) {
        frame.mIndex = steps_I_O.Cursor();
        mOnTheWay = mFrames.size() < mWay.size();
        return;
    }
    if (mMoveTo) {
        steps_I_O.MoveTo(*mMoveTo);
        mMoveTo.reset();
    }
    frame.mIndex = steps_I_O.Cursor();
    if (mFrames.size() == mStopDepth && frame.mIndex == mStopIndex && frame.mIndex < steps_I_O.Count()) {
        throw PlanCourseEnd{true, {}};
    }
    frame.mStep = nullptr;
    if (!steps_I_O.Text().empty()) {
        CheckCircle(frame);
        NoteStep(frame);
    }
}

// A step that comes again with nothing changed comes for ever.
void CPlanRun::CheckCircle(Frame &frame)
{
    const uint64_t changes = mState.Changes();
    const auto [seen, first] = frame.mSeen.emplace(frame.mIndex, changes);
    if ((!first && seen->second == changes) || ++frame.mRounds[frame.mIndex] > kMostRounds) {
        const std::string line = std::to_string(LineOf(frame, frame.mIndex));
        throw PlanCourseEnd{false,
                            "goes round from line " + line + " for ever, unless something else changes the machine"};
    }
    seen->second = changes;
    if (++mContext.mSteps > mContext.mOptions.mMostSteps) {
        mContext.mPlan.mCut = "it has more than " + std::to_string(mContext.mOptions.mMostSteps) + " steps";
        throw PlanCourseEnd{false, "the plan is too long"};
    }
}

void CPlanRun::NoteStep(Frame &frame)
{
    PlanNode &node = frame.mBlock->emplace_back();
    frame.mStep = &node;
    node.mGroup = frame.mGroup;
    node.mFile = frame.mFile;
    node.mLine = LineOf(frame, frame.mIndex);
    node.mText = frame.mSteps->Text();
    TokenSplitter fields(";", node.mText);
    node.mCommand = fields.First();
    node.mInfo = FindCommand(node.mCommand);
    if (node.mInfo == nullptr) {
        if (ExtractBangName(node.mCommand).empty()) {
            node.mNote = "no command of this name; passed over";
        } else {
            node.mFields = {node.mCommand, ExpandMacros(fields.Next())};
        }
    }
}

uint32_t CPlanRun::LineOf(const Frame &frame, uint32_t index)
{
    const std::vector<uint32_t> &lines = LinesOf(frame.mFile, frame.mGroup);
    return index < lines.size() ? lines[index] : 0;
}

// The lines of a group's steps, counted as the step list counts them.
const std::vector<uint32_t> &CPlanRun::LinesOf(const std::string &file, const std::string &group)
{
    const auto [known, added] = mContext.mLines.emplace(std::make_pair(file, group), std::vector<uint32_t>());
    if (added && !file.empty()) {
        for (const SectionLine &line : mContext.mReader.SectionLines(file, group)) {
            for (const CScriptLine &piece : CScriptLine::Cut(line, 0)) {
                if (piece.Text().compare(0, 1, "#") != 0) {
                    known->second.push_back(line.mLine->mKeyPlace.mLine);
                }
            }
        }
    }
    return known->second;
}

// --- a step ---------------------------------------------------------------------------------------------------------

bool IsTest(EEffect effect)
{
    return effect == ETests || effect == ETestsFile || effect == ETestsValue;
}

namespace {

// A key as people write it.
std::string ShownKey(const RegLocation &location)
{
    const char *const root = location.mRootKey == kRootClasses         ? "HKCR"
                             : location.mRootKey == kRootCurrentUser   ? "HKCU"
                             : location.mRootKey == kRootLocalMachine  ? "HKLM"
                             : location.mRootKey == kRootUsers         ? "HKU"
                             : location.mRootKey == kRootCurrentConfig ? "HKCC"
                                                                       : "";
    const size_t from = location.mPath.find_first_not_of('\\');
    return root + (from == std::string::npos ? std::string() : '\\' + location.mPath.substr(from));
}

} // namespace

bool IsAction(EEffect effect)
{
    switch (effect) {
    case EDoesNothing:
    case ETests:
    case ETestsFile:
    case ETestsValue:
    case EJumps:
    case ECallsGroup:
    case EEndsGroup:
    case ETraces:
    case EMovesTrace:
    case EWaits:
    case EAsksTablet:
    case ESetsFlag:
        return false;
    default:
        return true;
    }
}

void CPlanRun::Do(CStep &step)
{
    const CommandInfo &info = *FindCommand(step.Command());
    const auto portable = PortableHandlers().find(info.mName);
    if (mOnTheWay) {
        // Only what calls the next group on the way to where the course begins is done.
        if (info.HasTarget()) {
            for (size_t left = info.CountFields(); left > 1; --left) {
                step.Plain();
            }
            step.TakeTarget();
        } else {
            portable->second(step);
        }
        return;
    }
    // Fields are read once for the eye, behind macros; what runs reads its own.
    std::vector<std::string> fields;
    CStep reading(*this, mFrames.back().mSteps->Text());
    const CommandField *field = info.mFields;
    const size_t count = info.CountFields();
    if (count != 0 && field->mKind == EFieldPause) {
        const std::string pause = reading.Plain();
        CStep number(*this, mFrames.back().mSteps->Text());
        fields.push_back(number.Number() != 0 ? pause : std::string());
        if (fields.back().empty()) {
            fields.push_back(ExpandMacros(pause));
        }
    }
    while (fields.size() < count) {
        const CommandField &next = info.mFields[fields.size()];
        fields.push_back(next.mReading == EReadExpanded ? reading.Expanded() : reading.Plain());
    }
    std::vector<std::string> shown = fields;
    for (size_t at = 0; at < count; ++at) {
        if (info.mFields[at].mKind == EFieldKey) {
            shown[at] = ShownKey(Location(fields[at]));
        }
    }
    Node().mFields = std::move(shown);
    if (IsTest(info.mEffect) || info.mEffect == EJumps) {
        Test(step, info, fields);
        return;
    }
    std::string note;
    const EAnswer acts = Act(info, fields, note);
    // Behind the action: the product's own handlers move on.
    if (IsAction(info.mEffect)) {
        Node().mActs = acts;
    }
    Node().mNote = note;
    if (portable != PortableHandlers().end()) {
        portable->second(step);
    }
    if (mRebootRequired) {
        mState.mReboot = EAnswer::EYes;
    }
}
