#include "Pack/PlanFacts.h"

#include <set>
#include <utility>

namespace {

// Whether a path lies below another one.
bool IsBelow(const std::string &path, const std::string &folder)
{
    return path.size() > folder.size() + 1 && path.compare(0, folder.size(), folder) == 0 &&
           path[folder.size()] == '\\';
}

TreeFact Missing()
{
    TreeFact fact;
    fact.mThere = EAnswer::ENo;
    return fact;
}

} // namespace

bool TreeFact::operator==(const TreeFact &other) const
{
    return mThere == other.mThere && mFolder == other.mFolder && mWhole == other.mWhole && mFrom == other.mFrom &&
           mVersion == other.mVersion;
}

bool CTreeFacts::operator==(const CTreeFacts &other) const
{
    return mFacts == other.mFacts;
}

std::string ParentPath(const std::string &path)
{
    const size_t at = path.rfind('\\');
    return at == std::string::npos ? std::string() : path.substr(0, at);
}

TreeFact CTreeFacts::Find(const std::string &path) const
{
    const auto own = mFacts.find(path);
    if (own != mFacts.end()) {
        return own->second;
    }
    for (std::string above = ParentPath(path); !above.empty(); above = ParentPath(above)) {
        const auto fact = mFacts.find(above);
        if (fact != mFacts.end()) {
            const bool none = fact->second.mThere == EAnswer::ENo || fact->second.mWhole ||
                              (fact->second.mThere == EAnswer::EYes && !fact->second.mFrom.empty());
            if (none) {
                return Missing();
            }
        }
    }
    return mGround ? mGround(path) : TreeFact();
}

void CTreeFacts::Set(const std::string &path, const TreeFact &fact)
{
    const auto [at, added] = mFacts.emplace(path, fact);
    if (added || !(at->second == fact)) {
        at->second = fact;
        ++mChanges;
    }
}

void CTreeFacts::EraseBelow(const std::string &path)
{
    const auto from = mFacts.lower_bound(path + '\\');
    auto to = from;
    while (to != mFacts.end() && IsBelow(to->first, path)) {
        ++to;
    }
    mChanges += from == to ? 0 : 1;
    mFacts.erase(from, to);
}

void CTreeFacts::Put(const std::string &path, const TreeFact &fact)
{
    const std::string above = ParentPath(path);
    if (!above.empty() && Exists(above) != EAnswer::EYes) {
        TreeFact folder;
        folder.mFolder = true;
        Put(above, folder);
    }
    const TreeFact former = Find(path);
    TreeFact now = fact;
    now.mThere = EAnswer::EYes;
    now.mWhole = fact.mFolder && (former.mThere == EAnswer::ENo || former.mWhole);
    if (!(fact.mFolder && former.mThere == EAnswer::EYes)) {
        Set(path, now);
    }
}

void CTreeFacts::Remove(const std::string &path)
{
    EraseBelow(path);
    Set(path, Missing());
}

void CTreeFacts::Forget(const std::string &path)
{
    TreeFact fact = Find(path);
    fact.mWhole = fact.mWhole || fact.mThere == EAnswer::ENo; // nothing else has come to be below it
    fact.mThere = EAnswer::EOpen;
    Set(path, fact);
}

void CTreeFacts::PutPerhaps(const std::string &path)
{
    for (std::string place = path; !place.empty() && Exists(place) != EAnswer::EYes; place = ParentPath(place)) {
        Forget(place);
    }
}

void CTreeFacts::Empty(const std::string &path, const std::function<bool(const std::string &)> &stays)
{
    std::map<std::string, TreeFact> kept;
    const auto nameOf = [](const std::string &place) { return place.substr(place.rfind('\\') + 1); };
    for (const auto &[below, fact] : Below(path)) {
        if (fact.mThere != EAnswer::ENo && !fact.mFolder && stays(nameOf(below))) {
            kept[path + '\\' + below] = fact;
        }
    }
    EraseBelow(path);
    TreeFact folder;
    folder.mThere = EAnswer::EYes;
    folder.mFolder = true;
    folder.mWhole = true;
    Set(path, folder);
    for (const auto &[place, fact] : kept) {
        Put(place, fact);
        if (fact.mThere == EAnswer::EOpen) {
            Forget(place);
        }
    }
}

void CTreeFacts::Open(const std::string &path)
{
    TreeFact fact = Find(path);
    fact.mWhole = false;
    Set(path, fact);
}

