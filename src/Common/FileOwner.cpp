#include "Common/FileOwner.h"

#include <cstring>
#include <vector>

#include "Common/Handles.h"
#include "Common/Paths.h"

namespace {

// A security descriptor, which `query` (buffer, its size, the size needed) reads; empty on failure. Not by the
// functions that take the name of an object: they load a further library.
template <typename TQuery>
std::vector<BYTE> Descriptor(const TQuery &query)
{
    DWORD size = 0;
    query(nullptr, 0, &size);
    std::vector<BYTE> descriptor(size);
    if (descriptor.empty() || !query(descriptor.data(), size, &size)) {
        descriptor.clear();
    }
    return descriptor;
}

PSECURITY_DESCRIPTOR AsDescriptor(const std::vector<BYTE> &bytes)
{
    return const_cast<BYTE *>(bytes.data());
}

// The SID of the user of this process, at the beginning of the buffer; empty on failure.
std::vector<BYTE> ProcessUser()
{
    CHandle token;
    DWORD size = 0;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Receive())) {
        return {};
    }
    GetTokenInformation(token.Get(), TokenUser, nullptr, 0, &size);
    std::vector<BYTE> user(size);
    if (user.empty() || !GetTokenInformation(token.Get(), TokenUser, user.data(), size, &size)) {
        user.clear();
    }
    return user;
}

// Two SIDs are the same when their bytes are.
bool AreSame(PSID one, PSID other)
{
    const DWORD length = GetLengthSid(one);
    return length == GetLengthSid(other) && std::memcmp(one, other, length) == 0;
}

bool IsTrusted(PSID sid)
{
    const std::vector<BYTE> user = ProcessUser();
    return IsWellKnownSid(sid, WinBuiltinAdministratorsSid) || IsWellKnownSid(sid, WinLocalSystemSid) ||
           (!user.empty() && AreSame(sid, reinterpret_cast<const TOKEN_USER *>(user.data())->User.Sid));
}

// Entries of an access list that grant; the SID stands at the same place in all of them. The creator's own rights are
// his who makes a file, and give nobody the right to make one.
bool GrantsToOthers(const ACL &list)
{
    constexpr DWORD kMakes = FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD | GENERIC_WRITE | GENERIC_ALL |
                             WRITE_DAC | WRITE_OWNER;
    for (DWORD at = 0; at < list.AceCount; ++at) {
        void *entry = nullptr;
        if (!GetAce(const_cast<ACL *>(&list), at, &entry)) {
            return true;
        }
        auto *const allowed = static_cast<ACCESS_ALLOWED_ACE *>(entry);
        const bool counts = allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
                            (allowed->Header.AceFlags & INHERIT_ONLY_ACE) == 0 && (allowed->Mask & kMakes) != 0;
        if (counts && !IsTrusted(&allowed->SidStart)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool IsOwnFile(HANDLE file)
{
    const std::vector<BYTE> descriptor = Descriptor([file](void *buffer, DWORD size, DWORD *needed_O) {
        return GetKernelObjectSecurity(file, OWNER_SECURITY_INFORMATION, buffer, size, needed_O);
    });
    PSID owner = nullptr;
    BOOL unused = FALSE;
    return !descriptor.empty() && GetSecurityDescriptorOwner(AsDescriptor(descriptor), &owner, &unused) &&
           owner != nullptr && IsTrusted(owner);
}

bool IsLinkedFile(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION details = {};
    return !GetFileInformationByHandle(file, &details) || details.nNumberOfLinks > 1 ||
           (details.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool OthersMayWrite(const std::string &folder)
{
    const std::vector<BYTE> descriptor = Descriptor([&folder](void *buffer, DWORD size, DWORD *needed_O) {
        return GetFileSecurityA(folder.c_str(), DACL_SECURITY_INFORMATION, buffer, size, needed_O);
    });
    PACL list = nullptr; // none means that all may do everything
    BOOL present = FALSE;
    BOOL unused = FALSE;
    const bool known =
        !descriptor.empty() && GetSecurityDescriptorDacl(AsDescriptor(descriptor), &present, &list, &unused);
    return !known || !present || list == nullptr || GrantsToOthers(*list);
}

CHandle MakeOwnFile(const std::string &folder, std::string &path_O)
{
    constexpr int kMostTries = 16;
    CHandle file;
    for (int number = 0; number < kMostTries; ++number) {
        path_O =
            JoinPath(folder, "~Tvx" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(number) + ".tmp");
        file = CHandle(CreateFileA(path_O.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file || GetLastError() != ERROR_FILE_EXISTS) {
            break;
        }
    }
    return file;
}

// By a file of our own that takes the name over: not every system deletes a link in place of what it leads to.
bool RemoveName(const std::string &path)
{
    const std::vector<size_t> separators = FindBackslashes(path);
    std::string own;
    CHandle file;
    if (PathExists(path) && !separators.empty()) {
        file = MakeOwnFile(path.substr(0, separators.back()), own);
    }
    if (file) {
        file.Reset();
        if (!MoveFileExA(own.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) {
            DeleteFileA(own.c_str());
            return false;
        }
    }
    return DeleteFileA(path.c_str()) != FALSE || !PathExists(path);
}
