// Decimal numbers in script text.
#pragma once

#include <cstdint>
#include <string>

// The number at the start of the text as atoi reads it: blanks, a sign, digits; 0 for anything else. A number that
// does not fit is cut to the nearest limit of 32 bits, as the platform's runtime does.
int32_t DecimalNumber(const std::string &text);
