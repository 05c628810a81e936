// The words by which a case sets the machine up and asks it afterwards; tests/README.md tells what each of them means.
// A new word is a row of the table in CaseMachine.cpp.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CaseLine.h"

class LockedFile;
class Package;
class Settings;

class CaseMachine {
public:
    explicit CaseMachine(Package &package) : mPackage(package) {}

    // Carries a line out, or asks whether it holds. The failure tells what could not be done, or what was found.
    ::testing::AssertionResult Do(const std::string &line, bool asking);

    // What is wrong with a line, without carrying it out; empty when nothing is.
    static std::string Fault(const std::string &line, bool asking);

    // The names of folders replaced, %PACKAGE% and the like.
    std::string Expanded(std::string text) const;

private:
    struct Word;
    static const std::vector<Word> &Words();
    static const Word &Known(const std::string &line, bool asking);

    // A path of the package, or a whole one, without "64:".
    std::string Place(const std::string &path) const;
    std::string Place(const CaseLine &line) const { return Place(line.mLeft); }
    bool Mark(const CaseLine &line, unsigned attributes) const;
    bool Lock(const CaseLine &line, bool shareReading);
    template <typename TOwner>
    bool Own(const std::shared_ptr<TOwner> &owner)
    {
        mOwners.push_back(owner);
        return owner != nullptr;
    }
    template <typename TAction>
    void Later(TAction action)
    {
        mOwners.emplace_back(nullptr, [action](void *) { action(); });
    }

    Package &mPackage;
    std::vector<std::shared_ptr<void>> mOwners; // of what goes back behind the case
    std::vector<std::shared_ptr<LockedFile>> mLocks;
    std::shared_ptr<Settings> mSettings;
};
