// Stands in for the trace in unit tests and fuzzers: keeps the records for the test to look at.
#pragma once

#include <string>
#include <vector>

// The messages traced since the last call, one a call of the trace, without the newline at the end; forgets them.
// Past a few thousand records further ones are dropped, so that a fuzzer can run for long.
std::vector<std::string> TakeTraceRecords();

// The same when they are assertions: what they assert, with " & " between them. Of another record the whole text.
std::string TakeAssertions();

// An outcome, with these behind it when there are any.
std::string WithAssertions(const std::string &outcome);
