#include "Pack/NumberText.h"

#include <algorithm>

#include "Common/Numbers.h"

std::string FaultOfNumber(const std::string &text)
{
    const size_t sign = !text.empty() && (text.front() == '-' || text.front() == '+') ? 1 : 0;
    const bool digits = text.size() > sign && std::all_of(text.begin() + static_cast<std::ptrdiff_t>(sign), text.end(),
                                                          [](char c) { return c >= '0' && c <= '9'; });
    const std::string read = std::to_string(DecimalNumber(text));
    if (!digits) {
        const bool hex = text.compare(sign, 2, "0x") == 0 || text.compare(sign, 2, "0X") == 0;
        return "\"" + text + "\" is read as " + read + (hex ? ": numbers are decimal" : ": it is no number");
    }
    std::string plain = text.substr(sign);
    plain.erase(0, std::min(plain.find_first_not_of('0'), plain.size() - 1));
    const std::string written = (text.front() == '-' && plain != "0" ? "-" : "") + plain;
    return written == read ? std::string() : text + " does not fit and is read as " + read;
}
