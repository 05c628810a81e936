#include "Common/TokenSplitter.h"

namespace {

// Hardly a step has more fields; room for them is made at once.
constexpr size_t kUsualTokens = 8;

} // namespace

TokenSplitter::TokenSplitter(const std::string &separator, const std::string &text_I)
    : mText(text_I), mSeparator(separator)
{
}

void TokenSplitter::SetText(const std::string &text)
{
    mText = text;
    mPositions.clear();
    mCurrent = 0;
    mParsed = false;
}

// The end mark is where the token behind the last one would begin, so that every token is the text between two
// neighbouring positions less one separator.
void TokenSplitter::Parse()
{
    if (mParsed) {
        return;
    }
    mParsed = true;
    mPositions.reserve(kUsualTokens + 1);
    mPositions.push_back(0);
    if (!mSeparator.empty()) {
        for (size_t at = mText.find(mSeparator); at != std::string::npos;
             at = mText.find(mSeparator, at + mSeparator.size())) {
            mPositions.push_back(static_cast<uint32_t>(at + mSeparator.size()));
        }
    }
    mPositions.push_back(static_cast<uint32_t>(mText.size() + mSeparator.size()));
}

std::string TokenSplitter::First()
{
    Parse();
    mCurrent = 0;
    return Current();
}

std::string TokenSplitter::Next()
{
    Parse();
    if (!AtEnd()) {
        ++mCurrent;
    }
    return Current();
}

std::string TokenSplitter::Current()
{
    Parse();
    if (AtEnd()) {
        return std::string();
    }
    const uint32_t from = mPositions[mCurrent];
    return mText.substr(from, mPositions[mCurrent + 1] - mSeparator.size() - from);
}

bool TokenSplitter::AtEnd()
{
    Parse();
    return mCurrent + 1 >= mPositions.size();
}
