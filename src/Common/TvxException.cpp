#include "Common/TvxException.h"

#include <cstdio>

CTvxException::CTvxException(const char *file, uint32_t line, const std::string &message, uint16_t status)
    : mFile(file), mLine(line), mMessage(message), mStatus(status)
{
    // Without a string stream, which would bring 700 KB of locales into the program.
    if (mFile != nullptr) {
        mText = std::string("File: ") + mFile + ", Line: " + std::to_string(mLine) + ", ";
    }
    if (mStatus != 0) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "%x", static_cast<unsigned>(mStatus));
        mText += std::string("Status: ") + hex + ", ";
    }
    mText += " \"" + mMessage + '"';
}

CTvxException::CTvxException(const CTvxException &other)
    : std::exception(other), mFile(other.mFile), mLine(other.mLine), mMessage(other.mMessage), mStatus(other.mStatus),
      mText(other.mText), mDetail(std::move(other.mDetail))
{
}

CTvxException::~CTvxException() = default;
