#include "Services/UserProcesses.h"

#include <algorithm>
#include <cwctype>

#include "Services/DirectTrace.h"

namespace {

constexpr int kPasses = 100;
constexpr uint32_t kPassTime = 100;
constexpr EDriverSplitName kPrograms[] = {EDS_UDAName, EDS_TouchName, EDS_TabletName};

// What a wait that ran out reports. The place is part of the record, which readers of traces know.
void AssertEnded(int line)
{
    if (AssertsToDebugOut()) {
        reportAssertion("false", "..\\Common\\ProcessActions", line);
    }
}

bool AllRun(IUserProcessAccess &access, int32_t driverType)
{
    uint32_t ids[std::size(kPrograms)];
    std::transform(std::begin(kPrograms), std::end(kPrograms), ids,
                   [&](EDriverSplitName name) { return access.FindProcess(name, driverType); });
    return std::all_of(std::begin(ids), std::end(ids), [](uint32_t id) { return id != 0; }) &&
           std::all_of(std::begin(ids), std::end(ids), [&](uint32_t id) { return access.IsAlive(id); });
}

std::wstring FileName(const std::wstring &path)
{
    return path.substr(path.rfind(L'\\') + 1); // the whole when there is none: npos + 1 is 0
}

} // namespace

bool StartUserProcesses(IUserProcessAccess &access, int32_t driverType)
{
    TVX_TRACE_DIRECT("Starting userproc %s\n", DriverTypeName(driverType).c_str());
    if (!access.OpenNamedEvent(GetDriverSplitName(EDS_StartCDA, driverType))) {
        return false;
    }
    access.Signal();
    for (int pass = 0; pass < kPasses; ++pass) {
        if (AllRun(access, driverType)) {
            return true;
        }
        access.Wait(kPassTime);
    }
    AssertEnded(294);
    return false;
}

bool StopUserProcesses(IUserProcessAccess &access, int32_t driverType)
{
    TVX_TRACE_DIRECT("Stopping userproc %s\n", DriverTypeName(driverType).c_str());
    if (!access.OpenNamedEvent(GetDriverSplitName(EDS_StopCDA, driverType))) {
        return false;
    }
    uint32_t ids[std::size(kPrograms)];
    std::transform(std::begin(kPrograms), std::end(kPrograms), ids,
                   [&](EDriverSplitName name) { return access.FindProcess(name, driverType); });
    access.Signal();
    for (int pass = 0; pass < kPasses; ++pass) {
        if (std::none_of(std::begin(ids), std::end(ids), [&](uint32_t id) { return id != 0 && access.IsAlive(id); })) {
            return true;
        }
        access.Wait(kPassTime);
    }
    AssertEnded(249);
    return false;
}

bool IsProcessNamed(const std::wstring &entry, const std::wstring &wanted)
{
    const std::wstring name = FileName(entry);
    return std::equal(name.begin(), name.end(), wanted.begin(), wanted.end(), [](wchar_t a, wchar_t b) {
        return std::towupper(static_cast<std::wint_t>(a)) == std::towupper(static_cast<std::wint_t>(b));
    });
}

std::wstring AppName(const std::wstring &entry)
{
    const std::wstring name = FileName(entry);
    return name.substr(0, name.rfind(L'.'));
}
