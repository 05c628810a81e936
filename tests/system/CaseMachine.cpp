#include "CaseMachine.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "Fixture.h"
#include "PendingRenames.h"
#include "TestService.h"

namespace {

using ::testing::AssertionFailure;
using ::testing::AssertionResult;
using ::testing::AssertionSuccess;

// "a = b" cut at the sign between, which is " = " or " -> ".
struct Sides {
    std::string mLeft;
    std::string mRight;
};

Sides Cut(const std::string &text, const std::string &sign)
{
    const size_t at = (text + " ").find(sign + " ");
    if (at == std::string::npos) {
        return {text, ""};
    }
    const size_t behind = at + sign.size() + 1;
    return {text.substr(0, at), behind < text.size() ? text.substr(behind) : ""};
}

std::string Unescaped(const std::string &text)
{
    std::string result;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\' || at + 1 == text.size()) {
            result += text[at];
            continue;
        }
        const char letter = text[++at];
        if (letter == 'x') {
            result += static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16));
            at += 2;
        } else {
            static const std::string kLetters = "nrt0";
            const size_t known = kLetters.find(letter);
            result += known == std::string::npos ? letter : "\n\r\t\0"[known];
        }
    }
    return result;
}

struct KeyPlace {
    HKEY mRoot = nullptr;
    std::string mPath;
    std::string mName;
    EView mView = EProcessView;
};

// "64 HKLM\path;name", the view and the name where there is one.
KeyPlace ParseKey(std::string text)
{
    static const std::pair<const char *, HKEY> kRoots[] = {{"HKLM", HKEY_LOCAL_MACHINE},
                                                           {"HKCU", HKEY_CURRENT_USER},
                                                           {"HKU", HKEY_USERS},
                                                           {"HKCR", HKEY_CLASSES_ROOT},
                                                           {"HKCC", HKEY_CURRENT_CONFIG}};
    KeyPlace place;
    if (text.compare(0, 3, "32 ") == 0 || text.compare(0, 3, "64 ") == 0) {
        place.mView = text[0] == '3' ? EView32 : EView64;
        text.erase(0, 3);
    }
    const size_t semicolon = text.find(';');
    if (semicolon != std::string::npos) {
        place.mName = Unescaped(text.substr(semicolon + 1));
        text.resize(semicolon);
    }
    const size_t slash = text.find('\\');
    for (const auto &root : kRoots) {
        if (text.substr(0, slash) == root.first) {
            place.mRoot = root.second;
        }
    }
    place.mPath = slash == std::string::npos ? "" : text.substr(slash + 1);
    return place;
}

