#include "Package.h"

#include <algorithm>
#include <cstring>

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

// A path of Windows as the system below Wine knows it; empty on a real Windows.
std::string UnixPath(const std::string &path)
{
    using Namer = char *(CDECL *)(LPCWSTR);
    const auto name = reinterpret_cast<Namer>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
    wchar_t wide[MAX_PATH] = {};
    MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, wide, MAX_PATH);
    char *answer = name != nullptr ? name(wide) : nullptr;
    const std::string unixPath = answer != nullptr ? answer : "";
    if (answer != nullptr) {
        HeapFree(GetProcessHeap(), 0, answer);
    }
    return unixPath;
}

std::string ShellQuoted(const std::string &text)
{
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

} // namespace

Package::Package() : mFolder(FreeTempName("tavix-package")), mTemp(mFolder + "-temp")
{
    mStartFolder = mFolder;
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

Package &Package::Steps(const std::string &steps, const std::string &more)
{
    return Script("[MAIN]\nVersion=1.10.01\nPrefType=Pen_Tablet\nLanguages=en\n[Install]\n" + WindowsLines(steps) +
                  "\n" + WindowsLines(more));
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

Package &Package::StartedIn(const std::string &folder)
{
    mStartFolder = folder;
    return *this;
}

Package &Package::Environment(const std::string &name, const std::string &value)
{
    mEnvironment.emplace_back(name, value);
    return *this;
}

Package &Package::Language(const std::string &locale)
{
    mLocale = locale;
    return *this;
}

Package &Package::TraceAt(const std::string &path)
{
    mTraceAt = path;
    return *this;
}

RunResult Package::Run(const std::string &tail)
{
    return RunPlain(tail.empty() ? "/s" : "/s " + tail);
}

RunResult Package::RunPlain(const std::string &tail)
{
    return Start(tail).Wait();
}

RunningSetup Package::Start(const std::string &tail)
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
        StartInLanguage(tail, &run);
        return run;
    }
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::string line = "\"" + Path(mProgram) + "\"" + (tail.empty() ? "" : " ") + tail;
    line.push_back('\0');
    std::vector<char> environment = EnvironmentBlock();
    if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, environment.data(), mStartFolder.c_str(),
                       &startup, &process)) {
        CloseHandle(process.hThread);
        run.mProcess = process.hProcess;
        run.mProcessId = process.dwProcessId;
    } else {
        ADD_FAILURE() << "error " << GetLastError() << " when starting " << Path(mProgram);
    }
    return run;
}

// This program's environment, with the folder of temporary files and what the test adds.
std::vector<char> Package::EnvironmentBlock() const
{
    std::vector<std::pair<std::string, std::string>> additions = {{"TMP", mTemp}, {"TEMP", mTemp}};
    additions.insert(additions.end(), mEnvironment.begin(), mEnvironment.end());
    std::vector<char> block;
    const auto append = [&block](const std::string &entry) {
        block.insert(block.end(), entry.begin(), entry.end());
        block.push_back('\0');
    };
    char *const own = GetEnvironmentStringsA();
    for (const char *entry = own; *entry != '\0'; entry += std::strlen(entry) + 1) {
        const bool replaced = std::any_of(additions.begin(), additions.end(), [entry](const auto &addition) {
            const size_t length = addition.first.size();
            return _strnicmp(entry, addition.first.c_str(), length) == 0 && entry[length] == '=';
        });
        if (!replaced) {
            append(entry);
        }
    }
    FreeEnvironmentStringsA(own);
    for (const auto &[name, value] : additions) {
        append(name + "=" + value);
    }
    block.push_back('\0');
    return block;
}

// Wine takes its language from the environment that it is started with and not from the one that a Windows program
// hands on, so the run takes a way through the shell below, which reports the exit code in a file. On this way the
// folder of temporary files is the user's own again: a batch file sets it anew.
void Package::StartInLanguage(const std::string &tail, RunningSetup *run_O)
{
    run_O->mExitCodeFile = Temp("exit-code");
    DeleteFileA(run_O->mExitCodeFile.c_str());
    std::string batch = "@set TMP=" + mTemp + "\r\n@set TEMP=" + mTemp + "\r\n";
    for (const auto &[name, value] : mEnvironment) {
        batch += "@set " + name + "=" + value + "\r\n";
    }
    WriteText(Temp("run.bat"), batch + "@\"" + Path(mProgram) + "\" " + tail + "\r\n@exit %errorlevel%\r\n");
    const std::string codeFile = UnixPath(Temp("exit-code"));
    WriteText(Temp("run.sh"), "cd " + ShellQuoted(UnixPath(mStartFolder)) + "\nLC_ALL=" + ShellQuoted(mLocale) +
                                  " wine cmd /c " + ShellQuoted(Temp("run.bat")) +
                                  " </dev/null >/dev/null 2>&1\necho $? >" + ShellQuoted(codeFile + ".part") + "\nmv " +
                                  ShellQuoted(codeFile + ".part") + " " + ShellQuoted(codeFile) + "\n");
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::string line = "\\\\?\\unix\\bin\\sh " + UnixPath(Temp("run.sh"));
    line.push_back('\0');
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        ADD_FAILURE() << "error " << GetLastError() << " when starting the shell for a run in " << mLocale;
        run_O->mExitCodeFile.clear();
    }
}

RunningSetup::RunningSetup(RunningSetup &&other) noexcept
    : mProcess(other.mProcess), mProcessId(other.mProcessId), mExitCodeFile(std::move(other.mExitCodeFile)),
      mTemp(std::move(other.mTemp)), mTracePath(std::move(other.mTracePath))
{
    other.mProcess = nullptr;
}

RunningSetup::~RunningSetup()
{
    if (mProcess != nullptr) {
        TerminateProcess(mProcess, 0xFFFFFFFF);
        CloseHandle(mProcess);
    }
}

bool RunningSetup::Ended(DWORD milliseconds, DWORD *exitCode_O)
{
    if (mExitCodeFile.empty()) {
        const bool ended = WaitForSingleObject(mProcess, milliseconds) == WAIT_OBJECT_0;
        GetExitCodeProcess(mProcess, exitCode_O);
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
    result.mStarted = mProcess != nullptr || !mExitCodeFile.empty();
    if (!result.mStarted) {
        return result;
    }
    result.mProcessId = mProcessId;
    if (!Ended(milliseconds, &result.mExitCode)) {
        result.mTimedOut = true;
        ADD_FAILURE() << "the installer still runs after " << milliseconds << " ms";
        if (mProcess != nullptr) {
            TerminateProcess(mProcess, 0xFFFFFFFF);
            WaitForSingleObject(mProcess, 5000);
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
