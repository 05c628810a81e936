#include "Package.h"

#include "Files.h"
#include "Machine.h"

namespace {

const char kProgram[] = "TavixSetup.exe";
const char kOlderOutput[] = "left by another run";

std::string WindowsLines(const std::string &text)
{
    std::string lines;
    for (size_t at = text.empty() || text[0] != '\n' ? 0 : 1; at < text.size(); ++at) {
        if (text[at] == '\n' && (lines.empty() || lines.back() != '\r')) {
            lines += '\r';
        }
        lines += text[at];
    }
    return lines;
}

} // namespace

Package::Package()
    : mFolder(FreeTempName("tavix-package")), mTemp(mFolder + "-temp"), mStartFolder(mFolder),
      mEnvironment({{"TMP", mTemp}, {"TEMP", mTemp}})
{
    MakeFolders(mFolder);
    MakeFolders(mTemp);
    Program(kProgram);
}

Package::~Package()
{
    RemoveTree(mFolder);
    RemoveTree(mTemp);
}

Package &Package::Script(const std::string &text)
{
    return File("installer.dat", WindowsLines(text));
}

Package &Package::Steps(const std::string &steps, const std::string &more, const std::string &main)
{
    return Script("[MAIN]\n" + main + "Version=1.10.01\nPrefType=Pen_Tablet\nLanguages=en\n[Install]\n" +
                  WindowsLines(steps) + "\n" + WindowsLines(more));
}

Package &Package::File(const std::string &name, const std::string &content)
{
    EXPECT_TRUE(WriteText(Path(name), content)) << Path(name);
    return *this;
}

Package &Package::Copy(const std::string &from, const std::string &name)
{
    MakeFolders(Path(name).substr(0, Path(name).find_last_of('\\')));
    EXPECT_TRUE(CopyFileA(from.c_str(), Path(name).c_str(), FALSE)) << from << " to " << Path(name);
    return *this;
}

Package &Package::InputResponse(const std::string &content)
{
    EXPECT_TRUE(WriteText(Temp("TavixInstallI.txt"), content));
    return *this;
}

Package &Package::Program(const std::string &name)
{
    mProgram = name;
    if (!FileExists(Path(name))) {
        const std::string setup = EnvironmentText("TAVIX_SETUP");
        EXPECT_TRUE(FileExists(setup)) << "TAVIX_SETUP names no file: " << setup;
        if (!CreateHardLinkA(Path(name).c_str(), setup.c_str(), nullptr)) {
            Copy(setup, name);
        }
    }
    return *this;
}

RunningSetup Package::Start(const std::string &tail, DWORD flags)
{
    RunningSetup run;
    run.mTemp = mTemp;
    run.mTracePath = mTraceAt.empty() ? Temp("Install*.txt") : mTraceAt;
    for (const std::string &name : Tree(mTemp)) {
        if (Fits("Install*.txt", name)) {
            DeleteFileA(Temp(name).c_str());
        }
    }
    // An older answer, which the run has to replace.
    WriteText(Temp("TavixInstallO.txt"), kOlderOutput);
    if (!mLocale.empty()) {
        run.mExitCodeFile = Temp("exit-code");
        DeleteFileA(run.mExitCodeFile.c_str());
    }
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::string line = mLocale.empty() ? "\"" + Path(mProgram) + "\"" + (tail.empty() ? "" : " ") + tail
                                       : LineInLanguage(tail, run.mExitCodeFile);
    line.push_back('\0');
    SwapEnvironment();
    const bool started = CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, flags, nullptr,
                                        mStartFolder.c_str(), &startup, &process) != FALSE;
    EXPECT_TRUE(started) << "error " << GetLastError() << " when starting " << line;
    SwapEnvironment();
    if (started && mLocale.empty()) {
        run.mThread.reset(process.hThread, CloseHandle);
        run.mProcessId = process.dwProcessId;
        run.mProcess.reset(process.hProcess, [](HANDLE running) {
            TerminateProcess(running, 0xFFFFFFFF);
            CloseHandle(running);
        });
    }
    return run;
}

// Exchanges the variables that a run gets with those of this program, and the next time back.
void Package::SwapEnvironment()
{
    for (auto &[name, value] : mEnvironment) {
        const std::string former = EnvironmentText(name.c_str());
        SetEnvironmentVariableA(name.c_str(), value.empty() ? nullptr : value.c_str());
        value = former;
    }
}

// Wine takes its language from the environment that it is started with and not from the one that a Windows program
// hands on, so the run takes a way through the shell below, which reports the exit code in a file. On this way the
// folder of temporary files is the user's own again: a batch file sets it anew.
std::string Package::LineInLanguage(const std::string &tail, const std::string &exitCodeFile)
{
    std::string batch = "@cd /d " + mStartFolder + "\r\n";
    for (const auto &[name, value] : mEnvironment) {
        batch += "@set " + name + "=" + value + "\r\n";
    }
    WriteText(Temp("run.bat"), batch + "@\"" + Path(mProgram) + "\" " + tail + "\r\n@exit %errorlevel%\r\n");
    return "\\\\?\\unix\\bin\\sh -c \"LC_ALL=" + mLocale + " wine cmd /c '" + Temp("run.bat") +
           "' </dev/null >/dev/null 2>&1; code=$?; file=$(wine winepath -u '" + exitCodeFile +
           "'); echo $code >$file.part; mv $file.part $file\"";
}

bool RunningSetup::Ended(DWORD milliseconds, DWORD *exitCode_O)
{
    if (mExitCodeFile.empty()) {
        const bool ended = WaitForSingleObject(mProcess.get(), milliseconds) == WAIT_OBJECT_0;
        GetExitCodeProcess(mProcess.get(), exitCode_O);
        return ended;
    }
    const DWORD start = GetTickCount();
    while (!FileExists(mExitCodeFile) && GetTickCount() - start < milliseconds) {
        Sleep(20);
    }
    *exitCode_O = static_cast<DWORD>(atoi(ReadText(mExitCodeFile).c_str()));
    return FileExists(mExitCodeFile);
}

RunResult RunningSetup::Wait(DWORD milliseconds)
{
    RunResult result;
    if (mProcess == nullptr && mExitCodeFile.empty()) {
        return result; // could not be started
    }
    result.mProcessId = mProcessId;
    if (!Ended(milliseconds, &result.mExitCode)) {
        ADD_FAILURE() << "the installer still runs after " << milliseconds << " ms";
        if (mProcess != nullptr) {
            TerminateProcess(mProcess.get(), 0xFFFFFFFF);
            WaitForSingleObject(mProcess.get(), 5000);
        }
    }
    const std::string output = mTemp + "\\TavixInstallO.txt";
    if (FileExists(output) && ReadText(output) != kOlderOutput) {
        result.mOutputFile = ReadText(output);
    }
    std::string path = mTracePath;
    const size_t star = path.find('*');
    if (star != std::string::npos && mProcessId != 0) {
        path.replace(star, 1, std::to_string(mProcessId));
    } else if (star != std::string::npos) {
        for (const std::string &name : Tree(mTemp)) {
            path = Fits("Install*.txt", name) ? mTemp + "\\" + name : path;
        }
    }
    result.mTraceText = ReadText(path);
    result.mTrace = ParseTrace(result.mTraceText);
    return result;
}
