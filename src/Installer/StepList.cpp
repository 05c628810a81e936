#include "Installer/StepList.h"

namespace {

constexpr char kDone[] = "DONE";
constexpr char kDoneTarget[] = "<DONE>";

StepRecord ParseLine(const std::string &line)
{
    StepRecord record;
    record.mText = line;
    if (line.compare(0, sizeof kDone - 1, kDone) == 0) {
        record.mLabel = kDone;
    }
    if (line.front() == '<') {
        const size_t close = line.find('>');
        if (close != std::string::npos) {
            record.mLabel = line.substr(0, close + 1);
            record.mText = line.substr(close + 1);
        }
    }
    return record;
}

} // namespace

StepList::StepList(const std::string &section)
{
    size_t from = 0;
    for (size_t end = section.find('\0'); end != std::string::npos; end = section.find('\0', from)) {
        const std::string line = section.substr(from, end - from);
        from = end + 1;
        if (!line.empty() && line.front() == '#') {
            continue;
        }
        StepRecord record = line.empty() ? StepRecord() : ParseLine(line);
        record.mIndex = Count();
        mRecords.push_back(std::move(record));
    }
    // The views point into records that stay where they are from here on. A label that stands twice means its last
    // occurrence: packages rely on the later line winning.
    for (const StepRecord &record : mRecords) {
        if (!record.mLabel.empty()) {
            mLabels[record.mLabel] = record.mIndex;
        }
    }
}

const std::string &StepList::Text() const
{
    static const std::string kNothing;
    return mCursor < Count() ? mRecords[mCursor].mText : kNothing;
}

void StepList::Advance(const std::string &jump)
{
    if (jump.empty()) {
        ++mCursor;
        return;
    }
    const auto label = jump == kDoneTarget ? mLabels.end() : mLabels.find(jump);
    mCursor = label == mLabels.end() ? Count() : label->second;
}
