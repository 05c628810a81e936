// The script's own memory, and what flags and found devices together say about the services to install. A flag has an
// effect here only with the value 1, exactly; a flag that was never set reads 0.
#include "Common/CSystemState.h"
#include "Common/Numbers.h"
#include "Common/TokenSplitter.h"
#include "Devices/DeviceTable.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/PreflightRules.h"
#include "Installer/ScriptAccess.h"

namespace {

constexpr uint32_t kAnyPen = kDevicePen | kDeviceDisplayPen;
// Devices whose touch is served by an interface of its own on Windows 8 want no touch service.
constexpr uint32_t kOwnInterface = kDeviceModernInterface0 | kDeviceModernInterface1;

} // namespace

void CWinInstallMain::SetFlag(const std::string &name, int32_t value)
{
    if (!name.empty()) {
        mFlags[name] = value;
    }
}

int32_t CWinInstallMain::GetFlag(const std::string &name) const
{
    const auto flag = mFlags.find(name);
    return flag != mFlags.end() ? flag->second : 0;
}

// One flag a line, NAME=value; a line without a value sets 0.
void CWinInstallMain::ReadStaticFlags()
{
    TokenSplitter lines(std::string(1, '\0'), ReadString("STATIC_FLAGS", "", ""));
    for (std::string line = lines.First(); !lines.AtEnd(); line = lines.Next()) {
        TokenSplitter parts("=", line);
        const std::string name = parts.First();
        SetFlag(name, DecimalNumber(parts.Next()));
    }
}

bool CWinInstallMain::NeedMTAPI() const
{
    if (GetFlag("SKIP_MTAPI") == 1) {
        return false;
    }
    if (GetFlag("FORCE_MTAPI") == 1) {
        return true;
    }
    if (IsOSTypeWin8(CSystemState::GetOSType()) && mDriverKind == kDriverKindISD) {
        return false;
    }
    return (mDevicePresence & kDeviceTouch) != 0;
}

bool CWinInstallMain::PenService() const
{
    if (GetFlag("SKIP_PEN_SERVICE") == 1) {
        return false;
    }
    if (GetFlag("FORCE_PEN_SERVICE") == 1) {
        return true;
    }
    return NeedMTAPI() || (mDevicePresence & kAnyPen) != 0;
}

bool CWinInstallMain::TouchService() const
{
    if (GetFlag("SKIP_TOUCH_SERVICE") == 1) {
        return false;
    }
    if (GetFlag("FORCE_TOUCH_SERVICE") == 1 || NeedMTAPI()) {
        return true;
    }
    if ((mDevicePresence & kOwnInterface) != 0) {
        return false;
    }
    return (mDevicePresence & kDeviceTouch) != 0;
}

bool CWinInstallMain::PenPresent() const
{
    return (mDevicePresence & kAnyPen) != 0 || GetFlag("FORCE_PEN_SERVICE") == 1;
}
