#include "Common/TvxException.h"

#include <sstream>

CTvxException::CTvxException(const char *file, uint32_t line, const std::string &message, uint16_t status)
    : mFile(file), mLine(line), mMessage(message), mStatus(status)
{
    std::ostringstream text;
    if (mFile != nullptr) {
        text << "File: " << mFile << ", Line: " << mLine << ", ";
    }
    if (mStatus != 0) {
        text << "Status: " << std::hex << mStatus << ", ";
    }
    text << " \"" << mMessage << '"';
    mText = text.str();
}

CTvxException::CTvxException(const CTvxException &other)
    : std::exception(other), mFile(other.mFile), mLine(other.mLine), mMessage(other.mMessage), mStatus(other.mStatus),
      mText(other.mText), mDetail(std::move(other.mDetail))
{
}

CTvxException::~CTvxException() = default;
