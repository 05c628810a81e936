// The words by which a case sets the machine up and asks it afterwards; tests/README.md tells what each of them means.
// A new word is a row of the table in CaseMachine.cpp.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

class LockedFile;
class Package;
class Settings;

class CaseMachine {
public:
    explicit CaseMachine(Package &package) : mPackage(package) {}

    // Carries one line out. The failure tells what could not be done, or what is not understood.
    ::testing::AssertionResult SetUp(const std::string &line);

    // Asks whether one line holds.
    ::testing::AssertionResult Check(const std::string &line);

    // What is wrong with a line that sets up or asks, without carrying it out; empty when nothing is.
    static std::string Fault(const std::string &line, bool asking);

    // The names of folders replaced, %PACKAGE% and the like.
    std::string Expanded(std::string text) const;

private:
    struct Word;
    static const std::vector<Word> &Words();
    static const Word &Known(const std::string &line, bool asking);

    // A path of the package, or a whole one, without "64:".
    std::string Place(const std::string &path) const;
    template <typename TOwner>
    bool Own(const std::shared_ptr<TOwner> &owner)
    {
        mOwners.push_back(owner);
        return owner != nullptr;
    }

    Package &mPackage;
    std::vector<std::shared_ptr<void>> mOwners; // of what goes back behind the case, the last first
    std::vector<std::shared_ptr<LockedFile>> mLocks;
    std::shared_ptr<Settings> mSettings;
};
