// A group of steps as the interpreter holds it. A group is a section of the script, a step one line of it:
//
//   # text          comment, dropped: it is no step
//   <label>text     step `text` with a label (the label keeps its brackets)
//   DONE...         step with the label "DONE"
//   text            step without a label
//
// Lines have no numbers of their own: a step's place is its order. A line that is empty, or has nothing but a label,
// is a step with an empty text, and the group ends where the cursor reaches it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct StepRecord {
    uint32_t mIndex = 0;
    std::string mLabel;
    std::string mText;
};

class StepList {
public:
    // Loads the text of a section: lines with a NUL behind each. A text without any NUL holds no line.
    explicit StepList(const std::string &section);
    StepList(const StepList &) = delete; // the labels are views into the records
    StepList &operator=(const StepList &) = delete;

    uint32_t Count() const { return static_cast<uint32_t>(mRecords.size()); }
    const std::vector<StepRecord> &Records() const { return mRecords; }

    // Text of the step to run next; empty at the end of the list.
    const std::string &Text() const;

    // The step that a jump leads to: the last one whose label equals it. Count(), the end, for "<DONE>" and for a label
    // that no step has.
    uint32_t Find(const std::string &jump) const;

    // Moves the cursor: one on for an empty jump, else to where the jump leads.
    void Advance(const std::string &jump);

    // Where the cursor stands; puts it elsewhere.
    uint32_t Cursor() const { return mCursor; }
    void MoveTo(uint32_t index) { mCursor = index; }

private:
    std::vector<StepRecord> mRecords;
    std::unordered_map<std::string_view, uint32_t> mLabels; // the last step of each label
    uint32_t mCursor = 0;
};