RegData ParseData(const std::string &text)
{
    const size_t blank = text.find(' ');
    const std::string type = text.substr(0, blank);
    const std::string data = blank == std::string::npos ? "" : Unescaped(text.substr(blank + 1));
    if (type == "dword") {
        return RegNumber(static_cast<DWORD>(std::stoul(data, nullptr, 0)));
    }
    if (type == "binary" || type == "short") {
        RegData binary{static_cast<DWORD>(type == "short" ? REG_DWORD : REG_BINARY), ""};
        for (size_t at = 0; at + 1 < data.size(); at += 2) {
            binary.mBytes += static_cast<char>(std::stoi(data.substr(at, 2), nullptr, 16));
        }
        return binary;
    }
    if (type == "multi") {
        std::string list = data + "|";
        for (char &c : list) {
            c = c == '|' ? '\0' : c;
        }
        return {REG_MULTI_SZ, list + '\0'};
    }
    if (type == "none") {
        return {REG_NONE, ""};
    }
    return RegText(data, type == "expand" ? REG_EXPAND_SZ : REG_SZ);
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

AssertionResult Demand(bool holds, bool wanted, const std::string &found)
{
    return holds == wanted ? AssertionSuccess() : AssertionFailure() << "found " << found;
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

AssertionResult CaseMachine::SetUp(const std::string &line)
{
    const std::string text = Expanded(line);
    const auto view = ViewOf(text);
    const std::string verb = text.substr(0, text.find(' '));
    const Sides sides =
        Cut(text.substr(std::min(text.size(), verb.size() + 1)), verb == "copy" || verb == "link" ? " ->" : " =");
    const std::string path = Place(sides.mLeft);
    bool done = true;
    if (verb == "text") {
        done = WriteText(path, Unescaped(sides.mRight));
    } else if (verb == "folder") {
        MakeFolders(path);
    } else if (verb == "copy") {
        MakeFolders(Place(sides.mRight).substr(0, Place(sides.mRight).rfind('\\')));
        done = CopyFileA(path.c_str(), Place(sides.mRight).c_str(), FALSE) != FALSE;
    } else if (verb == "readonly" || verb == "hidden") {
        const DWORD attribute = verb == "hidden" ? FILE_ATTRIBUTE_HIDDEN : FILE_ATTRIBUTE_READONLY;
        done = SetFileAttributesA(path.c_str(), attribute) != FALSE;
    } else if (verb == "locked") {
        const auto lock = std::make_shared<LockedFile>(path);
        done = lock->Held();
        mLocks.push_back(lock);
    } else if (verb == "unlock") {
        mLocks.clear();
    } else if (verb == "restart") {
        done = Execute(".", "wineboot.exe -r");
    } else if (verb == "link") {
        const auto link = std::make_shared<FolderLink>(mPackage.Folder(), sides.mLeft, sides.mRight);
        done = link->Made();
        mOwners.push_back(link);
    } else if (verb == "written") {
        done = SetWritten(path, sides.mRight);
    } else if (verb == "setting") {
        mSettings = mSettings ? mSettings : std::make_shared<Settings>();
        done = mSettings->Data(sides.mLeft, ParseData(sides.mRight));
    } else if (verb == "keep") {
        const KeyPlace key = ParseKey(sides.mLeft);
        mOwners.push_back(std::make_shared<RegistrySnapshot>(key.mRoot, key.mPath));
    } else if (verb == "scratch") {
        const bool whole = view != nullptr;
        mOwners.push_back(std::shared_ptr<Scratch>(new Scratch(path), [whole](Scratch *scratch) {
            const auto off = whole ? std::make_unique<RedirectionOff>() : nullptr;
            delete scratch;
        }));
    } else if (verb == "program") {
        done = WriteText(path, ProgramOf(sides.mRight));
    } else if (verb == "renames") {
        const auto renames = std::make_shared<PendingRenames>();
        if (sides.mLeft != "-") {
            renames->Set(path);
        }
        mOwners.push_back(renames);
    } else if (verb == "service") {
        const size_t blank = sides.mLeft.find(' ');
        const auto service = MakeTestService(sides.mLeft.substr(0, blank), sides.mLeft.substr(blank + 1) == "dirty");
        done = service != nullptr;
        mOwners.push_back(service);
    } else if (verb == "mutex") {
        mOwners.push_back(std::shared_ptr<void>(CreateMutexA(nullptr, FALSE, sides.mLeft.c_str()), CloseHandle));
    } else if (verb == "event") {
        mOwners.push_back(std::shared_ptr<void>(CreateEventA(nullptr, TRUE, TRUE, sides.mLeft.c_str()), CloseHandle));
    } else if (text.compare(0, 8, "no file ") == 0) {
        done = DeleteFileA(Place(text.substr(8)).c_str()) != FALSE;
    } else if (text.compare(0, 9, "no value ") == 0) {
        const KeyPlace key = ParseKey(text.substr(9));
        RemoveValue(key.mRoot, key.mPath, key.mName, key.mView);
    } else if (text.compare(0, 7, "no key ") == 0) {
        const KeyPlace key = ParseKey(text.substr(7));
        RemoveKey(key.mRoot, key.mPath, key.mView);
    } else if (verb == "value") {
        const KeyPlace key = ParseKey(sides.mLeft);
        done = WriteValue(key.mRoot, key.mPath, key.mName, ParseData(sides.mRight), key.mView);
    } else if (verb == "key") {
        const KeyPlace key = ParseKey(sides.mLeft);
        done = CreateKey(key.mRoot, key.mPath, key.mView);
    } else {
        return AssertionFailure() << "not understood: " << line;
    }
    return done ? AssertionSuccess() : AssertionFailure() << "could not be done: " << line;
}

AssertionResult CaseMachine::Check(const std::string &line) const
{
    std::string text = Expanded(line);
    const auto view = ViewOf(text);
    const bool wanted = text.compare(0, 3, "no ") != 0;
    if (!wanted) {
        text.erase(0, 3);
    }
    const std::string verb = text.substr(0, text.find(' '));
    const Sides sides = Cut(text.substr(std::min(text.size(), verb.size() + 1)), " =");
    const std::string path = Place(sides.mLeft);
    if (verb == "file") {
        return Demand(FileExists(path), wanted, wanted ? "nothing" : "a file");
    }
    if (verb == "folder") {
        return Demand(FolderExists(path), wanted, wanted ? "nothing" : "a folder");
    }
    if (verb == "text") {
        const std::string content = ReadText(path);
        return Demand(FileExists(path) && content == Unescaped(sides.mRight), wanted, "\"" + content + "\"");
    }
    if (verb == "normal") {
        const DWORD attributes = GetFileAttributesA(path.c_str());
        const bool marked = (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN)) != 0;
        return Demand(attributes != INVALID_FILE_ATTRIBUTES && !marked, wanted, std::to_string(attributes));
    }
    if (verb == "tree") {
        std::string tree;
        for (const std::string &name : Tree(path)) {
            tree += (tree.empty() ? "" : ", ") + name;
        }
        return Demand(FolderExists(path) && tree == sides.mRight, wanted, tree);
    }
    if (verb == "waiting") {
        const std::string waiting = Waiting(mPackage.Folder());
        return Demand(waiting == sides.mLeft, wanted, waiting);
    }
    if (verb == "value") {
        const KeyPlace key = ParseKey(sides.mLeft);
        const std::optional<RegData> data = ReadValue(key.mRoot, key.mPath, key.mName, key.mView);
        const bool holds = data.has_value() && (!wanted || *data == ParseData(sides.mRight));
        return Demand(holds, wanted, Shown(data));
    }
    if (verb == "unicode") {
        const KeyPlace key = ParseKey(sides.mLeft);
        const std::string data = ReadRegUnicode(key.mRoot, key.mPath, key.mName, key.mView);
        return Demand(data == sides.mRight, wanted, data);
    }
    if (verb == "key") {
        const KeyPlace key = ParseKey(sides.mLeft);
        return Demand(KeyExists(key.mRoot, key.mPath, key.mView), wanted, wanted ? "no key" : "the key");
    }
    return AssertionFailure() << "not understood: " << line;
}
