// Conditions that the product's own code answers, asked for each of the possibilities that nobody rules out.
#include <algorithm>

#include "Commands/Commands.h"
#include "Common/DriverNames.h"
#include "Devices/DeviceTable.h"
#include "Devices/RouterQuestions.h"
#include "Files/EarlierPackages.h"
#include "Pack/PlanRun.h"
#include "Script/Step.h"

namespace {

// Those that ask for devices, and the flags that they look at.
bool AsksForDevices(const std::string &command)
{
    static const std::set<std::string> &commands =
        *new std::set<std::string>{"InstallTouchCheck", "InstallPenCheck", "InstallBothCheck",
                                   "NoDriverRequired",  "IsTouchPresent",  "IsPenPresent"};
    return commands.count(command) != 0;
}
constexpr const char *kServiceFlags[] = {"SKIP_MTAPI",        "FORCE_MTAPI",        "SKIP_PEN_SERVICE",
                                         "FORCE_PEN_SERVICE", "SKIP_TOUCH_SERVICE", "FORCE_TOUCH_SERVICE"};

// What a device can bring along that those conditions ask for.
constexpr uint32_t kPresences[] = {0,
                                   kDevicePen,
                                   kDeviceTouch,
                                   kDevicePen | kDeviceTouch,
                                   kDeviceTouch | kDeviceModernInterface1,
                                   kDevicePen | kDeviceTouch | kDeviceModernInterface1};

std::string Named(const std::string &text)
{
    return "\"" + text + "\"";
}

} // namespace

const std::map<std::string, StepHandler> &PortableConditions()
{
    static const auto &conditions = *new std::map<std::string, StepHandler>{
        {"ProductIDIsAttached", StepProductIDIsAttached},
        {"ProductIDIsNotAttached", StepProductIDIsNotAttached},
        {"IsWin8", StepIsWin8},
        {"IsWin7", StepIsWin7},
        {"IsVista", StepIsVista},
        {"IsXP", StepIsXP},
        {"InstallTouchCheck", StepInstallTouchCheck},
        {"InstallPenCheck", StepInstallPenCheck},
        {"InstallBothCheck", StepInstallBothCheck},
        {"NoDriverRequired", StepNoDriverRequired},
        {"IsInk", StepIsInk},
        {"NotInk", StepNotInk},
        {"Is64", StepIs64},
        {"Not64", StepNot64},
        {"IsTouchPresent", StepIsTouchPresent},
        {"IsPenPresent", StepIsPenPresent},
    };
    return conditions;
}

// Runs the product's own condition with the run as it stands.
EAnswer CPlanRun::AskProduct(const std::string &text)
{
    CStep step(*this, text);
    PortableConditions().at(step.Command())(step);
    return AnswerOf(!step.Jump().empty());
}

