// What Install brings and Uninstall leaves, what Uninstall takes that nothing brings, and the two views in which 64-bit
// Windows keeps some of it.
#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

#include "Common/StringUtilities.h"
#include "Pack/InventoryMatch.h"
#include "Pack/PackMacros.h"

namespace {

std::string LineOf(const ScriptPlace &place)
{
    return "line " + std::to_string(place.mLine);
}

const char *NameOf(EView view)
{
    return view == EView64 ? "64-bit" : "32-bit";
}

// Folders of the machine in which a package makes folders of its own; others have all that is written to.
bool HoldsPackages(const std::string &folder)
{
    static const std::set<std::string> folders = {"PROGFILES",       "PROGRAM FILES",  "APP DATA",
                                                  "COMMON PROGRAMS", "COMMON DESKTOP", "PROFILES"};
    return folders.count(folder) != 0;
}

ECheck CheckOf(EThing thing)
{
    switch (thing) {
    case EThing::EFile:
        return ECheckLeftFile;
    case EThing::EFolder:
        return ECheckLeftFolder;
    case EThing::ELink:
    case EThing::ELinkOfFile:
        return ECheckLeftLink;
    case EThing::EShellEntry:
        return ECheckLeftEntry;
    case EThing::EService:
        return ECheckLeftService;
    case EThing::EDriver:
        return ECheckLeftDriver;
    default:
        return ECheckLeftValue;
    }
}

class CInventoryCheck {
public:
    CInventoryCheck(CheckContext &context, const CInventory &inventory) : mContext(context)
    {
        for (const InventoryItem &item : inventory.Items()) {
            (item.mDeed == EDeed::EBrings ? mBrings : item.mDeed == EDeed::ETakes ? mTakes : mTests).push_back(&item);
        }
        for (const InventoryItem *const item : mBrings) {
            if (item->mStep->mCommand->mEffect == EWritesFolder) {
                mCopied.push_back(item);
            }
        }
        AddFolders();
        for (const InventoryItem *const takes : mTakes) {
            mTakesAt[KeyOf(*takes)].push_back(takes);
        }
        for (const InventoryItem *const brings : mBrings) {
            ForEachAncestor(KeyOf(*brings), [&](const std::string &place) { mBringsWithin[place].push_back(brings); });
        }
    }

    void CheckLeft()
    {
        std::set<std::string> told;
        for (const InventoryItem *const brings : mBrings) {
            if (!brings->mReached || !Counts(*brings)) {
                continue;
            }
            bool other = false;
            const bool taken = IsTaken(*brings, other);
            const std::string id = std::to_string(static_cast<int>(brings->mThing)) + brings->mPlace + "\n" +
                                   brings->mName + "\n" + std::to_string(brings->mView);
            if (!taken && !other && told.insert(id).second) {
                mContext.mFound.Add(CheckOf(brings->mThing), brings->mAt, LeftText(*brings));
            }
        }
    }

    // What is taken and tested in the view that nothing is written in.
    void CheckViews()
    {
        for (const InventoryItem *const takes : mTakes) {
            if (const InventoryItem *const brings = OnlyInOtherView(*takes)) {
                Tell(IsFile(takes->mThing) ? ECheckFileView : ECheckDeletedView, *takes, *brings, "deletes");
            }
        }
        // A tree that goes in one view leaves what the other one has.
        for (const InventoryItem *const brings : mBrings) {
            bool other = false;
            if (brings->mReached && Counts(*brings) && !IsTaken(*brings, other) && other) {
                const InventoryItem &takes = *TakenInOtherView(*brings);
                Tell(IsFile(brings->mThing) ? ECheckFileView : ECheckDeletedView, takes, *brings, "deletes");
            }
        }
        for (const InventoryItem *const tests : mTests) {
            if (const InventoryItem *const brings = OnlyInOtherView(*tests)) {
                Tell(tests->mThing == EThing::EFile ? ECheckFileView : ECheckTestedView, *tests, *brings, "looks");
            }
        }
    }

    void CheckNeverBrought()
    {
        for (const InventoryItem *const takes : mTakes) {
            const bool removal =
                (takes->mRuns & kInstallRuns) == 0 && takes->mReached && (takes->mRuns & kUninstallRuns) != 0;
            if (!removal || takes->mThing == EThing::EService || IsOfShell(*takes) || MeetsAny(*takes)) {
                continue;
            }
            if (takes->mThing == EThing::EContents) {
                mContext.mFound.Add(ECheckForeignTarget, takes->mAt,
                                    "nothing of the package brings a file into " + takes->mWords);
            } else if (takes->mPlace.compare(0, 6, "\x01TEMP\x01") != 0) {
                mContext.mFound.Add(ECheckNeverBrought, takes->mAt, "nothing brings " + takes->Shown());
            }
        }
    }

