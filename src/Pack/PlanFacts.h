// What is known about the files and the registry of the machine that a plan is made for: what the description tells,
// what the package holds, and what the steps have done so far. Everything else is open.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

enum class EAnswer : uint8_t { ENo, EYes, EOpen };

constexpr EAnswer AnswerOf(bool yes)
{
    return yes ? EAnswer::EYes : EAnswer::ENo;
}

// Yes becomes no and the other way round; what is open stays so.
constexpr EAnswer Opposite(EAnswer answer)
{
    return answer == EAnswer::EOpen ? answer : AnswerOf(answer == EAnswer::ENo);
}

// One place among those of a tree: a file, a folder, a key of the registry.
struct TreeFact {
    EAnswer mThere = EAnswer::EOpen;
    bool mFolder = false;
    bool mWhole = false;                 // all that is below it has a fact of its own
    std::string mFrom;                   // the file that it is a copy of; empty when it is none that is known
    std::optional<std::string> mVersion; // empty for a file without one

    bool operator==(const TreeFact &other) const;
};

// Facts about places by their paths. The paths are whole, without a back-slash at the end, and in small letters.
class CTreeFacts {
public:
    // What is so in front of the first step, by itself; facts go before it.
    using Ground = std::function<TreeFact(const std::string &path)>;

    explicit CTreeFacts(Ground ground = {}) : mGround(std::move(ground)) {}

    TreeFact Find(const std::string &path) const;
    EAnswer Exists(const std::string &path) const { return Find(path).mThere; }

    // The place is there from now on, and so is all that leads to it.
    void Put(const std::string &path, const TreeFact &fact);

    // It may have come to be there, with all that leads to it.
    void PutPerhaps(const std::string &path);

    // The place is gone with all below it; nobody knows whether it is there.
    void Remove(const std::string &path);
    void Forget(const std::string &path);

    // The folder is there, and what is below it is gone, apart from the names that `stays` answers true for.
    void Empty(const std::string &path, const std::function<bool(const std::string &name)> &stays);

    // Things that nobody knows of may be in the folder.
    void Open(const std::string &path);

    // Whether something is known to be right below a folder; open where other things may be.
    EAnswer HasSomething(const std::string &path) const;

    // The facts below a folder, for those who copy it; paths relative to it.
    std::map<std::string, TreeFact> Below(const std::string &path) const;

    // What two courses of a run agree on. Where they differ it is open.
    static CTreeFacts Joined(const CTreeFacts &left, const CTreeFacts &right);

    bool operator==(const CTreeFacts &other) const;

    // Counts the changes, so that a loop that changes nothing is found.
    uint64_t Changes() const { return mChanges; }

private:
    void Set(const std::string &path, const TreeFact &fact);
    void EraseBelow(const std::string &path);

    Ground mGround;
    std::map<std::string, TreeFact> mFacts;
    uint64_t mChanges = 0;
};

// The path that a place lies in; empty for one without.
std::string ParentPath(const std::string &path);

// A value of the registry.
struct ValueFact {
    EAnswer mThere = EAnswer::EOpen;
    std::optional<std::string> mData; // its bytes, when they are known
    bool operator==(const ValueFact &other) const { return mThere == other.mThere && mData == other.mData; }
};

// Keys and their values. A key's path begins with its view and root.
class CRegistryFacts {
public:
    explicit CRegistryFacts(CTreeFacts::Ground ground = {}) : mKeys(std::move(ground)) {}

    EAnswer KeyExists(const std::string &key) const { return mKeys.Exists(key); }
    ValueFact Find(const std::string &key, const std::string &name) const;

    void PutKey(const std::string &key);
    void RemoveKey(const std::string &key);
    void ForgetKey(const std::string &key);
    void PutValue(const std::string &key, const std::string &name, const std::optional<std::string> &data);
    void RemoveValue(const std::string &key, const std::string &name);
    void ForgetValue(const std::string &key, const std::string &name);

    static CRegistryFacts Joined(const CRegistryFacts &left, const CRegistryFacts &right);
    bool operator==(const CRegistryFacts &other) const { return mKeys == other.mKeys && mValues == other.mValues; }
    uint64_t Changes() const { return mKeys.Changes() + mChanges; }

private:
    void SetValue(const std::string &key, const std::string &name, const ValueFact &fact);

    CTreeFacts mKeys;
    std::map<std::string, std::map<std::string, ValueFact>> mValues; // by key, by name
    uint64_t mChanges = 0;
};
