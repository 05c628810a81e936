// The DriverVer entry of INF files: a date and a version.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "Common/FileVersion.h"

struct DriverDate {
    int64_t mTime = 0; // seconds since 1970-01-01 UTC of the date's midnight, local standard time
    FileVersion mVersion;

    // False for the empty value: neither a date nor a version is known.
    bool IsSet() const { return mTime != 0 || mVersion.IsSet(); }
};

// A DriverVer date that is refused. Made to pass through the callers; the interpreter stops it at the step.
class CDriverDateException : public std::exception {
public:
    static constexpr uint32_t kOutOfBounds = 0x80004005; // E_FAIL
    static constexpr uint32_t kNoSuchTime = 0x80070057;  // E_INVALIDARG

    // `text` is the entry that was refused.
    CDriverDateException(uint32_t code, const std::string &text) : mCode(code), mText("driver date refused: " + text) {}

    uint32_t Code() const { return mCode; }
    const char *what() const noexcept override { return mText.c_str(); }

private:
    uint32_t mCode;
    std::string mText;
};

// Reads month/day/year,version, the entry's own order; an empty text gives the empty value. Throws
// CDriverDateException: kOutOfBounds for a year before 1900, a month outside 1 to 12 or a day outside 1 to 31,
// kNoSuchTime for a date outside the runtime's range of 1970 to 3000. A day that its month lacks runs on into the
// next month.
DriverDate ParseDriverVer(const std::string &text);

// day/month/year,version with four numbers, for the trace. The day comes first here, unlike in the entry itself.
std::string FormatDriverDate(const DriverDate &date);

// Whether `a` replaces `b`: an empty value never does, anything else replaces an empty one, the later date wins among
// equal versions, and otherwise the versions decide alone.
bool IsDriverDateNewer(const DriverDate &a, const DriverDate &b);
