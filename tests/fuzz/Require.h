// What the fuzzers share: each of them is a function of a text.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "TraceRecorder.h"

// Ends the fuzzer, which keeps the input, when something does not hold.
inline void Require(bool holds)
{
    if (!holds) {
        abort();
    }
}

void CheckInput(const std::string &text);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    CheckInput(std::string(reinterpret_cast<const char *>(data), size));
    TakeTraceRecords();
    return 0;
}
