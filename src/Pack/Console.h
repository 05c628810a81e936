// Where the tool writes to.
#pragma once

#include <ostream>

struct CPackConsole {
    std::ostream &mOut;
    std::ostream &mError;
    bool mColour = false; // a person reads: the output is a terminal, and nobody asked for plain text
};

// What the program answers.
constexpr int kPackDone = 0;
constexpr int kPackFound = 1;      // there are errors in what was looked at
constexpr int kPackUnreadable = 2; // what was to be looked at could not be read, or the command line makes no sense

// A sub-command is added to the command line by a function `AddXCommand(CLI::App &app, CPackCommands &commands_I)`: its
// options stand in a record that the call back keeps, and the call back notes what the program is to do.
#include <functional>

struct CPackCommands {
    std::function<int(CPackConsole &)> mRun; // of the sub-command that the command line names
};
