#include <algorithm>
#include <string>
#include <utility>
#include <vector>

std::vector<std::pair<std::string, std::string>> TableRows(const std::string &name)
{
    static const std::string page =
#include "TablesText.h"
        ;
    std::vector<std::pair<std::string, std::string>> rows;
    const size_t fence = page.find("\n```" + name + "\n");
    if (fence == std::string::npos) {
        return rows;
    }
    const size_t tableEnd = page.find("\n```", fence + 1) + 1;
    for (size_t at = fence + name.size() + 5; at < tableEnd;) {
        const size_t end = page.find('\n', at);
        const size_t bar = std::min(page.find(" | ", at), end);
        const std::string row = page.substr(at, bar - at);
        const size_t sign = std::min((row + " ").find(" = "), row.size());
        rows.emplace_back(row.substr(0, sign), row.substr(std::min(sign + 3, row.size())));
        at = bar < end ? bar + 3 : end + 1;
    }
    return rows;
}

std::string Exchanged(std::string text, char from, char to)
{
    std::replace(text.begin(), text.end(), from, to);
    return text;
}
