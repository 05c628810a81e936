// Foreign group text through the loader, the jumps and the cutting of each step.
#include <algorithm>

#include "Require.h"
#include "Common/TokenSplitter.h"
#include "Script/StepList.h"

namespace {

// The fields put together again are the text, and none holds a separator.
void CheckFields(const std::string &text)
{
    TokenSplitter fields(";", text);
    std::string joined = fields.First();
    Require(joined.find(';') == std::string::npos);
    for (std::string field = fields.Next(); !fields.AtEnd(); field = fields.Next()) {
        Require(field.find(';') == std::string::npos && fields.Current() == field);
        joined += ";" + field;
    }
    Require(joined == text && fields.Next().empty());
}

} // namespace

void CheckInput(const std::string &text)
{
    // Line ends of the input stand for the NULs of a section.
    std::string section = text;
    std::replace(section.begin(), section.end(), '\n', '\0');
    StepList list(section);
    const std::vector<StepRecord> records = list.Records();
    const std::string jump = records.empty() ? "" : records[text.size() % records.size()].mLabel;
    std::string target = records.size() > 1 && jump.empty() ? records[1].mText : "";
    for (const StepRecord &record : records) {
        const std::string &label = record.mLabel;
        Require(&record == &records[record.mIndex] && (record.mText + label).find('\0') == std::string::npos);
        Require(label.empty() || label == "DONE" || (label.front() == '<' && label.find('>') == label.size() - 1));
        CheckFields(record.mText);
        // A jump goes to the last line with the label, and nowhere but there.
        target = !jump.empty() && label == jump && jump != "<DONE>" ? record.mText : target;
    }
    list.Advance(jump);
    Require(list.Text() == target);
    for (const char *way : {"<DONE>", ""}) {
        list.Advance(way);
        Require(list.Text().empty());
    }
}
