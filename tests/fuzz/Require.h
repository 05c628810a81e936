// What the fuzzers share.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

// Ends the fuzzer, which keeps the input, when something does not hold.
inline void Require(bool holds)
{
    if (!holds) {
        abort();
    }
}

inline std::string TextOf(const uint8_t *data, size_t size)
{
    return std::string(reinterpret_cast<const char *>(data), size);
}
