#include "TraceLog.h"

#include <regex>
#include <sstream>

#include "Package.h"

std::vector<TraceRecord> ParseTrace(const std::string &text)
{
    static const std::regex beginning(R"((\d\d:\d\d:\d\d\.\d{3}) -- (\d{5,})/(\d{5,}) -- )");
    std::vector<TraceRecord> records;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        std::smatch found;
        // The lines of a trace can be long; the beginning is not.
        const std::string head = line.substr(0, 64);
        if (std::regex_search(head, found, beginning, std::regex_constants::match_continuous)) {
            records.push_back({found[1], found[2], found[3], line.substr(found.length())});
        } else if (records.empty()) {
            records.push_back({"", "", "", line});
        } else {
            records.back().mMessage += "\n" + line;
        }
    }
    return records;
}

bool Fits(const std::string &pattern, const std::string &text)
{
    size_t star = pattern.find('*');
    if (star == std::string::npos || text.compare(0, star, pattern, 0, star) != 0) {
        return text == pattern;
    }
    size_t at = star;
    size_t from = star + 1;
    for (; (star = pattern.find('*', from)) != std::string::npos; from = star + 1) {
        const size_t found = text.find(pattern.substr(from, star - from), at);
        if (found == std::string::npos) {
            return false;
        }
        at = found + star - from;
    }
    const size_t rest = pattern.size() - from;
    return text.size() >= at + rest && text.compare(text.size() - rest, rest, pattern, from, rest) == 0;
}

namespace {

::testing::AssertionResult WithTrace(const RunResult &run, const std::string &what)
{
    ::testing::AssertionResult result = ::testing::AssertionFailure();
    result << what << "\nexit code " << run.mExitCode << ", trace of " << run.mTrace.size() << " records:\n";
    for (const TraceRecord &record : run.mTrace) {
        result << "    " << record.mMessage << "\n";
    }
    return result;
}

} // namespace

size_t CountRecords(const RunResult &run, const std::string &pattern)
{
    size_t count = 0;
    for (const TraceRecord &record : run.mTrace) {
        count += Fits(pattern, record.mMessage) ? 1 : 0;
    }
    return count;
}

::testing::AssertionResult Has(const RunResult &run, const std::string &pattern)
{
    if (CountRecords(run, pattern) > 0) {
        return ::testing::AssertionSuccess();
    }
    return WithTrace(run, "no record fits: " + pattern);
}

::testing::AssertionResult Lacks(const RunResult &run, const std::string &pattern)
{
    // A run without a trace lacks everything; that is never what a test means.
    if (run.mTrace.empty()) {
        return WithTrace(run, "the run left no trace");
    }
    if (CountRecords(run, pattern) == 0) {
        return ::testing::AssertionSuccess();
    }
    return WithTrace(run, "unwanted record: " + pattern);
}

::testing::AssertionResult HasInOrder(const RunResult &run, const std::vector<std::string> &patterns)
{
    size_t at = 0;
    for (const std::string &pattern : patterns) {
        while (at < run.mTrace.size() && !Fits(pattern, run.mTrace[at].mMessage)) {
            ++at;
        }
        if (at == run.mTrace.size()) {
            return WithTrace(run,
                             (CountRecords(run, pattern) == 0 ? "no record fits: " : "no record fits in this order: ") +
                                 pattern);
        }
        ++at;
    }
    return ::testing::AssertionSuccess();
}

std::vector<std::string> MessagesBetween(const RunResult &run, const std::string &from, const std::string &to)
{
    std::vector<std::string> messages;
    std::string thread;
    for (const TraceRecord &record : run.mTrace) {
        if (thread.empty()) {
            thread = Fits(from, record.mMessage) ? record.mThread : "";
        } else if (Fits(to, record.mMessage)) {
            break;
        } else if (record.mThread == thread) {
            messages.push_back(record.mMessage);
        }
    }
    return messages;
}

std::vector<std::string> Logged(const RunResult &run)
{
    const std::vector<std::string> messages = MessagesBetween(run, "Executing steps*", "[Response Result]");
    std::vector<std::string> words;
    for (size_t at = 1; at < messages.size(); ++at) {
        if (messages[at - 1] == "Instruction Log") {
            words.push_back(messages[at]);
        }
    }
    return words;
}
