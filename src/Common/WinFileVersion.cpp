#include "Common/WinFileVersion.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "Common/importWin32API.h"
#include "Common/TextConversions.h"

namespace {

class CVersionApi : public CImportWin32API {
public:
    CVersionApi() : CImportWin32API("version.dll", true, false) {}
    CLazyEntry<decltype(&::GetFileVersionInfoSizeW)> GetFileVersionInfoSizeW{*this, "GetFileVersionInfoSizeW"};
    CLazyEntry<decltype(&::GetFileVersionInfoW)> GetFileVersionInfoW{*this, "GetFileVersionInfoW"};
    CLazyEntry<decltype(&::VerQueryValueA)> VerQueryValueA{*this, "VerQueryValueA"};
    CLazyEntry<decltype(&::VerQueryValueW)> VerQueryValueW{*this, "VerQueryValueW"};
};

CVersionApi &VersionApi()
{
    static CVersionApi gVersionApi;
    return gVersionApi;
}

// The version resource of one file. The platform's queries follow the 16-bit lengths of the resource without
// asking whether they are true. Lengths and value offsets of the four levels of nodes add up to less than the
// zeroed room that is kept behind the resource, so that a damaged one leads no query out of the block; the
// narrow query also writes its converted text there.
class CVersionResource {
public:
    // Answers false when there is no resource to be had.
    bool Load(const std::wstring &path)
    {
        DWORD unused = 0;
        const DWORD size = VersionApi().GetFileVersionInfoSizeW(path.c_str(), &unused);
        if (size == 0 || size > kLargestSize) {
            return false;
        }
        mBlock.assign(size + kRoomBehind, 0);
        return VersionApi().GetFileVersionInfoW(path.c_str(), 0, size, mBlock.data()) != FALSE;
    }

    // The first language and code page that the resource lists.
    bool FirstTranslation(WORD &language_O, WORD &codePage_O)
    {
        void *value = nullptr;
        UINT length = 0;
        WORD words[2];
        if (!VersionApi().VerQueryValueW(mBlock.data(), L"\\VarFileInfo\\Translation", &value, &length) ||
            length < sizeof words || RoomFrom(value) < sizeof words) {
            return false;
        }
        memcpy(words, value, sizeof words);
        language_O = words[0];
        codePage_O = words[1];
        return true;
    }

    // A text value in the ANSI code page, empty when there is none.
    std::string Text(const char *path)
    {
        void *value = nullptr;
        UINT length = 0;
        if (!VersionApi().VerQueryValueA(mBlock.data(), path, &value, &length) || length == 0) {
            return {};
        }
        const auto *text = static_cast<const char *>(value);
        return std::string(text, strnlen(text, RoomFrom(value)));
    }

private:
    // A resource tells its own length in 16 bits; what claims to be far larger is damaged.
    static constexpr DWORD kLargestSize = 0x100000;
    static constexpr size_t kRoomBehind = 8 * 0x10000;

    // Number of bytes from `place` to the end of the block, 0 for a place outside.
    size_t RoomFrom(const void *place) const
    {
        const auto offset = reinterpret_cast<uintptr_t>(place) - reinterpret_cast<uintptr_t>(mBlock.data());
        return offset < mBlock.size() ? mBlock.size() - offset : 0;
    }

    std::vector<BYTE> mBlock;
};

// Whether a profile function can make a file of the path. Longer ones are no files to them, and Wine's ends the
// program.
bool CanBeFile(const std::wstring &path)
{
    return path.size() < MAX_PATH && GetFullPathNameW(path.c_str(), 0, nullptr, nullptr) <= MAX_PATH;
}

} // namespace

FileVersion ReadProductVersion(const std::string &path)
{
    CVersionResource resource;
    WORD language = 0;
    WORD codePage = 0;
    if (!resource.Load(Utf8ToWide(path)) || !resource.FirstTranslation(language, codePage)) {
        return {};
    }
    char query[50];
    snprintf(query, sizeof query, "\\StringFileInfo\\%04x%04x\\ProductVersion", language, codePage);
    return FileVersion(resource.Text(query), false);
}

DriverDate ReadInfDriverVersion(const std::string &path)
{
    wchar_t text[50];
    const std::wstring file = Utf8ToWide(path);
    DWORD length = 0;
    if (CanBeFile(file)) {
        length = GetPrivateProfileStringW(L"Version", L"DriverVer", L"", text, ARRAYSIZE(text), file.c_str());
    }
    return ParseDriverVer(WideToUtf8(std::wstring(text, length)));
}
