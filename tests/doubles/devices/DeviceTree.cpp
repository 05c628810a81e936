// A setupapi.dll whose device tree is a text file. It answers the calls of a walk over that tree as Windows does
// and hands every other call to the system's own library; see README.md.
#define _SETUPAPI_ // the functions of the headers are defined here, not imported
#define _CFGMGR32_
#define CMAPI

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

// Node numbers of the tree start here, where the system's own library has none.
constexpr DEVINST kFirstNode = 0x7A1C0000;

struct CNode {
    std::string mEnumerator;
    std::string mId;
    std::string mState;
    std::string mKey; // "HKLM\..." or "HKCU\...", empty for a device without a hardware key
    bool mRemoved = false;
    bool Listed() const { return Live() || mState == "going"; } // in lists of present nodes
    bool Live() const { return mState == "live" || mState == "fail-id"; }
};

struct CTree {
    std::string mPath;
    std::vector<CNode> mNodes;
    std::set<std::string> mFailingLists;
};

using CList = std::vector<DEVINST>;

std::string Environment(const char *name)
{
    char value[1024];
    const DWORD length = GetEnvironmentVariableA(name, value, sizeof(value));
    return length < sizeof(value) ? std::string(value, length) : std::string();
}

void Log(const std::string &line)
{
    if (const std::string path = Environment("TAVIX_DEVICE_LOG"); !path.empty()) {
        std::ofstream(path, std::ios::app) << line << "\n";
    }
}

CTree ReadTree(const std::string &path)
{
    CTree tree{path, {}, {}};
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        CNode node;
        words >> node.mEnumerator >> node.mId >> node.mState;
        std::getline(words >> std::ws, node.mKey);
        if (node.mEnumerator.empty() || node.mEnumerator[0] == '#') {
            continue;
        }
        if (node.mEnumerator == "fail-list") {
            tree.mFailingLists.insert(node.mId);
        } else {
            tree.mNodes.push_back(node);
        }
    }
    return tree;
}

// What happens to the tree lasts until the environment names another file.
CTree &Tree()
{
    static CTree tree;
    if (const std::string path = Environment("TAVIX_DEVICE_TREE"); tree.mPath != path) {
        tree = ReadTree(path);
    }
    return tree;
}

CNode *FindNode(DEVINST device)
{
    const DEVINST index = device - kFirstNode;
    return index < Tree().mNodes.size() ? &Tree().mNodes[index] : nullptr;
}

CList MakeList(const char *enumerator, bool present)
{
    CList list;
    DEVINST device = kFirstNode;
    for (const CNode &node : Tree().mNodes) {
        if (!node.mRemoved && _stricmp(node.mEnumerator.c_str(), enumerator) == 0 && (node.Listed() || !present)) {
            list.push_back(device);
        }
        ++device;
    }
    return list;
}

std::deque<CList> gLists; // their addresses are the handles, so none comes twice

// The list behind a handle, null for a list of the system's own library.
CList *OwnList(HDEVINFO handle)
{
    const auto own = std::find_if(gLists.begin(), gLists.end(), [&](const CList &list) { return &list == handle; });
    return own != gLists.end() ? &*own : nullptr;
}

// The entry of the system's own library; the installation keeps it under this name.
template <typename TEntry>
TEntry System(TEntry, const char *entry)
{
    static const HMODULE library = LoadLibraryA("tavix_setupapi_real.dll");
    return reinterpret_cast<TEntry>(reinterpret_cast<void *>(GetProcAddress(library, entry)));
}
#define SYSTEM_ENTRY(name) System(&(name), #name)

} // namespace

