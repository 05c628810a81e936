#include "Script/Flags.h"

#include "Common/CSystemState.h"
#include "Common/Numbers.h"
#include "Common/TokenSplitter.h"
#include "Devices/DeviceTable.h"
#include "Script/PackageKind.h"

namespace {

constexpr uint32_t kAnyPen = kDevicePen | kDeviceDisplayPen;
// Devices whose touch is served by an interface of its own on Windows 8 want no touch service.
constexpr uint32_t kOwnInterface = kDeviceModernInterface0 | kDeviceModernInterface1;

bool Has(const ServiceFacts &facts, uint32_t deviceFlags)
{
    return (facts.mDevicePresence & deviceFlags) != 0;
}

} // namespace

void Flags::SetFlag(const std::string &name, int32_t value)
{
    if (!name.empty()) {
        mFlags[name] = value;
    }
}

int32_t Flags::GetFlag(const std::string &name) const
{
    const auto flag = mFlags.find(name);
    return flag != mFlags.end() ? flag->second : 0;
}

void Flags::TakeStaticFlags(const std::string &section)
{
    TokenSplitter lines(std::string(1, '\0'), section);
    for (std::string line = lines.First(); !lines.AtEnd(); line = lines.Next()) {
        TokenSplitter parts("=", line);
        const std::string name = parts.First();
        SetFlag(name, DecimalNumber(parts.Next()));
    }
}

bool NeedMTAPI(const Flags &flags, const ServiceFacts &facts)
{
    if (flags.IsSet("SKIP_MTAPI")) {
        return false;
    }
    if (flags.IsSet("FORCE_MTAPI")) {
        return true;
    }
    if (IsOSTypeWin8(facts.mOSType) && facts.mDriverKind == kDriverKindISD) {
        return false;
    }
    return Has(facts, kDeviceTouch);
}

bool PenService(const Flags &flags, const ServiceFacts &facts)
{
    if (flags.IsSet("SKIP_PEN_SERVICE")) {
        return false;
    }
    return flags.IsSet("FORCE_PEN_SERVICE") || NeedMTAPI(flags, facts) || Has(facts, kAnyPen);
}

bool TouchService(const Flags &flags, const ServiceFacts &facts)
{
    if (flags.IsSet("SKIP_TOUCH_SERVICE")) {
        return false;
    }
    if (flags.IsSet("FORCE_TOUCH_SERVICE") || NeedMTAPI(flags, facts)) {
        return true;
    }
    return !Has(facts, kOwnInterface) && Has(facts, kDeviceTouch);
}

bool PenPresent(const Flags &flags, const ServiceFacts &facts)
{
    return Has(facts, kAnyPen) || flags.IsSet("FORCE_PEN_SERVICE");
}
