// Paths of the registry.
#include <algorithm>

#include "Common/StringUtilities.h"
#include "Pack/CheckContext.h"
#include "Pack/PackMacros.h"
#include "Pack/RegistryPlace.h"
#include "Script/Macros.h"

namespace {

// The long name of a root that a person may have meant; empty for what does not look like a root.
std::string MeantRoot(const std::string &head)
{
    const std::string upper = UpperAscii(head);
    const std::vector<std::pair<std::string, std::string>> shortNames = {{"HKLM", "HKEY_LOCAL_MACHINE"},
                                                                         {"HKCU", "HKEY_CURRENT_USER"},
                                                                         {"HKU", "HKEY_USERS"},
                                                                         {"HKCR", "HKEY_CLASSES_ROOT"},
                                                                         {"HKCC", "HKEY_CURRENT_CONFIG"}};
    for (const auto &[shortName, name] : shortNames) {
        if (upper == shortName) {
            return name;
        }
    }
    const std::vector<std::string> &roots = RegistryRoots();
    const bool root = std::find(roots.begin(), roots.end(), upper) != roots.end();
    return root || upper.compare(0, 2, "HK") != 0 ? std::string() : NearestName(upper, roots);
}

void CheckRoot(CheckContext &context, const CheckedStep &checked, size_t at, const std::string &text,
               const RegistryPlace &place)
{
    const ScriptStep &step = checked.mStep;
    const std::string head = text.substr(0, text.find('\\'));
    const std::string meant = MeantRoot(head);
    if (!meant.empty()) {
        context.mFound.Add(ECheckBadRoot, step.PlaceInField(at, 0, head.size()),
                           "\"" + head + "\" is no root, and counts as a key below HKEY_LOCAL_MACHINE; write " + meant);
    } else if (place.mKey.empty() && !text.empty() && place.mUnknown.empty()) {
        context.mFound.Add(ECheckBadRoot, step.PlaceOfField(at), "a root alone is no key: nothing is read or written");
    }
}

void CheckNames(CheckContext &context, const ScriptStep &step, size_t at, const RegistryPlace &place)
{
    if (place.mCircle) {
        context.mFound.Add(ECheckUnknownPlatformName, step.PlaceOfField(at),
                           "this name of PlatformData leads back to itself");
        return;
    }
    for (const std::string &name : place.mUnknown) {
        context.mFound.Add(ECheckUnknownPlatformName, step.PlaceOfField(at),
                           "PlatformData has no " + (name.empty() ? "name that is empty" : name) +
                               ": this part of the key is empty");
    }
}

void CheckTest(CheckContext &context, const CheckedStep &checked, size_t at, const RegistryPlace &place)
{
    const ScriptStep &step = checked.mStep;
    if (step.mWord != "RegExist" && step.mWord != "RegNotExist") {
        return;
    }
    if (place.mLocation.mPath.compare(0, 1, "\\") == 0) {
        context.mFound.Add(ECheckRootInTest, step.PlaceOfField(at),
                           place.mHasRoot
                               ? "a key with a root is never found here; write the path alone, which lies "
                                 "below HKEY_LOCAL_MACHINE"
                               : "a key with a back-slash in front is never found here; write the path alone");
    } else if (step.Field(1) == "@") {
        context.mFound.Add(ECheckRootInTest, step.PlaceOfField(step.FieldAt(1)),
                           "@ is a name like others here: the unnamed value cannot be asked for");
    }
}

void CheckPermissions(CheckContext &context, const CheckedStep &checked, const RegistryPlace &place)
{
    const ScriptStep &step = checked.mStep;
    const size_t at = step.FieldAt(3);
    if (step.mCommand->mFields[3].mKind != EFieldPermissions || step.Field(3).empty() || IsAllowField(step.Field(3))) {
        return;
    }
    const RegRoot root = place.mLocation.mRootKey;
    if (root != kRootLocalMachine && root != kRootUsers) {
        context.mFound.Add(ECheckPermissionsView, step.PlaceOfField(at),
                           "Windows sets permissions below HKEY_LOCAL_MACHINE and HKEY_USERS only");
    } else if (place.mTwoViews && step.mCommand->mView == EView64 && (checked.mRuns & kRuns64) != 0) {
        context.mFound.Add(ECheckPermissionsView, step.PlaceOfField(at),
                           "the value goes to the 64-bit registry, and the permissions to the key of 32-bit programs; "
                           "write RegValueStringRedir for them");
    }
}

} // namespace

void CheckKeys(CheckContext &context)
{
    ForEachStep(context, [&](const CheckedStep &checked) {
        const ScriptStep &step = checked.mStep;
        ForEachField(step, [&](const CommandField &field, size_t at, const std::string &text) {
            if (field.mKind != EFieldKey || text.empty()) {
                return;
            }
            CPackMacros macros;
            const std::string key = field.mReading == EReadExpanded ? ExpandMacros(text, macros) : text;
            const RegistryPlace place = PlaceOfKey(context.mModel, key);
            CheckNames(context, step, at, place);
            CheckRoot(context, checked, at, text, place);
            if (macros.mUnknownNames.empty()) {
                CheckTest(context, checked, at, place);
            }
            CheckPermissions(context, checked, place);
        });
    });
}
