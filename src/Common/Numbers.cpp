#include "Common/Numbers.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

int32_t DecimalNumber(const std::string &text)
{
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    return static_cast<int32_t>(
        std::clamp<long long>(number, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}
