// The records of a trace, one by one: however long the file is, little of it is in memory at a time.
#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

struct TraceRecord {
    uint64_t mLine = 0;    // where it begins in the file, from 1
    bool mStamped = false; // it has a time, a process and a thread
    uint32_t mTime = 0;    // milliseconds since midnight
    uint32_t mProcess = 0;
    uint32_t mThread = 0;
    std::string mMessage; // line ends inside as "\n"; cut at kLongestMessage bytes
};

class CTraceReader {
public:
    static constexpr size_t kLongestMessage = 0x4000;

    // The stream is read in binary and outlives the reader.
    explicit CTraceReader(std::istream &stream) : mStream(stream), mBlock(0x10000) {}

    // The next record; false at the end. A line without a stamp goes on with the record above it, unless the file has
    // no stamps at all, as what a debug monitor saves: then each line is a record.
    bool Next(TraceRecord &record_O);

private:
    bool NextLine();

    std::istream &mStream;
    std::vector<char> mBlock;
    size_t mAt = 0;
    size_t mEnd = 0;
    uint64_t mLines = 0;
    bool mHasLine = false; // mLine is one that was read ahead
    std::string mLine;
};

// Takes the stamp off the front of a line; false, and nothing changed, when there is none.
bool TakeStamp(const std::string &line, TraceRecord &record_O);
