// The lines by which a case sets the machine up and asks it afterwards. Paths are those of the package unless they are
// whole; "64:" in front of one shows the folders of 64-bit Windows as they are. Keys begin with HKLM, HKCU, HKU, HKCR or
// HKCC and stand in the view 32 or 64. In contents and values \n, \r, \t, \0, \\ and \xHH are what they are in C.
//
//     text PATH = CONTENT              a file with this content
//     folder PATH                      a folder
//     value VIEW KEY;NAME = TYPE DATA  a value: sz TEXT, expand TEXT, multi A|B, dword NUMBER, binary HEX
//     key VIEW KEY                     a key
//
// These four set up and, asked afterwards, demand; "no" in front demands the opposite. For setting up only:
//
//     copy FROM -> PATH                a file of the test's machine, with its times
//     readonly PATH, hidden PATH       attributes
//     locked PATH                      held open, shared with nobody, until the case is over
//     written PATH = YEAR-MONTH-DAY    time of the last write
//     setting NAME = TYPE DATA         a setting of the installer; all settings begin empty once there is one
//     keep KEY                         the key goes back to what it was, in both views
//     scratch PATH                     a file or folder outside the package that goes away
//
// For asking only:
//
//     file PATH                        something that is a file
//     normal PATH                      a file that is neither read-only nor hidden
//     tree PATH = A, B\, B\C           what a folder holds, folders with a back-slash
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

class Package;

class CaseMachine {
public:
    explicit CaseMachine(Package &package) : mPackage(package) {}

    // Carries one line out. The failure tells what could not be done, or which line is not understood.
    ::testing::AssertionResult SetUp(const std::string &line);

    // Asks whether one line holds.
    ::testing::AssertionResult Check(const std::string &line) const;

    // %PACKAGE%, %TEMP% and %DOUBLES% replaced.
    std::string Expanded(std::string text) const;

private:
    std::string Place(const std::string &path) const;

    Package &mPackage;
    std::vector<std::shared_ptr<void>> mOwners; // of what goes back behind the case, the last first
    std::shared_ptr<class Settings> mSettings;
};
