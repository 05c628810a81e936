#include "Pack/Planner.h"

#include <algorithm>
#include <stdexcept>

#include "Common/CSystemState.h"
#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Devices/DeviceIds.h"
#include "Devices/DeviceTable.h"
#include "Installer/CommandLine.h"
#include "Installer/DriverTypes.h"
#include "Installer/Options.h"
#include "Installer/Outcomes.h"
#include "Installer/Preflight.h"
#include "Pack/PlanRun.h"
#include "Script/PackageKind.h"
#include "Script/ScriptVersion.h"

namespace {

// The facts that the product's decisions ask for, out of the description.
class CPlanFacts : public IPreflightFacts {
public:
    CPlanFacts(CPlanRun &run, const CPlanMachine &machine, uint32_t adminType)
        : mRun(run), mMachine(machine), mAdminType(adminType)
    {
    }
    uint32_t Setting(const std::string &name, uint32_t defaultValue) override
    {
        const ValueFact fact = Value(name);
        if (fact.mThere != EAnswer::EYes || !fact.mData) {
            return defaultValue;
        }
        uint32_t number = 0;
        for (size_t at = 0; at < std::min<size_t>(4, fact.mData->size()); ++at) {
            number |= static_cast<uint32_t>(static_cast<uint8_t>((*fact.mData)[at])) << (8 * at);
        }
        return number;
    }
    std::string TextSetting(const std::string &name, const std::string &defaultValue) override
    {
        const ValueFact fact = Value(name);
        return fact.mThere == EAnswer::EYes && fact.mData ? fact.mData->substr(0, fact.mData->find('\0'))
                                                          : defaultValue;
    }
    uint32_t ScriptNumber(const std::string &key, uint32_t defaultValue) override
    {
        return mRun.Script().ReadInteger("MAIN", key, defaultValue);
    }
    uint32_t OemInk(uint32_t defaultValue) override
    {
        const CScriptScope script(mRun.Script(), ".\\isdoem.dat");
        return mRun.Script().ReadInteger("MAIN", "INK_OVERRIDE", defaultValue);
    }
    void RemoveSetting(const std::string &) override {}
    bool PathExists(const std::string &path) override
    {
        return mRun.State().mFiles.Exists(mMachine.FilePath(path, EPlanView::EProcess)) == EAnswer::EYes;
    }
    int32_t OSType() override { return mMachine.Windows().mOSType; }
    uint32_t UserAdminType() override { return mAdminType; }
    bool MustRebootBeforeInstall() override { return false; }

private:
    ValueFact Value(const std::string &name)
    {
        const RegLocation settings{kRootLocalMachine, "\\Software\\TAVIX\\Installer", {}};
        return mRun.State().mRegistry.Find(mMachine.KeyPath(settings, EPlanView::EProcess), ToLowerCopy(name));
    }

