// Status of the last read or write of the script and registry layer.
#pragma once

#include <cstdint>

constexpr uint16_t TVXSTATUS_SUCCESS = 0;
constexpr uint16_t TVXSTATUS_FAILURE = 0x600;          // any failure without a code of its own
constexpr uint16_t TVXSTATUS_BUFFER_TOO_SMALL = 0x602; // more data than the value buffer holds
constexpr uint16_t TVXSTATUS_NOT_SUPPORTED = 0x603;    // a write aimed at a section of the script
constexpr uint16_t TVXSTATUS_KEY_NOT_FOUND = 0x606;    // missing key, empty location stack, location without a path
constexpr uint16_t TVXSTATUS_VALUE_NOT_FOUND = 0x60C;  // missing value, end of an enumeration

// The status is one word for the process, not one per thread: it tells about the last call only.
uint16_t GetLastStatus();
void SetLastStatus(uint16_t status);
