#include "Installer/ScriptAccess.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "Actions/RegAccess.h"
#include "Common/Escapes.h"
#include "Common/Handles.h"
#include "Common/Status.h"
#include "Common/Trace.h"

std::string mConfigFile;

namespace {

constexpr char kDefaultConfigFile[] = ".\\installer.dat";

// What GetPrivateProfileSection answers when the section did not fit: the buffer less its two closing NULs.
constexpr DWORD kCutSection = kValueBufferSize - 2;

std::string gDialogDataFile;
std::vector<std::string> gSearchList;

using ValueBuffer = std::vector<char>;

// Opening without sharing finds out about a missing file and a locked one alike.
bool CanOpen(const std::string &path)
{
    return static_cast<bool>(
        CHandle(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

uint16_t CheckConfigFile(const std::string &path)
{
    return !path.empty() && CanOpen(path) ? TVXSTATUS_SUCCESS : TVXSTATUS_FAILURE;
}

void LocateScript()
{
    mConfigFile = ReadString("", "ConfigFileName", kDefaultConfigFile);
    if (CheckConfigFile(mConfigFile) != TVXSTATUS_SUCCESS) {
        traceExpectation("CheckConfigFile(mConfigFile) == TVXSTATUS_SUCCESS");
    }
}

// Visits the script, then the search list from its last entry to its first, until `visit` answers true. `visit` gets
// the path of each file that can be opened; `skip` is called for each that cannot.
template <typename TVisit, typename TSkip>
void WalkScriptFiles(TVisit visit, TSkip skip)
{
    if (mConfigFile.empty()) {
        LocateScript();
    }
    // By index and by value: a walk never changes the list, but the script path may be switched by a reader of it.
    for (size_t at = gSearchList.size() + 1; at-- > 0;) {
        const std::string file = at == gSearchList.size() ? mConfigFile : gSearchList[at];
        if (!CanOpen(file)) {
            skip();
        } else if (visit(file)) {
            return;
        }
    }
}

// The text of one value. A value equal to the default counts as not found. The buffer keeps what the last file gave,
// so that a last file that cannot be opened takes the default away: packages know their missing include by that.
void ReadScriptValue(const std::string &section, const std::string &key, const std::string &defaultValue,
                     ValueBuffer &buffer)
{
    WalkScriptFiles(
        [&](const std::string &file) {
            std::fill(buffer.begin(), buffer.end(), '\0');
            const DWORD length =
                GetPrivateProfileStringA(section.c_str(), key.c_str(), defaultValue.c_str(), buffer.data(),
                                         static_cast<DWORD>(buffer.size()), file.c_str());
            return length != 0 && defaultValue != buffer.data();
        },
        [&] { std::fill(buffer.begin(), buffer.end(), '\0'); });
}

// All lines of a section. The first file that has any wins; sections are not put together over files.
void ReadScriptSection(const std::string &section, const std::string &defaultValue, ValueBuffer &buffer)
{
    WalkScriptFiles(
        [&](const std::string &file) {
            std::fill(buffer.begin(), buffer.end(), '\0');
            const DWORD length = GetPrivateProfileSectionA(section.c_str(), buffer.data(),
                                                           static_cast<DWORD>(buffer.size()), file.c_str());
            if (length == kCutSection) {
                trace(6, "Section %s is too large (%d)\n", section.c_str(), static_cast<int>(length));
            }
            return length != 0 && defaultValue != buffer.data();
        },
        [&] { std::fill(buffer.begin(), buffer.end(), '\0'); });
}

std::string ExpandEnvironment(const char *text)
{
    ValueBuffer expanded(kValueBufferSize + 1, '\0');
    ExpandEnvironmentStringsA(text, expanded.data(), static_cast<DWORD>(kValueBufferSize));
    return expanded.data();
}

// A value as the registry holds it: by its size, less one closing NUL unless the NULs are part of a list.
std::string RawText(const ValueBuffer &buffer, size_t size, DWORD type)
{
    if (type == REG_EXPAND_SZ) {
        return ExpandEnvironment(buffer.data());
    }
    if (type != REG_MULTI_SZ && size > 0 && buffer[size - 1] == '\0') {
        --size;
    }
    return std::string(buffer.data(), size);
}

std::string ReadRegistryString(const std::string &name, const std::string &defaultValue, bool raw)
{
    ValueBuffer buffer(kValueBufferSize + 2, '\0'); // two NULs always stand behind the data
    DWORD size = static_cast<DWORD>(kValueBufferSize);
    DWORD type = REG_NONE;
    const LONG error = RegAccess(name, buffer.data(), size, type, false);
    SetLastStatus(StatusFromRegError(error));
    if (error != ERROR_SUCCESS) {
        return defaultValue;
    }
    const DWORD dwType = type;
    if (!((dwType == REG_SZ) || (dwType == REG_EXPAND_SZ) || (dwType == REG_MULTI_SZ))) {
        traceExpectation("(dwType == REG_SZ) || (dwType == REG_EXPAND_SZ) || (dwType == REG_MULTI_SZ)");
    }
    return raw ? RawText(buffer, size, type) : UnescapeValue(buffer.data(), buffer.size());
}

uint32_t ReadRegistryInteger(const std::string &name, uint32_t defaultValue)
{
    // Room for more than a number: a value of another type is reported, and its first four bytes are used.
    unsigned char buffer[kValueBufferSize] = {};
    DWORD size = sizeof buffer;
    DWORD type = REG_NONE;
    const LONG error = RegAccess(name, buffer, size, type, false);
    if (error != ERROR_SUCCESS) {
        const uint16_t status = StatusFromRegError(error);
        const bool missing = status == TVXSTATUS_VALUE_NOT_FOUND || status == TVXSTATUS_KEY_NOT_FOUND;
        SetLastStatus(missing ? status : TVXSTATUS_FAILURE);
        return defaultValue;
    }
    SetLastStatus(TVXSTATUS_SUCCESS);
    if (type != REG_DWORD) {
        traceExpectation("dwType == REG_DWORD");
    }
    uint32_t number = 0;
    std::memcpy(&number, buffer, sizeof number);
    return number;
}

// Puts the dialog data file at the end of the search list, where a walk comes to it first, for one read.
class CLanguageSearch {
public:
    CLanguageSearch() : mAdded(!gDialogDataFile.empty()) { AddIncludeFile(gDialogDataFile); }
    ~CLanguageSearch()
    {
        if (mAdded) {
            gSearchList.pop_back();
        }
    }
    CLanguageSearch(const CLanguageSearch &) = delete;
    CLanguageSearch &operator=(const CLanguageSearch &) = delete;

private:
    bool mAdded;
};

} // namespace

std::string ReadString(const std::string &section, const std::string &key, const std::string &defaultValue, bool raw)
{
    if (section.empty()) {
        return ReadRegistryString(key, defaultValue, raw);
    }
    ValueBuffer buffer(kValueBufferSize, '\0');
    if (key.empty()) {
        ReadScriptSection(section, defaultValue, buffer);
    } else {
        ReadScriptValue(section, key, defaultValue, buffer);
    }
    SetLastStatus(TVXSTATUS_SUCCESS);
    if (raw) {
        return buffer.data();
    }
    return key.empty() ? UnescapeSection(buffer.data(), buffer.size()) : UnescapeValue(buffer.data(), buffer.size());
}

uint32_t ReadInteger(const std::string &section, const std::string &key, uint32_t defaultValue)
{
    if (section.empty()) {
        return ReadRegistryInteger(key, defaultValue);
    }
    uint32_t result = defaultValue;
    WalkScriptFiles(
        [&](const std::string &file) {
            result = GetPrivateProfileIntA(section.c_str(), key.c_str(), static_cast<INT>(defaultValue), file.c_str());
            return result != defaultValue;
        },
        [] {});
    SetLastStatus(TVXSTATUS_SUCCESS);
    return result;
}

std::string ReadLanguageString(const std::string &section, const std::string &key, const std::string &defaultValue)
{
    const CLanguageSearch search;
    return ReadString(section, key, defaultValue);
}

uint32_t ReadLanguageInteger(const std::string &section, const std::string &key, uint32_t defaultValue)
{
    const CLanguageSearch search;
    return ReadInteger(section, key, defaultValue);
}

std::string SetConfigFile(const std::string &name)
{
    const std::string former = mConfigFile;
    if (!name.empty() && name != ".") {
        mConfigFile = name;
    }
    if (mConfigFile.empty()) {
        LocateScript();
    }
    return former;
}

void AddIncludeFile(const std::string &path)
{
    if (!path.empty()) {
        gSearchList.push_back(path);
    }
}

void SetDialogData(const std::string &path)
{
    gDialogDataFile = path;
}

void ReleaseSearchList()
{
    gSearchList.clear();
}
