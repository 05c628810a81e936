#include "CaseMachine.h"

#include <cstdio>
#include <cstring>
#include <functional>
#include <stdexcept>

#include "Fixture.h"
#include "ShellLinks.h"
#include "TestService.h"

namespace {

constexpr char kSessionManager[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager";
constexpr char kRenames[] = "PendingFileRenameOperations";

// Whether something was done or is there, and what was found.
struct Found {
    Found(bool there, std::string what = "") : mThere(there), mWhat(std::move(what)) {}
    bool mThere;
    std::string mWhat;
};

Found Same(const std::string &found, const std::string &wanted)
{
    return {found == wanted, found};
}

std::string Shown(const std::optional<RegData> &data)
{
    if (!data) {
        return "none";
    }
    std::string text = "type " + std::to_string(data->mType) + ": ";
    for (const char c : data->mBytes) {
        char hex[8];
        snprintf(hex, sizeof hex, "\\x%02x", static_cast<unsigned char>(c));
        text += c >= ' ' && c <= '~' ? std::string(1, c) : hex;
    }
    return text;
}

bool SetWritten(const std::string &path, const std::string &date)
{
    SYSTEMTIME time = {};
    FILETIME fileTime;
    if (sscanf(date.c_str(), "%hu-%hu-%hu", &time.wYear, &time.wMonth, &time.wDay) != 3 ||
        !SystemTimeToFileTime(&time, &fileTime)) {
        return false;
    }
    const HANDLE file = CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    const bool set = file != INVALID_HANDLE_VALUE && SetFileTime(file, nullptr, nullptr, &fileTime);
    CloseHandle(file);
    return set;
}

std::string SystemFolder()
{
    char folder[MAX_PATH] = {};
    GetSystemDirectoryA(folder, sizeof folder);
    return folder;
}

std::string ProgramFolder(EView view)
{
    return ReadRegText(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir", view);
}

// A stand-in with another product version.
std::string ProgramOf(const std::string &version)
{
    static const std::string kText = "5.3.5-5"; // what the stand-in says
    std::string content = ReadText(DoublePath("versions\\Version32.dll"));
    std::string wide;
    for (const char c : kText) {
        wide += {c, '\0'};
    }
    const size_t at = content.find(wide);
    if (version.size() != kText.size() || at == std::string::npos) {
        return "no version";
    }
    for (size_t i = 0; i < kText.size(); ++i) {
        content[at + 2 * i] = version[i];
    }
    return content;
}

// What waits for the next start of Windows, in pairs of source and target, paths of the package by their names there.
std::string Waiting(const std::string &folder)
{
    std::string text;
    const std::string bytes =
        ReadValue(HKEY_LOCAL_MACHINE, kSessionManager, kRenames).value_or(RegData{REG_NONE, ""}).mBytes;
    bool target = false;
    for (size_t at = 0; at + 1 < bytes.size(); at = bytes.find('\0', at) + 1, target = !target) {
        const std::string name = bytes.c_str() + at;
        text += name.empty() ? "" : target ? " > " : text.empty() ? "" : ", ";
        text += name.compare(0, 4, "\\??\\") == 0 ? name.substr(4) : name;
    }
    for (size_t at; (at = text.find(folder + "\\")) != std::string::npos;) {
        text.erase(at, folder.size() + 1);
    }
    return text;
}

// The view of folders that a path asks for.
std::unique_ptr<RedirectionOff> ViewOf(const CaseLine &line)
{
    const bool whole = line.mLeft.compare(0, 3, "64:") == 0 || line.mRight.compare(0, 3, "64:") == 0;
    return whole ? std::make_unique<RedirectionOff>() : nullptr;
}

} // namespace

std::string CaseMachine::Expanded(std::string text) const
{
    const std::pair<const char *, std::string> names[] = {{"%PACKAGE%", mPackage.Folder()},
                                                          {"%TEMP%", mPackage.Temp()},
                                                          {"%DOUBLES%", EnvironmentText("TAVIX_DOUBLES")},
                                                          {"%SYSTEM%", SystemFolder()},
                                                          {"%WINDOWS%", EnvironmentText("windir")},
                                                          {"%APPDATA%", EnvironmentText("APPDATA")},
                                                          {"%COMMONDATA%", EnvironmentText("ALLUSERSPROFILE")},
                                                          {"%PUBLIC%", EnvironmentText("PUBLIC")},
                                                          {"%PROGRAMS%", ProgramFolder(EView64)},
                                                          {"%PROGRAMS32%", ProgramFolder(EView32)}};
    for (const auto &name : names) {
        for (size_t at = text.find(name.first); at != std::string::npos; at = text.find(name.first, at)) {
            text.replace(at, strlen(name.first), name.second);
        }
    }
    return text;
}

std::string CaseMachine::Place(const std::string &path) const
{
    return mPackage.Path(path.compare(0, 3, "64:") == 0 ? path.substr(3) : path);
}

bool CaseMachine::Mark(const CaseLine &line, unsigned attributes) const
{
    return SetFileAttributesA(Place(line).c_str(), attributes) != FALSE;
}

bool CaseMachine::Lock(const CaseLine &line, bool shareReading)
{
    mLocks.push_back(std::make_shared<LockedFile>(Place(line), shareReading));
    return mLocks.back()->Held();
}

// A word of a line. Without a function to set up it only asks, and the other way round.
struct CaseMachine::Word {
    std::string mName;
    ECaseForm mForm;
    std::function<Found(CaseMachine &, const CaseLine &)> mSetUp, mAsk = nullptr;
    bool mWanted = true; // what is asked for has to be there
};

const std::vector<CaseMachine::Word> &CaseMachine::Words()
{
    const auto isFile = [](auto &machine, auto &line) { return FileExists(machine.Place(line)); };
    const auto isFolder = [](auto &machine, auto &line) { return FolderExists(machine.Place(line)); };
    const auto isKey = [](auto &, auto &line) { return KeyExists(line.mRoot, line.mKey, line.mView); };
    const auto isValue = [](auto &, auto &line) {
        const std::optional<RegData> data = ReadValue(line.mRoot, line.mKey, line.mName, line.mView);
        return Found(data.has_value(), Shown(data));
    };
    static const std::vector<Word> kWords = {
        {"text", EPathIsText,
         [](auto &machine, auto &line) { return WriteText(machine.Place(line), Unescaped(line.mRight)); },
         [](auto &machine, auto &line) {
             const std::string content = ReadText(machine.Place(line));
             return Found(FileExists(machine.Place(line)) && content == Unescaped(line.mRight), content);
         }},
        {"file", EPath, nullptr, isFile},
        {"no file", EPath, [](auto &machine, auto &line) { return DeleteFileA(machine.Place(line).c_str()) != FALSE; },
         isFile, false},
        {"folder", EPath,
         [isFolder](auto &machine, auto &line) {
             MakeFolders(machine.Place(line));
             return isFolder(machine, line);
         },
         isFolder},
        {"no folder", EPath, nullptr, isFolder, false},
        {"tree", EPathIsText, nullptr,
         [](auto &machine, auto &line) {
             std::string tree = FolderExists(machine.Place(line)) ? "" : "no folder";
             for (const std::string &name : Tree(machine.Place(line))) {
                 tree += (tree.empty() ? "" : ", ") + name;
             }
             return Same(tree, line.mRight);
         }},
        {"copy", EPathToPath,
         [](auto &machine, auto &line) {
             const std::string target = machine.Place(line.mRight);
             MakeFolders(target.substr(0, target.rfind('\\')));
             return CopyFileA(machine.Place(line).c_str(), target.c_str(), FALSE) != FALSE;
         }},
        {"readonly", EPath, [](auto &machine, auto &line) { return machine.Mark(line, FILE_ATTRIBUTE_READONLY); }},
        {"hidden", EPath, [](auto &machine, auto &line) { return machine.Mark(line, FILE_ATTRIBUTE_HIDDEN); }},
        {"normal", EPath, nullptr,
         [](auto &machine, auto &line) { // a file that is missing has all attributes
             const DWORD attributes = GetFileAttributesA(machine.Place(line).c_str());
             return (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN)) == 0;
         }},
        {"written", EPathIsText,
         [](auto &machine, auto &line) { return SetWritten(machine.Place(line), line.mRight); }},
        {"program", EPathIsText,
         [](auto &machine, auto &line) { return WriteText(machine.Place(line), ProgramOf(line.mRight)); }},
        {"locked", EPath, [](auto &machine, auto &line) { return machine.Lock(line, false); }},
        {"busy", EPath, [](auto &machine, auto &line) { return machine.Lock(line, true); }},
        {"unlock", ENothing,
         [](auto &machine, auto &) {
             machine.mLocks.clear();
             return true;
         }},
        {"shortcut", EPathIsText, nullptr,
         [](auto &machine, auto &line) { return Same(ShownLink(machine.Place(line)), line.mRight); }},
        {"link", EPathToPath,
         [](auto &machine, auto &line) {
             const std::string link = HostPath(machine.Place(line));
             machine.Later([link] { OnHost("rm -f '" + link + "'"); });
             return OnHost("ln -s '" + HostPath(machine.Place(line.mRight)) + "' '" + link + "'");
         }},
        {"scratch", EPath,
         [](auto &machine, auto &line) {
             const std::string path = machine.Place(line), aside = path + ".aside";
             MoveFileA(path.c_str(), aside.c_str()); // what the machine has under this name
             RemoveTree(path);
             machine.Later([path, aside, line] {
                 const auto view = ViewOf(line);
                 RemoveTree(path);
                 MoveFileA(aside.c_str(), path.c_str());
             });
             return true;
         }},
        {"restart", ENothing, [](auto &, auto &) { return Execute("wineboot.exe -r"); }},
        {"renames", EText,
         [](auto &machine, auto &line) {
             machine.Own(std::make_shared<RegistrySnapshot>(HKEY_LOCAL_MACHINE, kSessionManager));
             RemoveValue(HKEY_LOCAL_MACHINE, kSessionManager, kRenames);
             const std::string bytes = "\\??\\" + machine.Place(line) + std::string(3, '\0');
             return line.mLeft == "-" ||
                    WriteValue(HKEY_LOCAL_MACHINE, kSessionManager, kRenames, {REG_MULTI_SZ, bytes});
         }},
        {"waiting", EText, nullptr,
         [](auto &machine, auto &line) { return Same(Waiting(machine.mPackage.Folder()), line.mLeft); }},
        {"setting", ENameIsData,
         [](auto &machine, auto &line) {
             machine.mSettings = machine.mSettings ? machine.mSettings : std::make_shared<Settings>();
             return machine.mSettings->Data(line.mLeft, line.mData);
         }},
        {"keep", EKey,
         [](auto &machine, auto &line) {
             return machine.Own(std::make_shared<RegistrySnapshot>(line.mRoot, line.mKey));
         }},
        {"key", EKey, [](auto &, auto &line) { return CreateKey(line.mRoot, line.mKey, line.mView); }, isKey},
        {"no key", EKey,
         [](auto &, auto &line) {
             RemoveKey(line.mRoot, line.mKey, line.mView);
             return true;
         },
         isKey, false},
        {"value", EValueIsData,
         [](auto &, auto &line) { return WriteValue(line.mRoot, line.mKey, line.mName, line.mData, line.mView); },
         [](auto &, auto &line) {
             const std::optional<RegData> data = ReadValue(line.mRoot, line.mKey, line.mName, line.mView);
             return Found(data.has_value() && *data == line.mData, Shown(data));
         }},
        {"no value", EValue,
         [](auto &, auto &line) {
             RemoveValue(line.mRoot, line.mKey, line.mName, line.mView);
             return true;
         },
         isValue, false},
        {"service", EText,
         [](auto &machine, auto &line) {
             const size_t blank = std::min(line.mLeft.find(' '), line.mLeft.size());
             const std::string name = line.mLeft.substr(0, blank), kind = line.mLeft.substr(blank);
             const bool dirty = kind == " dirty";
             machine.Own(DropServiceLater(name));
             if (kind == " away") {
                 return true;
             }
             const bool dead = dirty || kind == " sound";
             const auto service = OpenTestService(name, dead ? "C:\\nowhere.exe" : DoublePath("service.exe") + kind);
             if (dirty && DeleteService(static_cast<SC_HANDLE>(service.get()))) {
                 return machine.Own(service); // marked as long as it is held open
             }
             return !dirty && service != nullptr;
         }},
        {"state", EPathIsText, nullptr,
         [](auto &, auto &line) {
             return Same(std::to_string(TestServiceStatus(line.mLeft).dwCurrentState), line.mRight);
         }},
        {"mutex", EText,
         [](auto &machine, auto &line) {
             return machine.Own(std::shared_ptr<void>(CreateMutexA(nullptr, FALSE, line.mLeft.c_str()), CloseHandle));
         }},
        {"event", EText,
         [](auto &machine, auto &line) {
             const HANDLE event = CreateEventA(nullptr, TRUE, TRUE, line.mLeft.c_str());
             return machine.Own(std::shared_ptr<void>(event, CloseHandle));
         }},
    };
    return kWords;
}

// The word that a line begins with, of which "no" is a part. Throws when there is none for this purpose.
const CaseMachine::Word &CaseMachine::Known(const std::string &line, bool asking)
{
    const std::string name = line.substr(0, line.find(' ', line.compare(0, 3, "no ") == 0 ? 3 : 0));
    for (const Word &word : Words()) {
        if (word.mName == name && (asking ? word.mAsk != nullptr : word.mSetUp != nullptr)) {
            return word;
        }
    }
    throw std::invalid_argument("unknown word: " + name);
}

namespace {

std::vector<CaseLine> Parsed(const std::string &line, const std::string &word, ECaseForm form)
{
    return ParseCaseLines(form, line.substr(std::min(line.size(), word.size() + 1)));
}

} // namespace

std::string CaseMachine::Fault(const std::string &line, bool asking)
try {
    const Word &word = Known(line, asking);
    Parsed(line, word.mName, word.mForm);
    return "";
} catch (const std::logic_error &fault) { // of numbers, too
    return fault.what();
}

::testing::AssertionResult CaseMachine::Do(const std::string &line, bool asking)
{
    const Word &word = Known(line, asking);
    for (const CaseLine &part : Parsed(Expanded(line), word.mName, word.mForm)) {
        const auto view = ViewOf(part);
        const Found found = (asking ? word.mAsk : word.mSetUp)(*this, part);
        if (found.mThere != (word.mWanted || !asking)) {
            return ::testing::AssertionFailure() << line << (asking ? ": found " : ": not done ") << found.mWhat;
        }
    }
    return ::testing::AssertionSuccess();
}
