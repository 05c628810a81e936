// What a silent run of a package without steps costs beside a program that does nothing: time from start to end,
// memory, size of the file.
#include <vector>

#include "Bench.h"

namespace {

constexpr int kRounds = 80;
constexpr int kWatchedRounds = 15;

std::vector<double> gInstaller;
std::vector<double> gEmpty;

void MeasureTimes(const StagedPackage &package)
{
    // The first runs fill caches and count for neither.
    for (int round = -3; round < kRounds; ++round) {
        const double installer = package.Run().mMilliseconds;
        const double empty = RunProgram(EmptyProgram(), "", package.Folder()).mMilliseconds;
        if (round >= 0) {
            gInstaller.push_back(installer);
            gEmpty.push_back(empty);
        }
    }
    Print("installer, start to end, median", Median(gInstaller), "ms");
    Print("empty program, start to end, median", Median(gEmpty), "ms");
    Print("start ratio of the medians", Median(gInstaller) / Median(gEmpty), "x", 2);
    Print("installer, start to end, best", Least(gInstaller), "ms");
    Print("empty program, start to end, best", Least(gEmpty), "ms");
    Print("start ratio of the best", Least(gInstaller) / Least(gEmpty), "x", 2);
}

void MeasureMemory(const StagedPackage &package)
{
    std::vector<double> installer;
    std::vector<double> empty;
    for (int round = 0; round < kWatchedRounds; ++round) {
        installer.push_back(static_cast<double>(package.Run(true).mPeakBytes) / 1024);
        empty.push_back(static_cast<double>(RunProgram(EmptyProgram(), "", package.Folder(), true).mPeakBytes) / 1024);
    }
    Print("installer, peak memory, median", Median(installer), "KiB", 0);
    Print("empty program, peak memory, median", Median(empty), "KiB", 0);
    Print("peak memory ratio", Median(installer) / Median(empty), "x", 2);
}

} // namespace

int main()
{
    const StagedPackage package;
    package.Script("[Install]\r\n");
    MeasureTimes(package);
    if (CountOf(package.Trace(), "Executing steps for group Install") != 1) {
        Fail("the run did not come to its group");
    }
    MeasureMemory(package);
    Print("installer, size of the file", static_cast<double>(FileSize(package.Installer())) / 1024, "KiB", 0);
    Print("empty program, size of the file", static_cast<double>(FileSize(EmptyProgram())) / 1024, "KiB", 0);
    return 0;
}
