#include "Pack/InventoryMatch.h"

#include "Pack/PackMacros.h"

namespace {

bool EndsIn(const std::string &text, const std::string &end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The last name of a path.
std::string LastName(const std::string &place)
{
    return place.substr(place.rfind('\\') + 1);
}

} // namespace

bool IsSpared(const std::string &place)
{
    return EndsIn(place, ".DAT") || EndsIn(place, "\\REMOVE.EXE");
}

bool IsFile(EThing thing)
{
    return thing == EThing::EFile || thing == EThing::ELink;
}

bool Meets(const InventoryItem &takes, const InventoryItem &brings)
{
    const bool same = takes.mPlace == brings.mPlace;
    switch (takes.mThing) {
    case EThing::EFile:
        return same && (IsFile(brings.mThing) || brings.mThing == EThing::EFolder);
    case EThing::EFolder:
        return same && brings.mThing == EThing::EFolder;
    case EThing::EContents:
        if (brings.mThing == EThing::ELinkOfFile) {
            return IsWithin(brings.mPlace, takes.mPlace);
        }
        return (IsFile(brings.mThing) || brings.mThing == EThing::EFolder) && !same &&
               IsWithin(brings.mPlace, takes.mPlace) && !IsSpared(brings.mPlace);
    case EThing::EValue:
        return same && brings.mThing == EThing::EValue && takes.mName == brings.mName;
    case EThing::EKeyTree:
        return brings.mThing == EThing::EValue && IsWithin(brings.mPlace, takes.mPlace);
    case EThing::EShellEntry:
        return brings.mThing == EThing::EShellEntry && LastName(takes.mPlace) == LastName(brings.mPlace);
    case EThing::ELinkOfFile:
        return same && brings.mThing == EThing::ELinkOfFile && takes.mName == brings.mName;
    default:
        return same && brings.mThing == takes.mThing;
    }
}

bool SameView(const InventoryItem &left, const InventoryItem &right)
{
    return left.mView == EViewNone || right.mView == EViewNone || left.mView == right.mView ||
           ((left.mRuns & kRuns64) == 0 || (right.mRuns & kRuns64) == 0);
}

std::string KeyOf(const InventoryItem &item)
{
    return item.mThing == EThing::EShellEntry ? LastName(item.mPlace) : item.mPlace;
}

void ForEachAncestor(const std::string &place, const std::function<void(const std::string &)> &visit)
{
    for (size_t at = place.size(); at != std::string::npos && at != 0; at = place.rfind('\\', at - 1)) {
        visit(place.substr(0, at));
    }
    if (const size_t mark = place.rfind(kFolderMark); mark != std::string::npos && mark + 1 < place.size()) {
        visit(place.substr(0, mark + 1));
    }
}
