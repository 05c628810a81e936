#include "Services/ProcessActions.h"

#include <tlhelp32.h>

#include "Common/Handles.h"
#include "Common/TraceTimer.h"
#include "Services/DirectTrace.h"
#include "Services/NamedService.h"
#include "Services/UserProcesses.h"

namespace {

class CWinUserProcessAccess : public IUserProcessAccess {
public:
    bool OpenNamedEvent(const std::string &name) override
    {
        mEvent.Reset(OpenEventA(EVENT_MODIFY_STATE, FALSE, name.c_str()));
        return static_cast<bool>(mEvent);
    }
    void Signal() override { SetEvent(mEvent.Get()); }
    uint32_t FindProcess(EDriverSplitName name, int32_t driverType) override
    {
        return GetProcessIDUsingSnapshot(GetDriverSplitNameW(name, driverType));
    }
    bool IsAlive(uint32_t processId) override { return IsProcessAlive(processId); }
    void Wait(uint32_t milliseconds) override { Sleep(milliseconds); }

private:
    CHandle mEvent;
};

// The list of processes as it was at one moment, entry by entry.
class CSnapshot {
public:
    CSnapshot() : mSnapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0))
    {
        static_assert(sizeof mEntry == 556, "the size that Windows compares");
        mEntry.dwSize = sizeof mEntry;
    }
    explicit operator bool() const { return static_cast<bool>(mSnapshot); }
    bool First() { return Process32FirstW(mSnapshot.Get(), &mEntry) != FALSE; }
    bool Next() { return Process32NextW(mSnapshot.Get(), &mEntry) != FALSE; }
    uint32_t ProcessId() const { return mEntry.th32ProcessID; }
    const wchar_t *File() const { return mEntry.szExeFile; }

private:
    CHandle mSnapshot;
    PROCESSENTRY32W mEntry = {};
};

} // namespace

bool StopDrivers(bool service, int32_t driverType)
{
    const TraceTimer timer("TIMEFOR: ACTION: StopDrivers");
    return service ? StopService(driverType) : StopUserProc(driverType);
}

bool StartDrivers(bool service, int32_t driverType)
{
    const TraceTimer timer("TIMEFOR: ACTION: StartDrivers");
    return service ? StartService(driverType) : StartUserProc(driverType);
}

bool StopService(int32_t driverType)
{
    const TraceTimer timer("TIMEFOR: ACTION: StopService");
    CWinServiceAccess access;
    return StopDriverService(access, driverType);
}

bool StartService(int32_t driverType)
{
    const TraceTimer timer("TIMEFOR: ACTION: StartService");
    CWinServiceAccess access;
    return StartDriverService(access, driverType);
}

bool StopUserProc(int32_t driverType)
{
    const TraceTimer timer("TIMEFOR: ACTION: StopUserProc");
    CWinUserProcessAccess access;
    return StopUserProcesses(access, driverType);
}

bool StartUserProc(int32_t driverType)
{
    const TraceTimer timer("TIMEFOR: ACTION: StartUserProc");
    CWinUserProcessAccess access;
    return StartUserProcesses(access, driverType);
}

uint32_t GetProcessIDUsingSnapshot(const std::wstring &name, int32_t, uint32_t leaveOut, const std::wstring &)
{
    if (name.empty()) {
        return 0;
    }
    CSnapshot snapshot;
    if (!snapshot) {
        TVX_TRACE_DIRECT("CreateToolhelp32Snapshot:Process32FirstW failed\n");
        return 0;
    }
    if (!snapshot.First()) {
        TVX_TRACE_DIRECT("GetProcessIDUsingSnapshot:Process32FirstW failed\n");
        return 0;
    }
    do {
        if (*snapshot.File() != L'\0' && snapshot.ProcessId() != leaveOut && IsProcessNamed(snapshot.File(), name)) {
            return snapshot.ProcessId();
        }
    } while (snapshot.Next());
    return 0;
}

std::wstring GetAppNameUsingSnapshot(uint32_t processId)
{
    CSnapshot snapshot;
    if (!snapshot) {
        TVX_TRACE_DIRECT("GetAppNameUsingSnapshot:CreateToolhelp32Snapshot failed\n");
        return std::wstring();
    }
    if (!snapshot.First()) {
        TVX_TRACE_DIRECT("GetAppNameUsingSnapshot:Process32FirstW failed\n");
        return std::wstring();
    }
    do {
        if (snapshot.ProcessId() == processId) {
            return AppName(snapshot.File());
        }
    } while (snapshot.Next());
    return std::wstring();
}

bool IsProcessAlive(uint32_t processId)
{
    return !GetAppNameUsingSnapshot(processId).empty();
}
