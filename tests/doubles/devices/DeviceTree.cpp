// A setupapi.dll whose device tree is a text file. It answers the calls of a walk over that tree as Windows does
// and hands every other call to the system's own library; see README.md.
#define _SETUPAPI_ // the functions of the headers are defined here, not imported
#define _CFGMGR32_
#define CMAPI

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

// Node numbers of the tree start here, where the system's own library has none.
constexpr DEVINST kFirstNode = 0x7A1C0000;

struct CNode {
    std::string mEnumerator;
    std::string mId;
    bool mLive = false;
    bool mFailId = false;
    bool mRemoved = false;
    std::string mKey; // "HKLM\..." or "HKCU\...", empty for a device without a hardware key
};

struct CList {
    std::vector<DEVINST> mNodes;
};

std::string Environment(const char *name)
{
    char value[1024];
    const DWORD length = GetEnvironmentVariableA(name, value, sizeof(value));
    return length < sizeof(value) ? std::string(value, length) : std::string();
}

void Log(const std::string &line)
{
    const std::string path = Environment("TAVIX_DEVICE_LOG");
    if (std::FILE *const file = path.empty() ? nullptr : std::fopen(path.c_str(), "a")) {
        std::fprintf(file, "%s\n", line.c_str());
        std::fclose(file);
    }
}

// Takes the first word off a text. The words of the tree are separated by blanks.
std::string TakeWord(std::string &text_I_O)
{
    const size_t end = text_I_O.find(' ');
    const std::string word = text_I_O.substr(0, end);
    text_I_O.erase(0, text_I_O.find_first_not_of(' ', end));
    return word;
}

class CTree {
public:
    CTree() = default;
    explicit CTree(const std::string &path) : mPath(path)
    {
        std::FILE *const file = path.empty() ? nullptr : std::fopen(path.c_str(), "r");
        if (file == nullptr) {
            return;
        }
        char line[1024];
        while (std::fgets(line, sizeof(line), file) != nullptr) {
            line[std::strcspn(line, "\r\n")] = '\0';
            if (line[0] != '\0' && line[0] != '#' && !ReadLine(line)) {
                Log(std::string("bad line: ") + line);
            }
        }
        std::fclose(file);
    }

    const std::string &Path() const { return mPath; }

    CNode *Find(DEVINST device)
    {
        const DEVINST index = device - kFirstNode;
        return index < mNodes.size() ? &mNodes[index] : nullptr;
    }

    DWORD ListError(const char *enumerator) const
    {
        return mFailingLists.count(enumerator) != 0 ? ERROR_INVALID_DATA : ERROR_SUCCESS;
    }

    std::unique_ptr<CList> MakeList(const char *enumerator, bool present) const
    {
        auto list = std::make_unique<CList>();
        for (size_t at = 0; at < mNodes.size(); ++at) {
            const CNode &node = mNodes[at];
            if (!node.mRemoved && _stricmp(node.mEnumerator.c_str(), enumerator) == 0 && (node.mLive || !present)) {
                list->mNodes.push_back(kFirstNode + static_cast<DEVINST>(at));
            }
        }
        return list;
    }

private:
    bool ReadLine(std::string line)
    {
        CNode node;
        node.mEnumerator = TakeWord(line);
        node.mId = TakeWord(line);
        if (node.mEnumerator == "fail-list") {
            mFailingLists.insert(node.mId);
            return !node.mId.empty();
        }
        const std::string state = TakeWord(line);
        node.mFailId = state == "fail-id";
        node.mLive = node.mFailId || state == "live";
        node.mKey = line;
        mNodes.push_back(node);
        return node.mLive || state == "remembered";
    }

    std::string mPath;
    std::vector<CNode> mNodes;
    std::set<std::string> mFailingLists;
};

// What happens to the tree lasts until the environment names another file.
CTree &Tree()
{
    static CTree tree;
    const std::string path = Environment("TAVIX_DEVICE_TREE");
    if (tree.Path() != path) {
        tree = CTree(path);
    }
    return tree;
}

std::set<CList *> gLists;
std::set<HDEVINFO> gClosed; // handles of lists that were ours

// The list behind a handle, null for a list of the system's own library.
CList *OwnList(HDEVINFO handle)
{
    auto *const list = static_cast<CList *>(handle);
    return gLists.count(list) != 0 ? list : nullptr;
}

// The entry of the system's own library; the installation keeps it under this name.
template <typename TEntry>
TEntry System(TEntry, const char *entry)
{
    static const HMODULE library = LoadLibraryA("tavix_setupapi_real.dll");
    return reinterpret_cast<TEntry>(reinterpret_cast<void *>(GetProcAddress(library, entry)));
}
#define SYSTEM_ENTRY(name) System(&(name), #name)

// The node of a call on one of our lists. A caller with the structure of another Windows is turned away.
CNode *NodeOf(PSP_DEVINFO_DATA device)
{
    if (device == nullptr || device->cbSize != sizeof(*device)) {
        SetLastError(ERROR_INVALID_USER_BUFFER);
        return nullptr;
    }
    CNode *const node = Tree().Find(device->DevInst);
    if (node == nullptr || node->mRemoved) {
        SetLastError(ERROR_NO_SUCH_DEVINST);
        return nullptr;
    }
    return node;
}