extern "C" {

HDEVINFO WINAPI SetupDiGetClassDevsExA(const GUID *classGuid, PCSTR enumerator, HWND parent, DWORD flags, HDEVINFO set,
                                       PCSTR machine, PVOID reserved)
{
    if (enumerator == nullptr || (flags & DIGCF_ALLCLASSES) == 0) {
        return SYSTEM_ENTRY(SetupDiGetClassDevsExA)(classGuid, enumerator, parent, flags, set, machine, reserved);
    }
    const bool fails = Tree().mFailingLists.count(enumerator) != 0;
    const bool present = (flags & DIGCF_PRESENT) != 0;
    Log(std::string("list ") + enumerator + (present ? " present" : " all") + (fails ? " fails" : ""));
    if (fails) {
        SetLastError(ERROR_INVALID_DATA);
        return INVALID_HANDLE_VALUE;
    }
    return &gLists.emplace_back(MakeList(enumerator, present));
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
    if (index >= list->size()) {
        SetLastError(ERROR_NO_MORE_ITEMS);
        return FALSE;
    }
    device->DevInst = (*list)[index];
    return TRUE;
}

BOOL WINAPI SetupDiDestroyDeviceInfoList(HDEVINFO handle)
{
    CList *const list = OwnList(handle);
    if (list == nullptr) {
        return SYSTEM_ENTRY(SetupDiDestroyDeviceInfoList)(handle);
    }
    Log("close");
    list->clear(); // a walk over a closed list finds nothing
    return TRUE;
}

BOOL WINAPI SetupDiRemoveDevice(HDEVINFO handle, PSP_DEVINFO_DATA device)
{
    if (OwnList(handle) == nullptr) {
        return SYSTEM_ENTRY(SetupDiRemoveDevice)(handle, device);
    }
    CNode *const node = FindNode(device->DevInst);
    Log((node->mRemoved ? "remove again " : "remove ") + node->mId);
    SetLastError(ERROR_NO_SUCH_DEVINST);
    return !std::exchange(node->mRemoved, true);
}

HKEY WINAPI SetupDiOpenDevRegKey(HDEVINFO handle, PSP_DEVINFO_DATA device, DWORD scope, DWORD profile, DWORD type,
                                 REGSAM access)
{
    const auto invalid = static_cast<HKEY>(INVALID_HANDLE_VALUE);
    if (OwnList(handle) == nullptr) {
        return SYSTEM_ENTRY(SetupDiOpenDevRegKey)(handle, device, scope, profile, type, access);
    }
    const CNode *const node = FindNode(device->DevInst);
    if (scope != DICS_FLAG_GLOBAL || profile != 0 || type != DIREG_DEV) {
        SetLastError(ERROR_INVALID_FLAGS);
        return invalid;
    }
    const HKEY root = node->mKey.compare(0, 5, "HKLM\\") == 0 ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    HKEY key = nullptr;
    const LONG error = node->mKey.empty() ? static_cast<LONG>(ERROR_KEY_DOES_NOT_EXIST)
                                          : RegOpenKeyExA(root, node->mKey.c_str() + 5, 0, access, &key);
    Log("open key of " + node->mId + (error != ERROR_SUCCESS ? " fails" : ""));
    SetLastError(static_cast<DWORD>(error));
    return error == ERROR_SUCCESS ? key : invalid;
}

CONFIGRET WINAPI CM_Get_DevNode_Status(PULONG status, PULONG problem, DEVINST device, ULONG flags)
{
    const CNode *const node = FindNode(device);
    if (node == nullptr) {
        return SYSTEM_ENTRY(CM_Get_DevNode_Status)(status, problem, device, flags);
    }
    if (!node->Live() || node->mRemoved) {
        return CR_NO_SUCH_DEVINST;
    }
    *status = DN_DRIVER_LOADED | DN_STARTED;
    *problem = 0;
    return CR_SUCCESS;
}

CONFIGRET WINAPI CM_Get_Device_ID_ExA(DEVINST device, PSTR buffer, ULONG size, ULONG flags, HMACHINE machine)
{
    const CNode *const node = FindNode(device);
    if (node == nullptr) {
        return SYSTEM_ENTRY(CM_Get_Device_ID_ExA)(device, buffer, size, flags, machine);
    }
    if (node->mState == "fail-id") {
        return CR_FAILURE;
    }
    std::strncpy(buffer, node->mId.c_str(), size); // a cut id has no zero at its end, as on Windows
    return node->mId.size() < size ? CR_SUCCESS : CR_BUFFER_SMALL;
}

} // extern "C"