    CPlanRun &mRun;
    const CPlanMachine &mMachine;
    uint32_t mAdminType;
};

// Text in front of a mark, and what stands behind it.
std::pair<std::string, std::optional<std::string>> Parted(const std::string &text, char mark)
{
    const size_t at = text.find(mark);
    return {text.substr(0, at), at == std::string::npos ? std::nullopt : std::optional(text.substr(at + 1))};
}

// The place of a key that a person has written: HKLM and the like for the roots, 32\ or 64\ in front for a view.
std::string KeyPlace(const std::string &text, const CPlanMachine &machine)
{
    static const std::pair<const char *, const char *> kRoots[] = {{"HKLM", "HKEY_LOCAL_MACHINE"},
                                                                   {"HKCU", "HKEY_CURRENT_USER"},
                                                                   {"HKCR", "HKEY_CLASSES_ROOT"},
                                                                   {"HKU", "HKEY_USERS"},
                                                                   {"HKCC", "HKEY_CURRENT_CONFIG"}};
    const bool is32 = text.compare(0, 3, "32\\") == 0;
    std::string path = is32 || text.compare(0, 3, "64\\") == 0 ? text.substr(3) : text;
    const size_t slash = std::min(path.find('\\'), path.size());
    for (const auto &[shortName, name] : kRoots) {
        if (UpperAscii(path.substr(0, slash)) == shortName) {
            path = name + path.substr(slash);
            break;
        }
    }
    const auto none = [](const std::string &) { return std::string(); };
    return machine.KeyPath(ParseRegPathWith(path, kRootLocalMachine, none),
                           is32 ? EPlanView::EProcess : EPlanView::E64);
}

// A key without a view means both.
std::vector<std::string> KeyPlaces(const std::string &text, const CPlanMachine &machine)
{
    std::vector<std::string> places{KeyPlace(text, machine)};
    if (text.compare(0, 3, "64\\") != 0 && text.compare(0, 3, "32\\") != 0) {
        places.push_back(KeyPlace("32\\" + text, machine));
    }
    return places;
}

// A number, or a text.
std::string DataOf(const std::string &text)
{
    const bool number = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    if (!number) {
        return text + '\0';
    }
    const auto value = static_cast<uint32_t>(DecimalNumber(text));
    std::string data;
    for (int shift = 0; shift < 32; shift += 8) {
        data += static_cast<char>(value >> shift & 0xFF);
    }
    return data;
}

void TakeDescription(const PlanOptions &options, const CPlanMachine &machine, CPlanRun &run)
{
    PlanState &state = run.State();
    const auto placeOf = [&](const std::string &path) {
        return machine.FilePath(run.ExpandMacros(path), EPlanView::E64);
    };
    for (const std::string &text : options.mFiles) {
        const auto [path, version] = Parted(text, '=');
        TreeFact fact;
        fact.mVersion = version;
        state.mFiles.Put(placeOf(path), fact);
    }
    for (const std::string &path : options.mNoFiles) {
        state.mFiles.Remove(placeOf(path));
    }
    for (const std::string &text : options.mKeys) {
        const auto [key, value] = Parted(text, ';');
        for (const std::string &place : KeyPlaces(key, machine)) {
            if (!value) {
                state.mRegistry.PutKey(place);
                continue;
            }
            const auto [name, data] = Parted(*value, '=');
            state.mRegistry.PutValue(place, name == "@" ? std::string() : ToLowerCopy(name),
                                     data ? std::optional(DataOf(*data)) : std::nullopt);
        }
    }
    for (const std::string &text : options.mNoKeys) {
        const auto [key, name] = Parted(text, ';');
        for (const std::string &place : KeyPlaces(key, machine)) {
            if (name) {
                state.mRegistry.RemoveValue(place, ToLowerCopy(*name));
            } else {
                state.mRegistry.RemoveKey(place);
            }
        }
    }
}

void TakeFlags(const PlanOptions &options, CPlanRun &run)
{
    for (const std::string &text : options.mFlags) {
        const auto [name, number] = Parted(text, '=');
        if (name.empty()) {
            throw std::invalid_argument("no flag: " + text);
        }
        run.SetFlag(name, number ? DecimalNumber(*number) : 1);
    }
}

// The devices of the description as the walk over the device tree would find them.
void TakeDevices(const PlanOptions &options, const CPackageTree &tree, PlanContext &context_O)
{
    DevicesFound &found = context_O.mDevices;
    const bool modern = IsOSTypeWin8(context_O.mMachine.Windows().mOSType);
    found.mDeviceList = SupportedDevicesFrom(gDeviceTable, kDeviceRowCount, modern);
    context_O.mDevicesKnown = options.mNoDevice || !options.mDevices.empty() || options.mRestIsMissing;
    for (const std::string &device : options.mDevices) {
        const std::string id = UpperAscii(device);
        bool any = false;
        for (SupportedDevice &record : found.mDeviceList) {
            // An instance id holds the record's id; a product's number or id is held by it.
            if (!Contains(id, record.mId) && !Contains(record.mId, id)) {
                continue;
            }
            any = true;
            record.mFound = true;
            found.mDevicePresence |= record.mFlags;
            if ((record.mFlags & kDeviceOwnData) != 0) {
                found.mProductName = ProductNameOf(record.mId);
                const std::string dataFile = ".\\" + found.mProductName + ".dat";
                if (tree.Find(dataFile) != nullptr) {
                    found.mOemDataFile = dataFile;
                }
            }
        }
        if (!any) {
            throw std::invalid_argument("no device that the program knows on this Windows: " + device);
        }
    }
}

std::string MachineWords(const PlanOptions &options, const CPlanMachine &machine)
{
    std::string words = machine.Windows().mTitle + std::string(machine.Is64() ? ", 64-bit" : ", 32-bit");
    words += options.mUser == "admin"      ? ", an administrator"
             : options.mUser == "filtered" ? ", an administrator with filtered rights"
                                           : ", no administrator";
    for (const std::string &device : options.mDevices) {
        words += ", device " + device;
    }
    return words + (options.mNoDevice ? ", no device" : "") + (options.mRestIsMissing ? ", nothing else on it" : "");
}

std::string RefusalWords(const CPlanRun &run)
{
    switch (run.mInstallType) {
    case ENotSupported:
        return "This Windows is not one that the program knows.";
    case ENoISDHardware:
        return "No device is attached that this package is for.";
    case ENonAdmin:
        return "The user is no administrator.";
    default:
        return std::string();
    }
}

void RunSteps(CPlanRun &run, Plan &plan_I_O)
{
    try {
        run.RunNoted(run.mCommand, plan_I_O.mSteps);
    } catch (const PlanCourseEnd &end) {
        plan_I_O.mEnd = end.mWhy;
    }
}

} // namespace

