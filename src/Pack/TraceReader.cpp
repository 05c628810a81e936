#include "Pack/TraceReader.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char kBetween[] = " -- ";

// Takes digits, `fewest` at least and ten at most; false when there are not so many.
bool TakeNumber(const std::string &line, size_t &at_I, size_t fewest, size_t most, uint32_t &number_O)
{
    uint64_t number = 0;
    const size_t from = at_I;
    while (at_I < line.size() && at_I - from < most && line[at_I] >= '0' && line[at_I] <= '9') {
        number = number * 10 + static_cast<uint64_t>(line[at_I++] - '0');
    }
    number_O = static_cast<uint32_t>(number);
    return at_I - from >= fewest && number <= UINT32_MAX;
}

bool TakeText(const std::string &line, size_t &at_I, const char *text)
{
    const size_t length = std::strlen(text);
    const bool found = line.compare(at_I, length, text) == 0;
    at_I += found ? length : 0;
    return found;
}

} // namespace

bool TakeStamp(const std::string &line, TraceRecord &record_O)
{
    size_t at = 0;
    uint32_t hour = 0, minute = 0, second = 0, milli = 0, process = 0, thread = 0;
    const bool taken =
        TakeNumber(line, at, 2, 2, hour) && TakeText(line, at, ":") && TakeNumber(line, at, 2, 2, minute) &&
        TakeText(line, at, ":") && TakeNumber(line, at, 2, 2, second) && TakeText(line, at, ".") &&
        TakeNumber(line, at, 3, 3, milli) && TakeText(line, at, kBetween) && TakeNumber(line, at, 5, 10, process) &&
        TakeText(line, at, "/") && TakeNumber(line, at, 5, 10, thread) && TakeText(line, at, kBetween);
    if (!taken || hour > 23 || minute > 59 || second > 59) {
        return false;
    }
    record_O.mStamped = true;
    record_O.mTime = ((hour * 60 + minute) * 60 + second) * 1000 + milli;
    record_O.mProcess = process;
    record_O.mThread = thread;
    record_O.mMessage.assign(line, at, std::string::npos);
    return true;
}

// Reads one line into mLine, without its end; what is too long is left out.
bool CTraceReader::NextLine()
{
    mLine.clear();
    bool any = false;
    while (true) {
        if (mAt == mEnd) {
            mStream.read(mBlock.data(), static_cast<std::streamsize>(mBlock.size()));
            mAt = 0;
            mEnd = static_cast<size_t>(mStream.gcount());
            if (mEnd == 0) {
                break;
            }
        }
        any = true;
        const char *const from = mBlock.data() + mAt;
        const void *const found = std::memchr(from, '\n', mEnd - mAt);
        const size_t length =
            found == nullptr ? mEnd - mAt : static_cast<size_t>(static_cast<const char *>(found) - from);
        mLine.append(from, std::min(length, kLongestMessage - std::min(kLongestMessage, mLine.size())));
        mAt += length;
        if (found != nullptr) {
            ++mAt;
            break;
        }
    }
    if (!mLine.empty() && mLine.back() == '\r') {
        mLine.pop_back();
    }
    mLines += any ? 1 : 0;
    return any;
}

bool CTraceReader::Next(TraceRecord &record_O)
{
    if (!mHasLine && !NextLine()) {
        return false;
    }
    mHasLine = false;
    record_O.mLine = mLines;
    record_O.mStamped = false;
    record_O.mTime = record_O.mProcess = record_O.mThread = 0;
    if (!TakeStamp(mLine, record_O)) {
        record_O.mMessage = mLine;
        return true;
    }
    while ((mHasLine = NextLine())) {
        TraceRecord next;
        if (TakeStamp(mLine, next)) {
            break;
        }
        if (record_O.mMessage.size() + 1 + mLine.size() <= kLongestMessage) {
            record_O.mMessage += '\n';
            record_O.mMessage += mLine;
        }
    }
    return true;
}
