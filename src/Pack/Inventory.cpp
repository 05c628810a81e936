#include "Pack/Inventory.h"

#include <utility>

#include "Common/StringUtilities.h"
#include "Pack/PackMacros.h"
#include "Pack/RegistryPlace.h"
#include "Script/Macros.h"

namespace {

// The kinds of drivers that commands install and remove.
struct DriverRow {
    const char *mWord;
    EDeed mDeed;
    const char *mKind;
    bool mOfDevice; // the second field tells which
};

constexpr DriverRow kDrivers[] = {
    {"InstallPenClass", EDeed::EBrings, "the pen class driver", false},
    {"RemovePenClass", EDeed::ETakes, "the pen class driver", false},
    {"DevInstall", EDeed::EBrings, "the driver of ", true},
    {"DevUpdate", EDeed::EBrings, "the driver of ", true},
    {"DevInstallSelectedDriver", EDeed::EBrings, "the driver of ", true},
    {"DevRemove", EDeed::ETakes, "the driver of ", true},
    {"DevRemoveSelectedDriver", EDeed::ETakes, "the driver of ", true},
    {"InstallTvxHidRouter", EDeed::EBrings, "the HID router", false},
    {"InstallRouterFilter", EDeed::EBrings, "the HID router", false},
    {"RemoveTvxHidRouter", EDeed::ETakes, "the HID router", false},
    {"InstallSiLabs", EDeed::EBrings, "the driver of the serial bridge", false},
    {"RemoveSiLabs", EDeed::ETakes, "the driver of the serial bridge", false},
    {"InstallBulkTouch", EDeed::EBrings, "the driver of bulk touch", false},
    {"RemoveBulkTouch", EDeed::ETakes, "the driver of bulk touch", false},
    {"CopyOEMINF", EDeed::EBrings, "the INF file that Windows keeps", false},
    {"DevRemoveOEMINF", EDeed::ETakes, "the INF file that Windows keeps", false},
};

} // namespace

bool HasTwoViews(const std::string &place)
{
    std::string rest;
    const std::string folder = FolderOf(place, &rest);
    return folder == "SYSTEM" || (folder == "WINDOWS" && IsWithin(rest, "SYSTEM32"));
}

std::string InventoryItem::Shown() const
{
    switch (mThing) {
    case EThing::EFolder:
        return "the folder " + mWords;
    case EThing::EContents:
        return "what is in " + mWords;
    case EThing::EKeyTree:
        return "the key " + mWords;
    case EThing::ELinkOfFile:
        return "the link " + mWords;
    case EThing::EShellEntry:
        return "what " + mWords + " registers";
    case EThing::EService:
        return "the service " + mWords;
    default:
        return mWords;
    }
}

CInventory::CInventory(CheckContext &context) : mContext(context)
{
    ForEachStep(context, [&](const CheckedStep &checked) {
        if (checked.mStep.mCommand != nullptr) {
            Take(checked);
        }
    });
}

std::string CInventory::PlaceOf(const CheckedStep &checked, size_t number) const
{
    const bool wide = (checked.mRuns & kRuns64) != 0;
    CPackMacros macros(mContext.mModel, mContext.mModel.Languages().front(), {wide, false});
    return PlacePath(ExpandMacros(checked.mStep.Field(number), macros));
}

void CInventory::Add(const CheckedStep &checked, EThing thing, EDeed deed, std::string place, std::string name,
                     std::string words, size_t field, bool twoViews)
{
    const ScriptStep &step = checked.mStep;
    const EView view = !twoViews ? EViewNone : step.mCommand->mView == EViewRedirected ? EViewRedirected : EView64;
    mItems.push_back({thing, deed, std::move(place), std::move(name), std::move(words), view, checked.mRuns,
                      checked.mReached, step.PlaceOfField(step.FieldAt(field)), &step});
}

void CInventory::Take(const CheckedStep &checked)
{
    TakeFiles(checked);
    TakeRegistry(checked);
    TakeDrivers(checked);
}

