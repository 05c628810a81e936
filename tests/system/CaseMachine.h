// The lines by which a case sets the machine up and asks it afterwards. Paths are those of the package unless they are
// whole; "64:" in front of one shows the folders of 64-bit Windows as they are. Keys begin with HKLM, HKCU, HKU, HKCR
// or HKCC and stand in the view 32 or 64. In contents and values \n, \r, \t, \0, \\ and \xHH are what they are in C.
//
//     text PATH = CONTENT              a file with this content
//     folder PATH                      a folder
//     value VIEW KEY;NAME = TYPE DATA  a value: sz TEXT, expand TEXT, multi A|B, dword NUMBER, binary HEX,
//                                  short HEX, which is a number of other than four bytes, none
//     key VIEW KEY                     a key
//
// These four set up and, asked afterwards, demand; "no" in front demands the opposite. For setting up only:
//
//     copy FROM -> PATH                a file of the test's machine, with its times
//     readonly PATH, hidden PATH       attributes
//     locked PATH                      held open, shared with nobody, until "unlock" or the end
//     link PATH -> FOLDER              a link to a folder, both in the package
//     unlock                           nothing is locked any more
//     restart                          Wine does what Windows does at its start with what waits for that
//     written PATH = YEAR-MONTH-DAY    time of the last write
//     setting NAME = TYPE DATA         a setting of the installer; all settings begin empty once there is one
//     program PATH = VERSION           a program with this product version of seven characters, or a file without one
//     renames PATH                     the file is to be deleted at the next start of Windows, and no other; "-": none
//     no file PATH, no value VIEW KEY;NAME, no key VIEW KEY   takes what is there away
//     mutex NAME                       a named mutex, held until the case is over
//     event NAME                       a named event likewise, so that no mutex can have the name
//     service NAME dirty, sound        a service, marked for deletion or not
//     keep KEY                         the key goes back to what it was, in both views
//     scratch PATH                     a file or folder that goes away; what the machine has there comes back
//
// For asking only:
//
//     file PATH                        something that is a file
//     normal PATH                      a file that is neither read-only nor hidden
//     tree PATH = A, B\, B\C           what a folder holds, folders with a back-slash
//     unicode VIEW KEY;NAME = TEXT     a value's text in any language, in UTF-8
//     waiting A > B, C                 what the next start of Windows is to do, in order: A becomes B, and C goes
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

    // The names of folders replaced, %PACKAGE% and the like.
    std::string Expanded(std::string text) const;

private:
    std::string Place(const std::string &path) const;

    Package &mPackage;
    std::vector<std::shared_ptr<void>> mOwners; // of what goes back behind the case, the last first
    std::vector<std::shared_ptr<class LockedFile>> mLocks;
    std::shared_ptr<class Settings> mSettings;
};
