#include "CaseMachine.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "CaseLine.h"
#include "Fixture.h"
#include "PendingRenames.h"
#include "ShellLinks.h"
#include "TestService.h"

namespace {

using ::testing::AssertionFailure;
using ::testing::AssertionResult;
using ::testing::AssertionSuccess;

// Whether something is there, and what was found.
struct Found {
    bool mThere;
    std::string mWhat;
};

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

// Runs a program to its end; one of the system below Wine may outlive the call.
bool Execute(const std::string &folder, std::string line)
{
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &start, &process)) {
        return false;
    }
    if (process.hProcess == nullptr) {
        return true; // a program of the system below Wine, for which the other handle is whatever stood there
    }
    const bool ended = WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return ended;
}

// A link to a folder, taken away with the object. Wine has links of the system below it alone, and takes none away.
class FolderLink {
public:
    FolderLink(std::string folder, const std::string &link, const std::string &target)
        : mFolder(std::move(folder)), mLink(link)
    {
        Execute(mFolder, OnWine() ? "\\\\?\\unix\\bin\\ln -sr " + Slashes(target) + " " + Slashes(link)
                                  : "cmd.exe /c mklink /j " + link + " " + target);
    }
    ~FolderLink()
    {
        Execute(mFolder, OnWine() ? "\\\\?\\unix\\bin\\rm -f " + Slashes(mLink) : "cmd.exe /c rmdir " + mLink);
        WaitFor(false);
    }
    FolderLink(const FolderLink &) = delete;
    FolderLink &operator=(const FolderLink &) = delete;
    bool Made() const { return WaitFor(true); }

private:
    static std::string Slashes(std::string path)
    {
        std::replace(path.begin(), path.end(), '\\', '/');
        return path;
    }
    bool WaitFor(bool present) const
    {
        const std::string path = mFolder + "\\" + mLink;
        for (int tries = 200; FolderExists(path) != present && tries > 0; --tries) {
            Sleep(10);
        }
        return FolderExists(path) == present;
    }

    std::string mFolder;
    std::string mLink;
};

// What waits for the next start of Windows, paths of the package by their names there.
std::string Waiting(const std::string &folder)
{
    const std::vector<std::string> list = PendingRenames::List();
    std::string text;
    for (size_t at = 0; at + 1 < list.size(); at += 2) {
        text += (at == 0 ? "" : ", ") + list[at] + (list[at + 1].empty() ? "" : " > " + list[at + 1]);
    }
    for (size_t at; (at = text.find(folder + "\\")) != std::string::npos;) {
        text.erase(at, folder.size() + 1);
    }
    return text;
}

// The view of folders that a line asks for.
std::unique_ptr<RedirectionOff> ViewOf(const std::string &line)
{
    return line.find("64:") != std::string::npos ? std::make_unique<RedirectionOff>() : nullptr;
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
    const std::string plain = path.compare(0, 3, "64:") == 0 ? path.substr(3) : path;
    return plain.find(':') != std::string::npos ? plain : mPackage.Path(plain);
}

// A word of a line. Without a function to set up it only asks, and the other way round.
struct CaseMachine::Word {
    std::string mName;
    ECaseForm mForm;
    bool (*mSetUp)(CaseMachine &, const CaseLine &);
    Found (*mAsk)(const CaseMachine &, const CaseLine &);
    bool mWanted = true; // what is asked for has to be there
};

