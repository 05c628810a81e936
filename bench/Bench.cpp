#include "Bench.h"

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "Files.h"

namespace {

constexpr ULONGLONG kDay = 24ULL * 60 * 60 * 10000000; // in the units of file times
constexpr char kHead[] = "[MAIN]\r\nVersion=1.10.01\r\nPrefType=Pen_Tablet\r\nLanguages=en\r\n";

std::string gStagedFolder; // for the clean-up of a program that ends early

// Sharing, access and disposition of the trace file: every write goes to the end, whoever else writes.
HANDLE OpenForAppending(const std::string &path)
{
    return CreateFileA(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

void DateYesterday(const std::string &path)
{
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    ULARGE_INTEGER time;
    time.LowPart = now.dwLowDateTime;
    time.HighPart = now.dwHighDateTime;
    time.QuadPart -= kDay;
    const FILETIME yesterday = {time.LowPart, time.HighPart};
    const HANDLE file = CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (!SetFileTime(file, nullptr, nullptr, &yesterday)) {
        Fail("dating the script");
    }
    CloseHandle(file);
}

size_t WatchPeak(HANDLE process)
{
    size_t peak = 0;
    while (WaitForSingleObject(process, 0) == WAIT_TIMEOUT) {
        PROCESS_MEMORY_COUNTERS counters = {};
        if (GetProcessMemoryInfo(process, &counters, sizeof counters)) {
            peak = std::max<size_t>(peak, counters.PeakWorkingSetSize);
        }
    }
    return peak;
}

} // namespace

double Milliseconds(const std::function<void()> &work)
{
    LARGE_INTEGER frequency, begin, end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&begin);
    work();
    QueryPerformanceCounter(&end);
    return 1000.0 * static_cast<double>(end.QuadPart - begin.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double Least(const std::vector<double> &values)
{
    return *std::min_element(values.begin(), values.end());
}

void Print(const std::string &name, double value, const char *unit, int decimals)
{
    std::printf("%s: %.*f %s\n", name.c_str(), decimals, value, unit);
    std::fflush(stdout);
}

void Fail(const std::string &what)
{
    std::printf("failed: %s (%lu)\n", what.c_str(), GetLastError());
    if (!gStagedFolder.empty()) {
        RemoveTree(gStagedFolder);
    }
    std::exit(1);
}

std::string EmptyProgram()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string own = path;
    return own.substr(0, own.find_last_of('\\') + 1) + "Empty.exe";
}

size_t FileSize(const std::string &path)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    return GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data) ? data.nFileSizeLow : 0;
}

ProgramRun RunProgram(const std::string &path, const std::string &tail, const std::string &folder, bool watchMemory)
{
    ProgramRun run;
    std::string command = "\"" + path + "\"" + (tail.empty() ? "" : " ") + tail;
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION process = {};
    run.mMilliseconds = Milliseconds([&] {
        if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &start,
                            &process)) {
            Fail("starting " + path);
        }
        if (watchMemory) {
            run.mPeakBytes = WatchPeak(process.hProcess);
        }
        WaitForSingleObject(process.hProcess, INFINITE);
    });
    GetExitCodeProcess(process.hProcess, &run.mExitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return run;
}

StagedPackage::StagedPackage() : mFolder(FreeTempName("TavixBench"))
{
    gStagedFolder = mFolder;
    MakeFolders(mFolder);
    SetEnvironmentVariableA("TMP", mFolder.c_str());
    SetEnvironmentVariableA("TEMP", mFolder.c_str());
    const char *const setup = std::getenv("TAVIX_SETUP");
    if (setup == nullptr || !CopyFileA(setup, Installer().c_str(), FALSE)) {
        Fail("finding the installer by TAVIX_SETUP");
    }
}

StagedPackage::~StagedPackage()
{
    RemoveTree(mFolder);
    gStagedFolder.clear();
}

void StagedPackage::Script(const std::string &groups) const
{
    if (!WriteText(Path("installer.dat"), kHead + groups)) {
        Fail("writing the script");
    }
    DateYesterday(Path("installer.dat"));
}

ProgramRun StagedPackage::Run(bool watchMemory) const
{
    for (std::string trace = FindTrace(); !trace.empty(); trace = FindTrace()) {
        RemoveTree(trace);
    }
    const ProgramRun run = RunProgram(Installer(), "/s", mFolder, watchMemory);
    if (run.mExitCode != 0) {
        Fail("the installer ended with " + std::to_string(run.mExitCode));
    }
    return run;
}

std::string StagedPackage::Trace() const
{
    return ReadText(FindTrace());
}

std::string StagedPackage::FindTrace() const
{
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(Path("Install*.txt").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return std::string();
    }
    FindClose(search);
    return Path(found.cFileName);
}

std::vector<std::string> Records(const std::string &trace)
{
    std::vector<std::string> records;
    for (size_t from = 0, end = 0; (end = trace.find('\n', from)) != std::string::npos; from = end + 1) {
        records.push_back(trace.substr(from, end + 1 - from));
    }
    return records;
}

size_t CountOf(const std::string &text, const std::string &part)
{
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

double WriteBare(const std::vector<std::string> &records, const std::string &path)
{
    DeleteFileA(path.c_str());
    const HANDLE file = OpenForAppending(path);
    const double milliseconds = Milliseconds([&] {
        for (const std::string &record : records) {
            DWORD written = 0;
            WriteFile(file, record.data(), static_cast<DWORD>(record.size()), &written, nullptr);
        }
    });
    CloseHandle(file);
    std::string all;
    for (const std::string &record : records) {
        all += record;
    }
    if (ReadText(path) != all) {
        Fail("the bare writes");
    }
    return milliseconds;
}
