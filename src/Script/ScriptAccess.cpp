#include "Script/ScriptAccess.h"

#include <windows.h>

#include <memory>
#include <set>

#include "Common/Handles.h"
#include "Common/HeldFiles.h"
#include "Common/Status.h"
#include "Common/Trace.h"
#include "Common/TvxSemaphore.h"
#include "Registry/RegAccess.h"

namespace {

constexpr char kDefaultConfigFile[] = ".\\installer.dat";

CHandle OpenToRead(const std::string &file, DWORD share)
{
    return CHandle(
        CreateFileA(file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Keeps others who open files without sharing, as CanOpen() of another run does, from a file while it is read: the
// platform's readers take a file that they cannot open for an empty one. Without a hold the read is tried all the same.
CHandle HoldForReading(const std::string &file)
{
    CHandle hold;
    TryWhileHeld([&] {
        hold = OpenToRead(file, FILE_SHARE_READ | FILE_SHARE_WRITE);
        return static_cast<bool>(hold);
    });
    return hold;
}

class CPlatformProfileReader : public IProfileReader {
public:
    // Opening without sharing finds out about a missing file and one that others hold. The latter is waited for, once:
    // after that it counts as missing until it is free again, because a run reads a script dozens of times.
    bool CanOpen(const std::string &file) override
    {
        DWORD waited = 0;
        const DWORD patience = IsGivenUp(file) ? 0 : kHeldPatienceMs;
        const bool opened = TryWhileHeld([&] { return static_cast<bool>(OpenToRead(file, 0)); }, patience, &waited);
        if (opened) {
            ForgetGivenUp(file);
        } else if (FailedAsHeld() && patience != 0) {
            const int error = static_cast<int>(GetLastError());
            trace(5, "File %s is in use, taken for missing after %i ms, %i\n", file.c_str(), static_cast<int>(waited),
                  error);
            const CTvxLock lock(mLock);
            mGivenUp.insert(file);
        }
        return opened;
    }
    uint32_t ReadValue(const std::string &file, const std::string &section, const std::string &key,
                       const std::string &defaultValue, char *buffer_O, uint32_t size) override
    {
        const CHandle hold = HoldForReading(file);
        return GetPrivateProfileStringA(section.c_str(), key.c_str(), defaultValue.c_str(), buffer_O, size,
                                        file.c_str());
    }
    uint32_t ReadSection(const std::string &file, const std::string &section, char *buffer_O, uint32_t size) override
    {
        const CHandle hold = HoldForReading(file);
        return GetPrivateProfileSectionA(section.c_str(), buffer_O, size, file.c_str());
    }
    uint32_t ReadNumber(const std::string &file, const std::string &section, const std::string &key,
                        uint32_t defaultValue) override
    {
        const CHandle hold = HoldForReading(file);
        return GetPrivateProfileIntA(section.c_str(), key.c_str(), static_cast<INT>(defaultValue), file.c_str());
    }
    std::string MainScript() override { return ReadRegString("ConfigFileName", kDefaultConfigFile); }

private:
    // The window reads its words while the steps read theirs.
    bool IsGivenUp(const std::string &file)
    {
        const CTvxLock lock(mLock);
        return mGivenUp.count(file) != 0;
    }
    void ForgetGivenUp(const std::string &file)
    {
        const CTvxLock lock(mLock);
        mGivenUp.erase(file);
    }

    std::set<std::string> mGivenUp;
    std::shared_ptr<CTvxSemaphore> mLock = std::make_shared<CWinNTTvxSemaphore>();
};

} // namespace

CScriptFiles &ScriptFiles()
{
    // Never destroyed: a thread that nobody waits for may read a word while the process ends.
    static CScriptFiles &files = *new CScriptFiles(*new CPlatformProfileReader);
    return files;
}

std::string ReadString(const std::string &section, const std::string &key, const std::string &defaultValue, bool raw)
{
    if (section.empty()) {
        return ReadRegString(key, defaultValue, raw);
    }
    std::string text = ScriptFiles().ReadString(section, key, defaultValue, raw);
    SetLastStatus(TVXSTATUS_SUCCESS);
    return text;
}

uint32_t ReadInteger(const std::string &section, const std::string &key, uint32_t defaultValue)
{
    if (section.empty()) {
        return ReadRegInteger(key, defaultValue);
    }
    const uint32_t number = ScriptFiles().ReadInteger(section, key, defaultValue);
    SetLastStatus(TVXSTATUS_SUCCESS);
    return number;
}
