#include "Installer/AdminType.h"

#include <windows.h>

#include <cstddef>
#include <vector>

#include "Common/Handles.h"
#include "Common/importWin32API.h"

namespace {

// The well-known SID of the group Administrators.
class CAdministratorsSid {
public:
    explicit CAdministratorsSid(CAdvApi32 &api) : mApi(api)
    {
        SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
        if (!mApi.AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0,
                                           0, 0, 0, &mSid)) {
            mSid = nullptr;
        }
    }
    // Nothing that went wrong in here concerns whoever asks for the last error next.
    ~CAdministratorsSid()
    {
        if (mSid != nullptr) {
            mApi.FreeSid(mSid);
        }
        SetLastError(ERROR_SUCCESS);
    }
    CAdministratorsSid(const CAdministratorsSid &) = delete;
    CAdministratorsSid &operator=(const CAdministratorsSid &) = delete;

    bool Equals(PSID other) { return mSid != nullptr && mApi.EqualSid(other, mSid); }

private:
    CAdvApi32 &mApi;
    PSID mSid = nullptr;
};

// The token's groups as the platform hands them over; empty on failure. The SIDs lie in the same buffer.
std::vector<BYTE> TokenGroupData(CAdvApi32 &api, HANDLE token)
{
    DWORD size = 0;
    api.GetTokenInformation(token, TokenGroups, nullptr, 0, &size);
    std::vector<BYTE> data(size);
    if (data.empty() || !api.GetTokenInformation(token, TokenGroups, data.data(), size, &size)) {
        data.clear();
    }
    return data;
}

uint32_t AdminTypeOfGroups(CAdvApi32 &api, const std::vector<BYTE> &data)
{
    constexpr size_t kHead = offsetof(TOKEN_GROUPS, Groups);
    if (data.size() < kHead) {
        return 0;
    }
    const auto *groups = reinterpret_cast<const TOKEN_GROUPS *>(data.data());
    if (groups->GroupCount > (data.size() - kHead) / sizeof(SID_AND_ATTRIBUTES)) {
        return 0;
    }
    CAdministratorsSid administrators(api);
    for (DWORD i = 0; i < groups->GroupCount; ++i) {
        const SID_AND_ATTRIBUTES &group = groups->Groups[i];
        if (administrators.Equals(group.Sid)) {
            return (group.Attributes & SE_GROUP_OWNER) != 0 ? 1 : 2;
        }
    }
    return 0;
}

} // namespace

uint32_t GetUserAdminType()
{
    CAdvApi32 &api = AdvApi32();
    CHandle token;
    if (!api.OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY | READ_CONTROL, token.Receive())) {
        return 0;
    }
    return AdminTypeOfGroups(api, TokenGroupData(api, token.Get()));
}
