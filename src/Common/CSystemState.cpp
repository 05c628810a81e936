#include "Common/CSystemState.h"

#include "Common/Trace.h"

namespace {

struct OSTypeRow {
    int32_t type;
    const char *name;
};

// Look-ups end at the row of -1. The rows of the other system are here for look-ups by name only.
constexpr OSTypeRow kOSTypes[] = {
    {kOSTypeXP, "Windows XP"},
    {kOSTypeXPTabletPC, "Windows XP TE"},
    {kOSTypeVista, "Windows Vista"},
    {kOSTypeWin7, "Windows 7"},
    {kOSTypeWin7HomeBasic, "Windows 7 Home Basic"},
    {kOSTypeWin7Starter, "Windows 7 Starter"},
    {kOSTypeWin8, "Windows 8"},
    {kOSTypeWin81, "Windows 8.1"},
    {1000, "OSX 10.4"},
    {1010, "OSX 10.5"},
    {1020, "OSX 10.6"},
    {1030, "OSX 10.7"},
    {1040, "OSX 10.8"},
    {1050, "OSX 10.9"},
    {kOSTypeUnset, "Unset"},
    {kOSTypeUnknown, "Unknown"},
};

} // namespace

int32_t CSystemState::mOSType = kOSTypeUnset;

int32_t CSystemState::GetOSType()
{
    if (mOSType == kOSTypeUnset) {
        TVX_ASSERT(!"OSType requested before it was set");
        return kOSTypeUnknown;
    }
    return mOSType;
}

std::string CSystemState::GetOSTypeName()
{
    const int32_t type = GetOSType();
    const OSTypeRow *row = kOSTypes;
    while (row->type != type && row->type != kOSTypeUnknown) {
        ++row;
    }
    return row->name;
}

int32_t CSystemState::OSTypeFromName(const std::string &name)
{
    const OSTypeRow *row = kOSTypes;
    while (row->name != name && row->type != kOSTypeUnknown) {
        ++row;
    }
    return row->type;
}

void CSystemState::SetFakeOSType(int32_t type)
{
    if (TracesToDebugOut()) {
        traceAlways("Faking Windows platform: %d\n", type);
    }
    mOSType = type;
}
