// Foreign group text through the loader, the jumps and the cutting of each step.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Common/TokenSplitter.h"
#include "Installer/StepList.h"

namespace {

void Require(bool condition)
{
    if (!condition) {
        abort();
    }
}

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

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Line ends of the input stand for the NULs of a section.
    std::string section(reinterpret_cast<const char *>(data), size);
    for (char &c : section) {
        c = c == '\n' ? '\0' : c;
    }
    const StepList list(section);
    std::string last;
    for (const StepRecord &record : list.Records()) {
        Require(&record == &list.Records()[record.mIndex]);
        Require(record.mText.find('\0') == std::string::npos && record.mLabel.find('\0') == std::string::npos);
        const bool bracketed = !record.mLabel.empty() && record.mLabel.front() == '<' && record.mLabel.back() == '>';
        Require(record.mLabel.empty() || bracketed || record.mLabel == "DONE");
        Require(!bracketed || record.mLabel.find('>') == record.mLabel.size() - 1);
        CheckFields(record.mText);
        last = record.mLabel.empty() ? last : record.mLabel;
    }
    // A jump goes to the last line with the label, wherever the cursor stands, and nowhere but there.
    if (list.Count() > 0) {
        StepList walk(section);
        const std::string jump = list.Records()[size % list.Count()].mLabel;
        walk.Advance(jump);
        const std::string *expected = nullptr;
        for (const StepRecord &record : list.Records()) {
            expected = record.mLabel == jump ? &record.mText : expected;
        }
        if (jump.empty()) {
            Require(walk.Text() == (list.Count() > 1 ? list.Records()[1].mText : ""));
        } else {
            Require(walk.Text() == (jump == "<DONE>" ? "" : *expected));
        }
        walk.Advance("<DONE>");
        Require(walk.Text().empty());
        walk.Advance("");
        Require(walk.Text().empty());
    }
    return 0;
}
