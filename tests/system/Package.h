// A package staged in a folder of its own, and the runs of the installer on it.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TraceLog.h"

// What a run left behind.
struct RunResult {
    DWORD mExitCode = 0xFFFFFFFF;
    DWORD mProcessId = 0;                   // 0 when the run was started in another language
    std::optional<std::string> mOutputFile; // TavixInstallO.txt, when this run wrote it
    std::string mTraceText;                 // the trace file as it is
    std::vector<TraceRecord> mTrace;
};

// An installer that runs. The end of the object stops it.
class RunningSetup {
public:
    // Waits for the end, stops the process when that does not come in time, and gathers what is left.
    RunResult Wait(DWORD milliseconds = 30000);

    // Process and first thread; null for a run in another language.
    HANDLE Process() const { return mProcess.get(); }
    HANDLE Thread() const { return mThread.get(); }
    DWORD ProcessId() const { return mProcessId; }

private:
    friend class Package;
    bool Ended(DWORD milliseconds, DWORD *exitCode_O);

    std::shared_ptr<void> mProcess, mThread; // null when it could not be started
    DWORD mProcessId = 0;
    std::string mExitCodeFile; // where the exit code of a run in another language arrives
    std::string mTemp;
    std::string mTracePath;
};

class Package {
public:
    // Makes the folder below the temporary one, with the installer in it and a private folder for temporary files.
    Package();
    ~Package();
    Package(const Package &) = delete;
    Package &operator=(const Package &) = delete;

    // Folder of the package; path of a file in it, or elsewhere when it names its drive; folder of temporary files of
    // its runs (the value of !TEMP!, with a "\" behind).
    const std::string &Folder() const { return mFolder; }
    std::string Path(const std::string &name) const
    {
        return name.find(':') != std::string::npos ? name : mFolder + "\\" + name;
    }
    std::string Temp(const std::string &name = "") const { return mTemp + "\\" + name; }

    // Writes installer.dat: the text, lines ended as on Windows, a line end at its beginning dropped.
    Package &Script(const std::string &text);

    // A script that passes all checks (a consumer pen package in English) with these steps in its group Install,
    // and whatever more sections. Lines of MAIN stand in front of its own, and so count.
    Package &Steps(const std::string &steps, const std::string &more = "", const std::string &main = "");

    // A further file of the package, bytes as they are; a file of the test's machine under another name.
    Package &File(const std::string &name, const std::string &content);
    Package &Copy(const std::string &from, const std::string &name);

    // The response file that a front end would leave for the next run.
    Package &InputResponse(const std::string &content);

    // The name that the installer runs under from now on; it is put into the package when it isn't there.
    Package &Program(const std::string &name);

    // The current directory that the next runs are started in, in place of the package's folder.
    Package &StartedIn(const std::string &folder) { return mStartFolder = folder, *this; }

    // The environment of the next runs.
    Package &Environment(const std::string &name, const std::string &value)
    {
        return mEnvironment.emplace_back(name, value), *this;
    }

    // The display language of the next runs, as Wine knows it: "zh_CN.UTF-8". Needs Wine.
    Package &Language(const std::string &locale) { return mLocale = locale, *this; }

    // Where the trace of the next runs goes, for tests that name the file themselves; a "*" in the path stands for the
    // process id. Empty for the place that the installer chooses.
    Package &TraceAt(const std::string &path) { return mTraceAt = path, *this; }

    // Runs the installer in the package's folder, with what stands behind the program's name, or starts it, with flags
    // of CreateProcess.
    RunResult Run(const std::string &tail = "/s") { return Start(tail).Wait(); }
    RunningSetup Start(const std::string &tail, DWORD flags = 0);

private:
    std::string LineInLanguage(const std::string &tail, const std::string &exitCodeFile);
    void SwapEnvironment();

    std::string mFolder;
    std::string mTemp;
    std::string mProgram;
    std::string mStartFolder;
    std::string mLocale;
    std::string mTraceAt;
    std::vector<std::pair<std::string, std::string>> mEnvironment;
};