// Conditions that look for programs of other packages: asked once for each way in which the programs that nobody knows
// of could be there. When all ways have the same answer, that is it.
CPlanRun::Question CPlanRun::RouterQuestion(const std::string &command)
{
    struct Unknown {
        std::string mPath;
        size_t mChoice = 0;
    };
    std::vector<Unknown> unknown;
    const auto lookUp = [&](const std::string &macroPath) {
        const std::string path = ExpandMacros(macroPath);
        const TreeFact fact = mState.mFiles.Find(mContext.mMachine.FilePath(path, EPlanView::E64));
        EarlierProgram program;
        program.mExists = fact.mThere == EAnswer::EYes;
        if (fact.mThere == EAnswer::ENo || (program.mExists && fact.mVersion)) {
            program.mVersion = FileVersion(fact.mVersion.value_or(std::string()), false);
            return program;
        }
        auto at = std::find_if(unknown.begin(), unknown.end(), [&](const Unknown &one) { return one.mPath == path; });
        if (at == unknown.end()) {
            unknown.push_back({path, 0});
            at = unknown.end() - 1;
        }
        // An old one, a new one, none.
        program.mExists = program.mExists || at->mChoice < 2;
        program.mVersion = FileVersion(at->mChoice == 0 ? "1.0.0-1" : at->mChoice == 1 ? "99.0.0-1" : "", false);
        return program;
    };
    const auto router = [&](const std::string &path) {
        const EarlierProgram program = lookUp(path);
        return RouterProgram{program.mExists, program.mVersion};
    };
    const auto ask = [&] {
        const int32_t line = CDriverType::Get() & kDriverLineMask;
        return command == "DetectPreISDSplit"          ? IsPreISDSplitInstalled(lookUp)
               : command == "IfVHIDObsolete"           ? VHIDObsolete(CDriverType::Get(), lookUp)
               : command == "ShouldUninstallHidRouter" ? ShouldUninstallHidRouter(line, router)
               : command == "ProNeedsHidRouter"        ? NeedsHidRouter(ERouterProfessional, router)
               : command == "ConNeedsHidRouter"        ? NeedsHidRouter(ERouterConsumer, router)
                                                       : NeedsHidRouter(ERouterISD, router);
    };
    bool anyYes = false, anyNo = false;
    for (bool more = true; more;) {
        (ask() ? anyYes : anyNo) = true;
        // The next way; a question that is met on a new way begins with its first choice.
        more = false;
        for (Unknown &one : unknown) {
            if (++one.mChoice < 3) {
                more = true;
                break;
            }
            one.mChoice = 0;
        }
    }
    std::string paths;
    for (const Unknown &one : unknown) {
        paths += (paths.empty() ? "" : ", ") + one.mPath;
    }
    Question question = Remembered(command, command + ", which depends on " + paths);
    if (!unknown.empty()) {
        question.mOption = "--file " + Named(unknown.front().mPath + "=VERSION");
        question.mOptionNo = "--no-file " + Named(unknown.front().mPath);
    }
    if (anyYes != anyNo) {
        question.mKnown = AnswerOf(anyYes);
    }
    return question;
}

// Conditions that the product answers out of the run itself. Where devices or flags are not known, it is asked once for
// each possibility.
CPlanRun::Question CPlanRun::ProductQuestion(const CommandInfo &info, const std::vector<std::string> &fields)
{
    const std::string command = info.mName;
    std::string text = command;
    for (size_t field = 0; field + 1 < fields.size(); ++field) {
        text += ";" + fields[field];
    }
    text += ";<yes>";
    if (!AsksForDevices(command)) {
        if (command.compare(0, 9, "ProductID") != 0 || mContext.mDevicesKnown) {
            Question question;
            question.mKnown = AskProduct(text);
            return question;
        }
        Question question =
            Remembered("device\n" + fields.front(), "is a device attached whose id holds " + fields.front());
        question.mOption = "--device " + Named(fields.front());
        question.mOptionNo = "--no-device";
        if (command == "ProductIDIsNotAttached") {
            const auto remember = question.mAssume;
            question.mKnown = Opposite(question.mKnown);
            question.mAssume = [remember](bool answer) { remember(!answer); };
        }
        return question;
    }
    const auto formerFlags = mFlags;
    const uint32_t formerPresence = mDevicePresence;
    std::vector<std::pair<std::string, std::vector<int32_t>>> flags;
    std::string shown;
    for (const char *name : kServiceFlags) {
        const auto maybe = mState.mMaybeFlags.find(name);
        if (maybe != mState.mMaybeFlags.end()) {
            flags.push_back({name, {maybe->second.begin(), maybe->second.end()}});
        }
        shown += IsSet(name) ? std::string(" ") + name : std::string();
    }
    size_t ways = 1;
    for (const auto &flag : flags) {
        ways *= flag.second.size();
    }
    bool anyYes = false, anyNo = false;
    for (size_t way = 0; way < ways; ++way) {
        size_t rest = way;
        for (const auto &[name, values] : flags) {
            mFlags[name] = values[rest % values.size()];
            rest /= values.size();
        }
        for (const uint32_t presence : kPresences) {
            mDevicePresence = mContext.mDevicesKnown ? formerPresence : presence;
            (AskProduct(text) == EAnswer::EYes ? anyYes : anyNo) = true;
        }
    }
    mFlags = formerFlags;
    mDevicePresence = formerPresence;
    Question question = Remembered("devices\n" + command + shown, command + ", which depends on the devices attached");
    question.mOption = "--device PRODUCT";
    question.mOptionNo = "--no-device";
    if (anyYes != anyNo) {
        question.mKnown = AnswerOf(anyYes);
    }
    return question;
}
