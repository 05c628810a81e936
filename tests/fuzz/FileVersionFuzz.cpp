// Version texts, DriverVer entries, UTF-8 and base64: whatever the bytes, reading ends, and what was read can be
// written and read again.
#include <stdexcept>

#include "Require.h"
#include "Common/DriverDate.h"
#include "Common/FileVersion.h"
#include "Common/TextEncoding.h"

namespace {

void CheckVersions(const std::string &text)
{
    const FileVersion version(text, false);
    Require(FileVersion(version.ToText(FileVersion::EStyleFull), false) == version);
    Require(!IsNewerThan(version, version));
    // Cut anywhere, the two parts are two versions with an order.
    const FileVersion other(text.substr(text.size() / 2), true);
    Require((IsNewerThan(version, other) != IsNewerThan(other, version)) == (version != other));
    for (int style = -1; style <= 6; ++style) {
        version.ToText(style);
        FileVersion(version.ToNumber(style), style);
    }
}

void CheckDriverVer(const std::string &text)
{
    try {
        const DriverDate date = ParseDriverVer(text);
        Require((text.empty() || date.mTime >= 0) && !IsDriverDateNewer(date, date));
        Require(FormatDriverDate(date).size() >= 18);
    } catch (const CDriverDateException &refusal) {
        Require(refusal.Code() == CDriverDateException::kOutOfBounds ||
                refusal.Code() == CDriverDateException::kNoSuchTime);
    }
}

void CheckUtf8(const std::string &text)
{
    bool allValid = true;
    std::string written;
    for (size_t index = 0, before = 0; index < text.size(); before = index) {
        bool valid = false;
        written += EncodeCodePoint(DecodeCodePoint(text, index, &valid));
        allValid = allValid && valid;
        Require(index > before && index <= text.size());
    }
    Require(IsValidUtf8(text) == allValid && IsValidUtf8(written) && (written == text) == allValid);
}

void CheckBase64(const std::string &text)
{
    const std::vector<uint8_t> bytes(text.begin(), text.end());
    Require(Base64Decode(Base64Encode(bytes)) == bytes);
    try {
        const std::vector<uint8_t> decoded = Base64Decode(text);
        Require(Base64Decode(Base64Encode(decoded)) == decoded);
    } catch (const std::invalid_argument &refusal) {
        Require(std::string(refusal.what()) == "bad char");
    }
}

} // namespace

void CheckInput(const std::string &text)
{
    for (const auto check : {CheckVersions, CheckDriverVer, CheckUtf8, CheckBase64}) {
        check(text);
    }
}