void CInventory::TakeFiles(const CheckedStep &checked)
{
    const ScriptStep &step = checked.mStep;
    const auto file = [&](EThing thing, EDeed deed, size_t number) {
        const std::string place = PlaceOf(checked, number);
        if (!place.empty()) {
            Add(checked, thing, deed, place, std::string(), step.Field(number), number, HasTwoViews(place));
        }
    };
    switch (step.mCommand->mEffect) {
    case EWritesFile:
        file(EThing::EFile, EDeed::EBrings, 1);
        break;
    case EWritesFolder:
        file(EThing::EFolder, EDeed::EBrings, 1);
        break;
    case EMakesFolder:
        file(EThing::EFolder, EDeed::EBrings, 0);
        break;
    case EDeletesFile:
        file(EThing::EFile, EDeed::ETakes, 0);
        break;
    case EDeletesFolder:
        file(EThing::EFolder, EDeed::ETakes, 0);
        break;
    case EEmptiesFolder:
        file(EThing::EContents, EDeed::ETakes, 0);
        break;
    case EMakesLink:
        if (step.mWord == "CreateLinkFromFile") {
            Add(checked, EThing::ELinkOfFile, EDeed::EBrings, PlaceOf(checked, 2), UpperAscii(step.Field(1)),
                step.Field(1) + " in " + step.Field(2), 1, false);
        } else {
            file(EThing::ELink, EDeed::EBrings, 1);
        }
        break;
    case EDeletesLink:
        Add(checked, EThing::ELinkOfFile, EDeed::ETakes, PlaceOf(checked, 0), UpperAscii(step.Field(2)),
            step.Field(2) + " in " + step.Field(0), 2, false);
        break;
    case ERegisters:
        file(EThing::EShellEntry, EDeed::EBrings, 0);
        break;
    case EUnregisters:
        file(EThing::EShellEntry, EDeed::ETakes, 0);
        break;
    case ETestsFile:
        if (step.mCommand->mFields[0].mKind == EFieldFile) {
            file(EThing::EFile, EDeed::ETests, 0);
        }
        break;
    default:
        break;
    }
}

void CInventory::TakeRegistry(const CheckedStep &checked)
{
    const ScriptStep &step = checked.mStep;
    const EEffect effect = step.mCommand->mEffect;
    const bool fromFile = step.mCommand->mFields[0].mKind == EFieldData;
    const bool writes = effect == EWritesValue || effect == EAddsEntry;
    if (!writes && effect != ETakesEntry && effect != ETestsValue) {
        return;
    }
    std::string text = step.Field(fromFile ? 2 : 0);
    if (step.mCommand->mFields[0].mReading == EReadExpanded && !fromFile) {
        CPackMacros macros;
        text = ExpandMacros(text, macros);
    }
    const RegistryPlace place = PlaceOfKey(mContext.mModel, text);
    std::string name = UpperAscii(step.Field(1));
    name = name == "@" ? "" : name;
    if (place.mKey.empty() || !place.mUnknown.empty()) {
        return;
    }
    const std::string words = place.mWords + " " + (name.empty() ? "@" : step.Field(1));
    const bool empties = effect == EWritesValue && !fromFile && step.Field(2).empty();
    if (effect == ETestsValue) {
        Add(checked, name.empty() ? EThing::EKeyTree : EThing::EValue, EDeed::ETests, place.mKey, name, words, 0,
            place.mTwoViews);
    } else if (effect == ETakesEntry || (empties && !name.empty())) {
        Add(checked, EThing::EValue, EDeed::ETakes, place.mKey, name, words, 0, place.mTwoViews);
    } else if (empties) {
        Add(checked, EThing::EKeyTree, EDeed::ETakes, place.mKey, std::string(), place.mWords, 0, place.mTwoViews);
    } else {
        Add(checked, EThing::EValue, EDeed::EBrings, place.mKey, name, words, fromFile ? 2 : 0, place.mTwoViews);
    }
}

void CInventory::TakeDrivers(const CheckedStep &checked)
{
    const ScriptStep &step = checked.mStep;
    if (step.mCommand->mEffect == EStartsService || step.mCommand->mEffect == EStopsService) {
        Add(checked, EThing::EService, step.mCommand->mEffect == EStartsService ? EDeed::EBrings : EDeed::ETakes,
            UpperAscii(step.Field(0)), std::string(), step.Field(0), 0, false);
    }
    for (const DriverRow &row : kDrivers) {
        if (step.mWord == row.mWord) {
            const std::string device = row.mOfDevice ? step.Field(1) : std::string();
            Add(checked, EThing::EDriver, row.mDeed, row.mKind + UpperAscii(device), std::string(), row.mKind + device,
                row.mOfDevice ? 1 : 0, false);
        }
    }
}