    void CheckMixed()
    {
        for (const InventoryItem *const item : mBrings) {
            const ScriptStep *const step = item->mStep;
            if (item->mView == EViewNone || (item->mRuns & kRuns64) == 0) {
                continue;
            }
            if (step->mWord == "CopyFileIfNewerRedir") {
                mContext.mFound.Add(ECheckMixedView, item->mAt,
                                    step->mWord + " compares with the file of 64-bit programs and replaces that of "
                                                  "32-bit ones");
            } else if (step->mCommand->mView == EViewMixed && IsWrittenPath(*item)) {
                mContext.mFound.Add(ECheckMixedView, item->mAt,
                                    step->mWord + " reads the system folder of 32-bit programs and writes to that of "
                                                  "64-bit ones");
            }
        }
    }

private:
    static bool IsWrittenPath(const InventoryItem &item)
    {
        return item.mThing == EThing::EFile || item.mThing == EThing::EFolder;
    }

    // What a package has to take away again.
    static bool Counts(const InventoryItem &item)
    {
        std::string rest;
        const std::string folder = FolderOf(item.mPlace, &rest);
        const bool path = IsFile(item.mThing) || item.mThing == EThing::EFolder;
        return !path || (!folder.empty() && folder != "TEMP" && !rest.empty());
    }

    // What a person calls a folder on the way to a path: as much of the path as the folder has names.
    static std::string ShownFolder(const std::string &words, const std::string &folder)
    {
        const auto depth = std::count(folder.begin(), folder.end(), '\\');
        size_t at = words.find('\\');
        for (auto passed = depth; passed > 0 && at != std::string::npos; --passed) {
            at = words.find('\\', words.find_first_not_of('\\', at));
        }
        return words.substr(0, at);
    }

    // The folders on the way to what is brought.
    void AddFolders()
    {
        std::set<std::string> known;
        for (const InventoryItem *const item : mBrings) {
            known.insert(item->mThing == EThing::EFolder ? item->mPlace : std::string());
        }
        const std::vector<const InventoryItem *> brings = mBrings;
        for (const InventoryItem *const item : brings) {
            std::string rest;
            if (!item->mReached || (!IsFile(item->mThing) && item->mThing != EThing::EFolder) ||
                !HoldsPackages(FolderOf(item->mPlace, &rest))) {
                continue;
            }
            std::string place = item->mPlace;
            for (size_t slash = place.rfind('\\'); slash != std::string::npos && place[slash - 1] != kFolderMark;
                 slash = place.rfind('\\')) {
                place.erase(slash);
                if (known.insert(place).second) {
                    mMade.push_back(std::make_unique<InventoryItem>(*item));
                    mMade.back()->mThing = EThing::EFolder;
                    mMade.back()->mPlace = place;
                    mMade.back()->mWords = ShownFolder(item->mWords, place);
                    mBrings.push_back(mMade.back().get());
                }
            }
        }
    }

    bool IsTaken(const InventoryItem &brings, bool &otherView_O) const
    {
        bool taken = false;
        ForEachTaker(brings, [&](const InventoryItem &takes) {
            taken = taken || SameView(takes, brings);
            otherView_O = true;
        });
        otherView_O = otherView_O && !taken;
        return taken;
    }

    const InventoryItem *TakenInOtherView(const InventoryItem &brings) const
    {
        const InventoryItem *found = nullptr;
        ForEachTaker(brings, [&](const InventoryItem &takes) { found = &takes; });
        return found;
    }

    void ForEachTaker(const InventoryItem &brings, const std::function<void(const InventoryItem &)> &visit) const
    {
        ForEachAncestor(KeyOf(brings), [&](const std::string &place) {
            const auto found = mTakesAt.find(place);
            for (const InventoryItem *const takes : found != mTakesAt.end() ? found->second : kNone) {
                if (takes->mReached && Meets(*takes, brings)) {
                    visit(*takes);
                }
            }
        });
    }

