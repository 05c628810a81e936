// What the measuring programs of this folder share: a clock, a staged package with the installer in it, its runs, and
// the bare writes that a trace is measured against. Each prints lines of "name: value unit" and ends with 1 when what
// it measured did not do its work.
#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

double Milliseconds(const std::function<void()> &work);
double Median(std::vector<double> values);
double Least(const std::vector<double> &values);

void Print(const std::string &name, double value, const char *unit, int decimals = 1);

// Tells what went wrong, with the last error, removes the staged package and ends the program.
[[noreturn]] void Fail(const std::string &what);

// The program that does nothing, built like the installer; it lies beside this program.
std::string EmptyProgram();

// Size in bytes, 0 when there is no such file.
size_t FileSize(const std::string &path);

struct ProgramRun {
    double mMilliseconds = 0; // from before its start until after its end
    DWORD mExitCode = 0;
    size_t mPeakBytes = 0; // the highest working set that was seen; 0 unless the memory was watched
};

// Runs a program in a folder and waits for its end. Watching its memory takes a processor, so a run is for the one or
// the other: with `watchMemory` the time means nothing.
ProgramRun RunProgram(const std::string &path, const std::string &tail, const std::string &folder,
                      bool watchMemory = false);

// A package in a folder of its own with the installer of TAVIX_SETUP in it. The folder is the one for temporary files,
// too, so the traces of the runs are found there and go away with it.
class StagedPackage {
public:
    StagedPackage();
    ~StagedPackage();
    StagedPackage(const StagedPackage &) = delete;
    StagedPackage &operator=(const StagedPackage &) = delete;

    const std::string &Folder() const { return mFolder; }
    std::string Path(const std::string &name) const { return mFolder + "\\" + name; }
    std::string Installer() const { return Path("TavixSetup.exe"); }

    // Writes the script: a head that passes all checks, and these groups. Its date is of yesterday: packages are older
    // than their runs, and profile functions may read a file again that has just been written.
    void Script(const std::string &groups) const;

    // Runs the installer without a window; a run that does not end with 0 ends this program. What it traced replaces
    // the trace of the run before.
    ProgramRun Run(bool watchMemory = false) const;

    // The trace of the last run, bytes as they are.
    std::string Trace() const;

private:
    std::string FindTrace() const;

    std::string mFolder;
};

// The records of a trace, each with its line end: one record is one line.
std::vector<std::string> Records(const std::string &trace);

size_t CountOf(const std::string &text, const std::string &part);

// Appends each record with one WriteFile to a new file, opened as the trace file is, and answers the milliseconds of
// the writes. Ends the program when the file does not hold the same bytes in the end.
double WriteBare(const std::vector<std::string> &records, const std::string &path);
