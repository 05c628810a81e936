// Stands in for the trace in unit tests and fuzzers: keeps the records for the test to look at.
#pragma once

#include <string>
#include <vector>

// The messages traced since the last call, one a call of the trace, without the newline at the end; forgets them.
// Past a few thousand records further ones are dropped, so that a fuzzer can run for long.
std::vector<std::string> TakeTraceRecords();
