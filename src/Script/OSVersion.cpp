#include "Script/OSVersion.h"

#include "Common/Numbers.h"

WantedOSVersion ParseOSVersion(const std::string &field)
{
    WantedOSVersion wanted;
    const size_t point = field.find('.');
    if (point == std::string::npos) {
        return wanted;
    }
    wanted.mMajor = static_cast<uint32_t>(DecimalNumber(field.substr(0, point)));
    const std::string minor = field.substr(point + 1);
    wanted.mAnyMinor = !minor.empty() && (minor.front() == 'x' || minor.front() == 'X');
    wanted.mMinor = wanted.mAnyMinor ? 0 : static_cast<uint32_t>(DecimalNumber(minor));
    return wanted;
}