const std::vector<CaseMachine::Word> &CaseMachine::Words()
{
    const auto isFile = [](const CaseMachine &machine, const CaseLine &line) {
        const bool there = FileExists(machine.Place(line.mLeft));
        return Found{there, there ? "a file" : "no file"};
    };
    const auto isFolder = [](const CaseMachine &machine, const CaseLine &line) {
        const bool there = FolderExists(machine.Place(line.mLeft));
        return Found{there, there ? "a folder" : "no folder"};
    };
    const auto isKey = [](const CaseMachine &, const CaseLine &line) {
        const bool there = KeyExists(line.mRoot, line.mKey, line.mView);
        return Found{there, there ? "the key" : "no key"};
    };
    static const std::vector<Word> kWords = {
        {"text", EPathIsText,
         [](CaseMachine &machine, const CaseLine &line) {
             return WriteText(machine.Place(line.mLeft), Unescaped(line.mRight));
         },
         [](const CaseMachine &machine, const CaseLine &line) {
             const std::string path = machine.Place(line.mLeft);
             const std::string content = ReadText(path);
             return Found{FileExists(path) && content == Unescaped(line.mRight), "\"" + content + "\""};
         }},
        {"file", EPath, nullptr, isFile},
        {"no file", EPath,
         [](CaseMachine &machine, const CaseLine &line) {
             return DeleteFileA(machine.Place(line.mLeft).c_str()) != FALSE;
         },
         isFile, false},
        {"folder", EPath,
         [](CaseMachine &machine, const CaseLine &line) {
             MakeFolders(machine.Place(line.mLeft));
             return FolderExists(machine.Place(line.mLeft));
         },
         isFolder},
        {"no folder", EPath, nullptr, isFolder, false},
        {"tree", EPathIsText, nullptr,
         [](const CaseMachine &machine, const CaseLine &line) {
             std::string tree;
             for (const std::string &name : Tree(machine.Place(line.mLeft))) {
                 tree += (tree.empty() ? "" : ", ") + name;
             }
             return Found{FolderExists(machine.Place(line.mLeft)) && tree == line.mRight, tree};
         }},
        {"copy", EPathToPath,
         [](CaseMachine &machine, const CaseLine &line) {
             const std::string target = machine.Place(line.mRight);
             MakeFolders(target.substr(0, target.rfind('\\')));
             return CopyFileA(machine.Place(line.mLeft).c_str(), target.c_str(), FALSE) != FALSE;
         },
         nullptr},
        {"readonly", EPath,
         [](CaseMachine &machine, const CaseLine &line) {
             return SetFileAttributesA(machine.Place(line.mLeft).c_str(), FILE_ATTRIBUTE_READONLY) != FALSE;
         },
         nullptr},
        {"hidden", EPath,
         [](CaseMachine &machine, const CaseLine &line) {
             return SetFileAttributesA(machine.Place(line.mLeft).c_str(), FILE_ATTRIBUTE_HIDDEN) != FALSE;
         },
         nullptr},
        {"normal", EPath, nullptr,
         [](const CaseMachine &machine, const CaseLine &line) {
             const DWORD attributes = GetFileAttributesA(machine.Place(line.mLeft).c_str());
             const bool marked = (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN)) != 0;
             return Found{attributes != INVALID_FILE_ATTRIBUTES && !marked, std::to_string(attributes)};
         }},
        {"written", EPathIsText,
         [](CaseMachine &machine, const CaseLine &line) { return SetWritten(machine.Place(line.mLeft), line.mRight); },
         nullptr},
        {"program", EPathIsText,
         [](CaseMachine &machine, const CaseLine &line) {
             return WriteText(machine.Place(line.mLeft), ProgramOf(line.mRight));
         },
         nullptr},
        {"locked", EPath,
         [](CaseMachine &machine, const CaseLine &line) {
             machine.mLocks.push_back(std::make_shared<LockedFile>(machine.Place(line.mLeft), false));
             return machine.mLocks.back()->Held();
         },
         nullptr},
        {"busy", EPath,
         [](CaseMachine &machine, const CaseLine &line) {
             machine.mLocks.push_back(std::make_shared<LockedFile>(machine.Place(line.mLeft), true));
             return machine.mLocks.back()->Held();
         },
         nullptr},
        {"shortcut", EPathIsText, nullptr,
         [](const CaseMachine &machine, const CaseLine &line) {
             const std::string link = ShownLink(machine.Place(line.mLeft));
             return Found{link == line.mRight, link};
         }},
        {"unlock", ENothing,
         [](CaseMachine &machine, const CaseLine &) {
             machine.mLocks.clear();
             return true;
         },
         nullptr},
        {"link", EPathToPath,
         [](CaseMachine &machine, const CaseLine &line) {
             const auto link = std::make_shared<FolderLink>(machine.mPackage.Folder(), line.mLeft, line.mRight);
             return machine.Own(link) && link->Made();
         },
         nullptr},
        {"scratch", EPath,
         [](CaseMachine &machine, const CaseLine &line) {
             const bool whole = line.mLeft.compare(0, 3, "64:") == 0;
             return machine.Own(
                 std::shared_ptr<Scratch>(new Scratch(machine.Place(line.mLeft)), [whole](Scratch *made) {
                     const auto off = whole ? std::make_unique<RedirectionOff>() : nullptr;
                     delete made;
                 }));
         },
         nullptr},
        {"restart", ENothing, [](CaseMachine &, const CaseLine &) { return Execute(".", "wineboot.exe -r"); }, nullptr},
        {"renames", EText,
         [](CaseMachine &machine, const CaseLine &line) {
             const auto renames = std::make_shared<PendingRenames>();
             if (line.mLeft != "-") {
                 renames->Set(machine.Place(line.mLeft));
             }
             return machine.Own(renames);
         },
         nullptr},
        {"waiting", EText, nullptr,
         [](const CaseMachine &machine, const CaseLine &line) {
             const std::string waiting = Waiting(machine.mPackage.Folder());
             return Found{waiting == line.mLeft, waiting};
         }},
        {"setting", ENameIsData,
         [](CaseMachine &machine, const CaseLine &line) {
             machine.mSettings = machine.mSettings ? machine.mSettings : std::make_shared<Settings>();
             return machine.mSettings->Data(line.mLeft, line.mData);
         },
         nullptr},
        {"keep", EKey,
         [](CaseMachine &machine, const CaseLine &line) {
             return machine.Own(std::make_shared<RegistrySnapshot>(line.mRoot, line.mKey));
         },
         nullptr},
        {"key", EKey, [](CaseMachine &, const CaseLine &line) { return CreateKey(line.mRoot, line.mKey, line.mView); },
         isKey},
        {"no key", EKey,
         [](CaseMachine &, const CaseLine &line) {
             RemoveKey(line.mRoot, line.mKey, line.mView);
             return true;
         },
         isKey, false},
        {"value", EValueIsData,
         [](CaseMachine &, const CaseLine &line) {
             return WriteValue(line.mRoot, line.mKey, line.mName, line.mData, line.mView);
         },
         [](const CaseMachine &, const CaseLine &line) {
             const std::optional<RegData> data = ReadValue(line.mRoot, line.mKey, line.mName, line.mView);
             return Found{data.has_value() && *data == line.mData, Shown(data)};
         }},
        {"no value", EValue,
         [](CaseMachine &, const CaseLine &line) {
             RemoveValue(line.mRoot, line.mKey, line.mName, line.mView);
             return true;
         },
         [](const CaseMachine &, const CaseLine &line) {
             const std::optional<RegData> data = ReadValue(line.mRoot, line.mKey, line.mName, line.mView);
             return Found{data.has_value(), Shown(data)};
         },
         false},
        {"unicode", EValueIsText, nullptr,
         [](const CaseMachine &, const CaseLine &line) {
             const std::string data = ReadRegUnicode(line.mRoot, line.mKey, line.mName, line.mView);
             return Found{data == line.mRight, data};
         }},
        {"service", EText,
         [](CaseMachine &machine, const CaseLine &line) {
             const size_t blank = std::min(line.mLeft.find(' '), line.mLeft.size());
             const std::string name = line.mLeft.substr(0, blank), kind = line.mLeft.substr(blank);
             if (kind == " dirty" || kind == " sound") {
                 return machine.Own(MakeTestService(name, kind == " dirty"));
             }
             machine.mOwners.push_back(DropServiceLater(name));
             return kind == " away" || OpenTestService(name, DoublePath("service.exe") + kind) != nullptr;
         },
         nullptr},
        {"state", EPathIsText, nullptr,
         [](const CaseMachine &, const CaseLine &line) {
             const std::string state = std::to_string(TestServiceStatus(line.mLeft).dwCurrentState);
             return Found{state == line.mRight, state};
         }},
        {"mutex", EText,
         [](CaseMachine &machine, const CaseLine &line) {
             return machine.Own(std::shared_ptr<void>(CreateMutexA(nullptr, FALSE, line.mLeft.c_str()), CloseHandle));
         },
         nullptr},
        {"event", EText,
         [](CaseMachine &machine, const CaseLine &line) {
             return machine.Own(
                 std::shared_ptr<void>(CreateEventA(nullptr, TRUE, TRUE, line.mLeft.c_str()), CloseHandle));
         },
         nullptr},
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

CaseLine Parsed(const std::string &line, const std::string &word, ECaseForm form)
{
    return ParseCaseLine(form, line.substr(std::min(line.size(), word.size() + 1)));
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

AssertionResult CaseMachine::SetUp(const std::string &line)
{
    const std::string text = Expanded(line);
    const Word &word = Known(text, false);
    const auto view = ViewOf(text);
    return word.mSetUp(*this, Parsed(text, word.mName, word.mForm))
               ? AssertionSuccess()
               : AssertionFailure() << "could not be done: " << line;
}

AssertionResult CaseMachine::Check(const std::string &line)
{
    const std::string text = Expanded(line);
    const Word &word = Known(text, true);
    const auto view = ViewOf(text);
    const Found found = word.mAsk(*this, Parsed(text, word.mName, word.mForm));
    return found.mThere == word.mWanted ? AssertionSuccess() : AssertionFailure() << "found " << found.mWhat;
}
