// The trace of a run as records, and the questions that tests ask of it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

struct RunResult;

struct TraceRecord {
    std::string mTime;    // HH:MM:SS.mmm
    std::string mProcess; // as written: five digits at least
    std::string mThread;
    std::string mMessage; // without its line end; further lines of the message are kept, parted by "\n"
};

// Cuts the text of a trace file into records. A line without a record's beginning continues the record before
// it; in front of the first record it makes one with the message alone.
std::vector<TraceRecord> ParseTrace(const std::string &text);

// True when `text` as a whole fits `pattern`, in which "*" stands for any number of characters.
bool Fits(const std::string &pattern, const std::string &text);

// How many records fit the pattern.
size_t CountRecords(const RunResult &run, const std::string &pattern);

// One record fits; no record fits; for each pattern a record fits that stands behind the one before. The
// failure message shows the whole trace.
::testing::AssertionResult Has(const RunResult &run, const std::string &pattern);
::testing::AssertionResult Lacks(const RunResult &run, const std::string &pattern);
::testing::AssertionResult HasInOrder(const RunResult &run, const std::vector<std::string> &patterns);

// The messages behind the first record that fits `from` up to the next that fits `to`, of the thread that wrote the
// first: the progress thread writes a record of its own at any place.
std::vector<std::string> MessagesBetween(const RunResult &run, const std::string &from, const std::string &to);

// What the Log steps of a run wrote, in order.
std::vector<std::string> Logged(const RunResult &run);
