#include "Common/DriverDate.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"

namespace {

// Range of the Windows runtime's _mktime64, to which every other runtime is held here.
constexpr int kLastYear = 3000;
constexpr int64_t kLastTime = 32535215999; // 3000-12-31 23:59:59 UTC

// Midnight of a local date with daylight saving off; -1 when the runtime has no time value for it.
int64_t LocalMidnight(int year, int month, int day)
{
    if (year > kLastYear) {
        return -1;
    }
    std::tm local = {};
    local.tm_year = year - 1900;
    local.tm_mon = month - 1;
    local.tm_mday = day;
#if defined(_WIN32)
    const int64_t time = _mktime64(&local);
#else
    const int64_t time = std::mktime(&local);
#endif
    return time < 0 || time > kLastTime ? -1 : time;
}

// Broken-down local time; all zero for a value that the runtime refuses.
std::tm LocalTime(int64_t time)
{
    std::tm local = {};
#if defined(_WIN32)
    const __time64_t value = time;
    if (const std::tm *found = _localtime64(&value)) {
        local = *found;
    }
#else
    const std::time_t value = time;
    localtime_r(&value, &local);
#endif
    return local;
}

} // namespace

DriverDate ParseDriverVer(const std::string &text)
{
    if (text.empty()) {
        return {};
    }
    std::vector<std::string> parts = SplitAny(text, ",/ ", false);
    TVX_ASSERT(parts.size() == 4);
    parts.resize(4);
    const int month = DecimalNumber(parts[0]);
    const int day = DecimalNumber(parts[1]);
    const int year = DecimalNumber(parts[2]);
    if (year < 1900 || month < 1 || month > 12 || day < 1 || day > 31) {
        throw CDriverDateException(CDriverDateException::kOutOfBounds, text);
    }
    DriverDate date;
    date.mTime = LocalMidnight(year, month, day);
    if (date.mTime == -1) {
        throw CDriverDateException(CDriverDateException::kNoSuchTime, text);
    }
    date.mVersion = FileVersion(parts[3], false);
    return date;
}

std::string FormatDriverDate(const DriverDate &date)
{
    const std::tm local = LocalTime(date.mTime);
    char text[64];
    snprintf(text, sizeof text, "%02d/%02d/%02d,", local.tm_mday, local.tm_mon + 1, local.tm_year + 1900);
    return text + date.mVersion.ToText(FileVersion::EStyleDotted);
}

bool IsDriverDateNewer(const DriverDate &a, const DriverDate &b)
{
    if (!a.IsSet() || !b.IsSet()) {
        return a.IsSet();
    }
    if (a.mVersion == b.mVersion) {
        return a.mTime > b.mTime;
    }
    return IsNewerThan(a.mVersion, b.mVersion);
}
