#include "Script/ScriptFiles.h"

#include <algorithm>

#include "Common/Escapes.h"
#include "Common/Trace.h"

namespace {

// What the platform answers when a section did not fit: the buffer less its two closing NULs.
constexpr uint32_t kCutSection = kValueBufferSize - 2;

// Puts the dialog data file at the end of the search list, where a walk comes to it first, for one read.
class CLanguageSearch {
public:
    CLanguageSearch(std::vector<std::string> &list, const std::string &file) : mList(list), mAdded(!file.empty())
    {
        if (mAdded) {
            mList.push_back(file);
        }
    }
    ~CLanguageSearch()
    {
        if (mAdded) {
            mList.pop_back();
        }
    }
    CLanguageSearch(const CLanguageSearch &) = delete;
    CLanguageSearch &operator=(const CLanguageSearch &) = delete;

private:
    std::vector<std::string> &mList;
    bool mAdded;
};

} // namespace

std::string CScriptFiles::ReadString(const std::string &section, const std::string &key,
                                     const std::string &defaultValue, bool raw)
{
    std::vector<char> buffer(kValueBufferSize, '\0');
    if (key.empty()) {
        ReadSection(section, defaultValue, buffer);
    } else {
        ReadValue(section, key, defaultValue, buffer);
    }
    if (raw) {
        return buffer.data();
    }
    return key.empty() ? UnescapeSection(buffer.data(), buffer.size()) : UnescapeValue(buffer.data(), buffer.size());
}

uint32_t CScriptFiles::ReadInteger(const std::string &section, const std::string &key, uint32_t defaultValue)
{
    uint32_t result = defaultValue;
    WalkFiles(
        [&](const std::string &file) {
            result = mReader.ReadNumber(file, section, key, defaultValue);
            return result != defaultValue;
        },
        [] {});
    return result;
}

std::string CScriptFiles::ReadLanguageString(const std::string &section, const std::string &key,
                                             const std::string &defaultValue)
{
    const CLanguageSearch search(mSearchList, mDialogDataFile);
    return ReadString(section, key, defaultValue);
}

uint32_t CScriptFiles::ReadLanguageInteger(const std::string &section, const std::string &key, uint32_t defaultValue)
{
    const CLanguageSearch search(mSearchList, mDialogDataFile);
    return ReadInteger(section, key, defaultValue);
}

std::string CScriptFiles::SetConfigFile(const std::string &name)
{
    std::string former = mConfigFile;
    if (!name.empty() && name != ".") {
        mConfigFile = name;
    }
    if (mConfigFile.empty()) {
        LocateScript();
    }
    return former;
}

void CScriptFiles::AddIncludeFile(const std::string &path)
{
    if (!path.empty()) {
        mSearchList.push_back(path);
    }
}

void CScriptFiles::LocateScript()
{
    mConfigFile = mReader.MainScript();
    if (mConfigFile.empty() || !mReader.CanOpen(mConfigFile)) {
        traceExpectation("CheckConfigFile(mConfigFile) == TVXSTATUS_SUCCESS");
    }
}

// Visits the script, then the search list from its last entry to its first, until `visit` answers true. `visit` gets
// the path of each file that can be opened; `skip` is called for each that cannot.
void CScriptFiles::WalkFiles(const std::function<bool(const std::string &)> &visit, const std::function<void()> &skip)
{
    if (mConfigFile.empty()) {
        LocateScript();
    }
    // By index and by value: a walk never changes the list, but the script path may be switched by a reader of it.
    for (size_t at = mSearchList.size() + 1; at-- > 0;) {
        const std::string file = at == mSearchList.size() ? mConfigFile : mSearchList[at];
        if (!mReader.CanOpen(file)) {
            skip();
        } else if (visit(file)) {
            return;
        }
    }
}

// The text of one value. A value equal to the default counts as not found. The buffer keeps what the last file gave,
// so that a last file that cannot be opened takes the default away: packages know their missing include by that.
void CScriptFiles::ReadValue(const std::string &section, const std::string &key, const std::string &defaultValue,
                             std::vector<char> &buffer_O)
{
    WalkFiles(
        [&](const std::string &file) {
            std::fill(buffer_O.begin(), buffer_O.end(), '\0');
            const uint32_t length = mReader.ReadValue(file, section, key, defaultValue, buffer_O.data(),
                                                      static_cast<uint32_t>(buffer_O.size()));
            return length != 0 && defaultValue != buffer_O.data();
        },
        [&] { std::fill(buffer_O.begin(), buffer_O.end(), '\0'); });
}

// All lines of a section. The first file that has any wins; sections are not put together over files.
void CScriptFiles::ReadSection(const std::string &section, const std::string &defaultValue, std::vector<char> &buffer_O)
{
    WalkFiles(
        [&](const std::string &file) {
            std::fill(buffer_O.begin(), buffer_O.end(), '\0');
            const uint32_t length =
                mReader.ReadSection(file, section, buffer_O.data(), static_cast<uint32_t>(buffer_O.size()));
            if (length == kCutSection) {
                trace(6, "Section %s is too large (%d)\n", section.c_str(), static_cast<int>(length));
            }
            return length != 0 && defaultValue != buffer_O.data();
        },
        [&] { std::fill(buffer_O.begin(), buffer_O.end(), '\0'); });
}