HKEY OpenKeyByName(const std::string &name, REGSAM access, LONG *error_O)
{
    const HKEY root = name.compare(0, 5, "HKLM\\") == 0 ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    HKEY key = nullptr;
    *error_O = RegOpenKeyExA(root, name.substr(5).c_str(), 0, access, &key);
    return key;
}

} // namespace

extern "C" {

HDEVINFO WINAPI SetupDiGetClassDevsExA(const GUID *classGuid, PCSTR enumerator, HWND parent, DWORD flags, HDEVINFO set,
                                       PCSTR machine, PVOID reserved)
{
    if (enumerator == nullptr || (flags & DIGCF_ALLCLASSES) == 0) {
        return SYSTEM_ENTRY(SetupDiGetClassDevsExA)(classGuid, enumerator, parent, flags, set, machine, reserved);
    }
    const DWORD error = Tree().ListError(enumerator);
    const bool present = (flags & DIGCF_PRESENT) != 0;
    Log(std::string("list ") + enumerator + (present ? " present" : " all") + (error != 0 ? " fails" : ""));
    if (error != ERROR_SUCCESS) {
        SetLastError(error);
        return INVALID_HANDLE_VALUE;
    }
    CList *const list = Tree().MakeList(enumerator, present).release();
    gLists.insert(list);
    gClosed.erase(list);
    return list;
}

BOOL WINAPI SetupDiEnumDeviceInfo(HDEVINFO handle, DWORD index, PSP_DEVINFO_DATA device)
{
    const CList *const list = OwnList(handle);
    if (list == nullptr) {
        return SYSTEM_ENTRY(SetupDiEnumDeviceInfo)(handle, index, device);
    }
    if (device == nullptr || device->cbSize != sizeof(*device)) {
        SetLastError(ERROR_INVALID_USER_BUFFER);
        return FALSE;
    }
    if (index >= list->mNodes.size()) {
        SetLastError(ERROR_NO_MORE_ITEMS);
        return FALSE;
    }
    device->DevInst = list->mNodes[index];
    return TRUE;
}

BOOL WINAPI SetupDiDestroyDeviceInfoList(HDEVINFO handle)
{
    CList *const list = OwnList(handle);
    if (gClosed.count(handle) != 0) {
        Log("close again");
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    if (list == nullptr) {
        return SYSTEM_ENTRY(SetupDiDestroyDeviceInfoList)(handle);
    }
    Log("close");
    gLists.erase(list);
    gClosed.insert(handle);
    delete list;
    return TRUE;
}

BOOL WINAPI SetupDiRemoveDevice(HDEVINFO handle, PSP_DEVINFO_DATA device)
{
    if (OwnList(handle) == nullptr) {
        return SYSTEM_ENTRY(SetupDiRemoveDevice)(handle, device);
    }
    CNode *const node = NodeOf(device);
    if (node == nullptr) {
        const DWORD error = GetLastError();
        const CNode *const gone = device != nullptr ? Tree().Find(device->DevInst) : nullptr;
        Log("remove again " + (gone != nullptr ? gone->mId : std::string()));
        SetLastError(error);
        return FALSE;
    }
    Log("remove " + node->mId);
    node->mRemoved = true;
    return TRUE;
}

HKEY WINAPI SetupDiOpenDevRegKey(HDEVINFO handle, PSP_DEVINFO_DATA device, DWORD scope, DWORD profile, DWORD type,
                                 REGSAM access)
{
    const auto invalid = static_cast<HKEY>(INVALID_HANDLE_VALUE);
    if (OwnList(handle) == nullptr) {
        return SYSTEM_ENTRY(SetupDiOpenDevRegKey)(handle, device, scope, profile, type, access);
    }
    const CNode *const node = NodeOf(device);
    if (node == nullptr) {
        return invalid;
    }
    if (scope != DICS_FLAG_GLOBAL || profile != 0 || type != DIREG_DEV) {
        SetLastError(ERROR_INVALID_FLAGS);
        return invalid;
    }
    LONG error = ERROR_KEY_DOES_NOT_EXIST;
    const HKEY key = node->mKey.empty() ? nullptr : OpenKeyByName(node->mKey, access, &error);
    Log("open key of " + node->mId + (key == nullptr ? " fails" : ""));
    if (key == nullptr) {
        SetLastError(static_cast<DWORD>(error));
        return invalid;
    }
    return key;
}

CONFIGRET WINAPI CM_Get_DevNode_Status(PULONG status, PULONG problem, DEVINST device, ULONG flags)
{
    const CNode *const node = Tree().Find(device);
    if (node == nullptr) {
        return SYSTEM_ENTRY(CM_Get_DevNode_Status)(status, problem, device, flags);
    }
    if (!node->mLive || node->mRemoved) {
        return CR_NO_SUCH_DEVINST;
    }
    *status = DN_DRIVER_LOADED | DN_STARTED;
    *problem = 0;
    return CR_SUCCESS;
}

CONFIGRET WINAPI CM_Get_Device_ID_ExA(DEVINST device, PSTR buffer, ULONG size, ULONG flags, HMACHINE machine)
{
    const CNode *const node = Tree().Find(device);
    if (node == nullptr) {
        return SYSTEM_ENTRY(CM_Get_Device_ID_ExA)(device, buffer, size, flags, machine);
    }
    if (node->mFailId) {
        return CR_FAILURE;
    }
    std::strncpy(buffer, node->mId.c_str(), size); // a cut id has no zero at its end, as on Windows
    return node->mId.size() < size ? CR_SUCCESS : CR_BUFFER_SMALL;
}

} // extern "C"
