// Foreign traces through both forms of the report.
#include <algorithm>
#include <sstream>

#include "Pack/TraceCommand.h"
#include "Require.h"

namespace {

size_t Count(const std::string &text, const std::string &part)
{
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

} // namespace

void CheckInput(const std::string &bytes)
{
    for (const bool page : {false, true}) {
        std::istringstream trace(bytes);
        std::ostringstream out, error;
        CPackConsole console{out, error};
        TraceOptions options;
        options.mFile = "x";
        options.mSummary = bytes.size() % 2 != 0;
        const int result = ReportTrace(trace, options, page, console);
        const std::string text = out.str();
        // Nothing gets to a terminal that it would obey, and no element of a page is left open or made by the trace.
        Require(
            std::all_of(text.begin(), text.end(), [](char c) { return c == '\n' || static_cast<uint8_t>(c) >= ' '; }));
        Require((result == kPackUnreadable) == !error.str().empty());
        for (const char *name : {"section", "table", "details", "ul", "li", "p", "dl"}) {
            const std::string open = std::string("<") + name;
            Require(!page ||
                    Count(text, open + ">") + Count(text, open + " ") == Count(text, std::string("</") + name + ">"));
        }
    }
}