EAnswer CTreeFacts::HasSomething(const std::string &path) const
{
    const std::map<std::string, TreeFact> below = Below(path);
    EAnswer answer = Find(path).mWhole ? EAnswer::ENo : EAnswer::EOpen;
    for (const auto &[name, fact] : below) {
        if (fact.mThere == EAnswer::EYes) {
            return EAnswer::EYes;
        }
        answer = fact.mThere == EAnswer::EOpen ? EAnswer::EOpen : answer;
    }
    return answer;
}

std::map<std::string, TreeFact> CTreeFacts::Below(const std::string &path) const
{
    std::map<std::string, TreeFact> below;
    for (auto at = mFacts.lower_bound(path + '\\'); at != mFacts.end() && IsBelow(at->first, path); ++at) {
        below[at->first.substr(path.size() + 1)] = at->second;
    }
    return below;
}

CTreeFacts CTreeFacts::Joined(const CTreeFacts &left, const CTreeFacts &right)
{
    CTreeFacts joined(left.mGround);
    std::set<std::string> paths;
    for (const CTreeFacts *facts : {&left, &right}) {
        for (const auto &[path, fact] : facts->mFacts) {
            paths.insert(path);
        }
    }
    for (const std::string &path : paths) {
        const TreeFact a = left.Find(path), b = right.Find(path);
        TreeFact fact;
        fact.mThere = a.mThere == b.mThere ? a.mThere : EAnswer::EOpen;
        fact.mFolder = a.mFolder || b.mFolder;
        fact.mWhole =
            (a.mWhole || a.mThere == EAnswer::ENo) && (b.mWhole || b.mThere == EAnswer::ENo) && (a.mWhole || b.mWhole);
        fact.mFrom = a.mFrom == b.mFrom ? a.mFrom : std::string();
        fact.mVersion = a.mVersion == b.mVersion ? a.mVersion : std::nullopt;
        if (!(joined.Find(path) == fact)) {
            joined.mFacts[path] = fact;
        }
    }
    joined.mChanges = left.mChanges + right.mChanges + 1;
    return joined;
}

ValueFact CRegistryFacts::Find(const std::string &key, const std::string &name) const
{
    const auto values = mValues.find(key);
    if (values != mValues.end()) {
        const auto value = values->second.find(name);
        if (value != values->second.end()) {
            return value->second;
        }
    }
    const TreeFact place = mKeys.Find(key);
    ValueFact fact;
    fact.mThere = place.mThere == EAnswer::ENo || place.mWhole ? EAnswer::ENo : EAnswer::EOpen;
    return fact;
}

void CRegistryFacts::PutKey(const std::string &key)
{
    TreeFact fact;
    fact.mFolder = true;
    mKeys.Put(key, fact);
}

void CRegistryFacts::RemoveKey(const std::string &key)
{
    mKeys.Remove(key);
    for (auto at = mValues.lower_bound(key); at != mValues.end() && at->first.compare(0, key.size(), key) == 0;) {
        at = at->first == key || IsBelow(at->first, key) ? mValues.erase(at) : std::next(at);
    }
}

void CRegistryFacts::ForgetKey(const std::string &key)
{
    RemoveKey(key);
    mKeys.Forget(key);
}

void CRegistryFacts::SetValue(const std::string &key, const std::string &name, const ValueFact &fact)
{
    const auto [at, added] = mValues[key].emplace(name, fact);
    if (added || !(at->second == fact)) {
        at->second = fact;
        ++mChanges;
    }
}

void CRegistryFacts::PutValue(const std::string &key, const std::string &name, const std::optional<std::string> &data)
{
    PutKey(key);
    SetValue(key, name, {EAnswer::EYes, data});
}

void CRegistryFacts::RemoveValue(const std::string &key, const std::string &name)
{
    SetValue(key, name, {EAnswer::ENo, std::nullopt});
}

void CRegistryFacts::ForgetValue(const std::string &key, const std::string &name)
{
    SetValue(key, name, {EAnswer::EOpen, std::nullopt});
}

CRegistryFacts CRegistryFacts::Joined(const CRegistryFacts &left, const CRegistryFacts &right)
{
    CRegistryFacts joined;
    joined.mKeys = CTreeFacts::Joined(left.mKeys, right.mKeys);
    for (const CRegistryFacts *facts : {&left, &right}) {
        for (const auto &[key, values] : facts->mValues) {
            for (const auto &[name, value] : values) {
                const ValueFact a = left.Find(key, name), b = right.Find(key, name);
                ValueFact fact;
                fact.mThere = a.mThere == b.mThere ? a.mThere : EAnswer::EOpen;
                fact.mData = a.mData == b.mData ? a.mData : std::nullopt;
                if (!(joined.Find(key, name) == fact)) {
                    joined.mValues[key][name] = fact;
                }
            }
        }
    }
    joined.mChanges = left.mChanges + right.mChanges + 1;
    return joined;
}