Plan MakePlan(const PlanOptions &options, IScriptSource &source, const CPackageTree &tree)
{
    const CPlanMachine machine(options, tree);
    CProfileReader reader(source);
    Plan plan;
    PlanContext context{options, machine, tree, source, reader, plan, {}, false, 0, 0, 0, {}, {}};
    CSystemState::SetFakeOSType(machine.Windows().mOSType);
    TakeDevices(options, tree, context);
    PlanState ground;
    ground.mFiles = CTreeFacts([&machine](const std::string &path) { return machine.FileGround(path); });
    ground.mRegistry = CRegistryFacts([&machine](const std::string &path) { return machine.KeyGround(path); });
    CPlanRun run(context, ground);
    plan.mMachine = MachineWords(options, machine);

    run.mLanguage.SetFromName(options.mLanguage);
    if (!run.mLanguage.IsSupported()) {
        throw std::invalid_argument("no such language: " + options.mLanguage);
    }
    run.mSilent = 1;
    run.mUninstall = options.mUninstall;
    run.mCommandOverride = options.mCommand;
    run.Script().SetConfigFile("");
    if (!IsScriptVersion(run.Script().ReadString("MAIN", "Version", ""))) {
        plan.mOpening = "The script is not there, or its version is not one that the program runs.";
        plan.mExitCodes = "1";
        return plan;
    }
    if (!SettleDriverType(run.Script().ReadString("MAIN", "PrefType", ""))) {
        plan.mOpening = "PrefType of the script names no package line.";
        plan.mExitCodes = "1";
        return plan;
    }
    run.ReadScriptHead();
    TakeDescription(options, machine, run);
    run.TakeStaticFlags(run.Script().ReadString("STATIC_FLAGS", "", ""));
    TakeFlags(options, run);
    SettleLanguage(run.Script().ReadString("MAIN", "Languages", ""), run.mLanguage);

    CPlanFacts facts(run, machine, options.mUser == "admin" ? 1 : options.mUser == "filtered" ? 2 : 0);
    const EPreflightAction action = TakePreflightDecisions(run, facts);
    if (run.mInstallType == ENoISDHardware && !context.mDevicesKnown) {
        plan.mOpening =
            "If no device is attached that this package is for, the run is refused with exit code 65. With one:";
        run.mInstallType = run.mUninstall ? EUninstallAllowed : EInstallAllowed;
    }
    if (action == EPreflightElevate) {
        plan.mOpening =
            "The program asks for more rights and starts itself anew; the second process does the following.";
        CPlanFacts elevated(run, machine, 1);
        run.mInstallType = EInstallAllowed;
        run.mUninstall = options.mUninstall;
        TakePreflightDecisions(run, elevated);
    }
    plan.mGroup = run.mCommand;
    plan.mRuns = run.mInstallType == EInstallAllowed || run.mInstallType == EUninstallAllowed;
    if (plan.mRuns) {
        RunSteps(run, plan);
    } else {
        plan.mOpening = RefusalWords(run);
    }
    // The interpreter's own mark is that of what has surely been asked for.
    const auto codeOf = [&](bool reboot) {
        run.mRebootRequired = reboot;
        return std::to_string(ExitCodeOf(SilentResult(run, run)));
    };
    const EAnswer reboot = run.State().mReboot;
    plan.mExitCodes = reboot == EAnswer::EOpen ? codeOf(false) + " or " + codeOf(true)
                                               : codeOf(reboot == EAnswer::EYes || run.mRebootRequired);
    return plan;
}
