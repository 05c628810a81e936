#include "Script/StepList.h"

#include <algorithm>

namespace {

constexpr char kDone[] = "DONE";
constexpr char kDoneTarget[] = "<DONE>";

bool BeginsWith(std::string_view line, std::string_view beginning)
{
    return line.substr(0, beginning.size()) == beginning;
}

StepRecord ParseLine(std::string_view line)
{
    StepRecord record;
    const size_t close = BeginsWith(line, "<") ? line.find('>') : std::string_view::npos;
    if (close != std::string_view::npos) {
        record.mLabel = line.substr(0, close + 1);
        line.remove_prefix(close + 1);
    } else if (BeginsWith(line, kDone)) {
        record.mLabel = kDone;
    }
    record.mText = line;
    return record;
}

} // namespace

StepList::StepList(const std::string &section)
{
    mRecords.reserve(static_cast<size_t>(std::count(section.begin(), section.end(), '\0')));
    size_t from = 0;
    for (size_t end = section.find('\0'); end != std::string::npos; end = section.find('\0', from)) {
        const std::string_view line(section.data() + from, end - from);
        from = end + 1;
        if (!BeginsWith(line, "#")) {
            StepRecord record = ParseLine(line);
            record.mIndex = Count();
            mRecords.push_back(std::move(record));
        }
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

uint32_t StepList::Find(const std::string &jump) const
{
    const auto label = jump == kDoneTarget ? mLabels.end() : mLabels.find(jump);
    return label == mLabels.end() ? Count() : label->second;
}

void StepList::Advance(const std::string &jump)
{
    mCursor = jump.empty() ? mCursor + 1 : Find(jump);
}