    bool MeetsAny(const InventoryItem &takes) const
    {
        const auto found = mBringsWithin.find(KeyOf(takes));
        const std::vector<const InventoryItem *> &brings = found != mBringsWithin.end() ? found->second : kNone;
        // Every driver that is installed gives Windows an INF file to keep.
        if (takes.mStep->mWord == "DevRemoveOEMINF") {
            return std::any_of(mBrings.begin(), mBrings.end(),
                               [](const InventoryItem *item) { return item->mThing == EThing::EDriver; });
        }
        const bool any = std::any_of(brings.begin(), brings.end(), [&](const InventoryItem *item) {
            return Meets(takes, *item) || takes.mThing == EThing::EContents ||
                   (takes.mThing == EThing::EFile && item->mPlace == takes.mPlace);
        });
        return any || IsInCopiedFolder(takes);
    }

    // A copied folder brings files that no step names.
    bool IsInCopiedFolder(const InventoryItem &takes) const
    {
        return (IsFile(takes.mThing) || takes.mThing == EThing::EFolder || takes.mThing == EThing::EContents) &&
               std::any_of(mCopied.begin(), mCopied.end(),
                           [&](const InventoryItem *item) { return IsWithin(takes.mPlace, item->mPlace); });
    }

    // What ProcessXMLData notes in the settings of the installer.
    bool IsOfShell(const InventoryItem &takes) const
    {
        const bool note =
            takes.mThing == EThing::EValue && takes.mPlace == "HKLM\\SOFTWARE\\TAVIX\\INSTALLER" &&
            (takes.mName.compare(0, 10, "OEMXMLFILE") == 0 || takes.mName.compare(0, 10, "OEMDLLFILE") == 0);
        return note && std::any_of(mBrings.begin(), mBrings.end(),
                                   [](const InventoryItem *item) { return item->mThing == EThing::EShellEntry; });
    }

    // Something that is brought in the other view and not in that of the item.
    const InventoryItem *OnlyInOtherView(const InventoryItem &item) const
    {
        if (item.mView == EViewNone || (item.mRuns & kRuns64) == 0) {
            return nullptr;
        }
        const auto found = mBringsWithin.find(KeyOf(item));
        const InventoryItem *other = nullptr;
        for (const InventoryItem *const brings : found != mBringsWithin.end() ? found->second : kNone) {
            if (Meets(item, *brings)) {
                if (SameView(item, *brings)) {
                    return nullptr;
                }
                other = brings;
            }
        }
        return other;
    }

    void Tell(ECheck check, const InventoryItem &item, const InventoryItem &brings, const char *verb)
    {
        if (!mTold.insert(item.mAt).second) {
            return;
        }
        const std::string does = item.mStep->mWord + " " + verb + " in the " + NameOf(item.mView) + " view, and ";
        mContext.mFound.Add(check, item.mAt,
                            does + brings.Shown() + " is written in the " + NameOf(brings.mView) + " one, in " +
                                LineOf(brings.mAt),
                            {brings.mAt});
    }

    std::string LeftText(const InventoryItem &brings) const
    {
        std::string spared;
        if (IsFile(brings.mThing) && IsSpared(brings.mPlace)) {
            for (const InventoryItem *const takes : mTakes) {
                if (takes->mThing == EThing::EContents && IsWithin(brings.mPlace, takes->mPlace)) {
                    spared = "; DeleteDirContents spares it in a removal";
                }
            }
        }
        const char *const verb = brings.mThing == EThing::EService ? " is started here and nothing stops it"
                                                                   : " is brought here and nothing takes it away";
        return brings.Shown() + verb + spared;
    }

    static const std::vector<const InventoryItem *> kNone;

    CheckContext &mContext;
    std::vector<const InventoryItem *> mBrings;
    std::vector<const InventoryItem *> mTakes;
    std::vector<const InventoryItem *> mTests;
    std::vector<const InventoryItem *> mCopied; // folders that are copied with all that is in them
    std::vector<std::unique_ptr<InventoryItem>> mMade;
    std::set<ScriptPlace> mTold; // of the wrong view
    std::unordered_map<std::string, std::vector<const InventoryItem *>> mTakesAt;
    std::unordered_map<std::string, std::vector<const InventoryItem *>> mBringsWithin;
};

const std::vector<const InventoryItem *> CInventoryCheck::kNone;

} // namespace

void CheckInventory(CheckContext &context)
{
    const CInventory inventory(context);
    CInventoryCheck check(context, inventory);
    check.CheckViews();
    check.CheckMixed();
    if (context.mModel.Group("", "Uninstall").mExists) {
        check.CheckLeft();
        check.CheckNeverBrought();
    }
}
