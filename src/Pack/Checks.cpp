#include "Pack/Checks.h"

#include <algorithm>
#include <numeric>

#include "Common/StringUtilities.h"

namespace {

#define TVX_CHECK(id, name, severity, summary) {name, severity, summary},
constexpr CheckInfo kChecks[] = {
#include "Pack/CheckRows.h"
};
#undef TVX_CHECK

// How many letters have to be put in, left out, changed or swapped with their neighbour; no more than `most` + 1.
size_t EditDistance(const std::string &a, const std::string &b, size_t most)
{
    if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > most) {
        return most + 1;
    }
    std::vector<size_t> last(b.size() + 1), row(b.size() + 1), next(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 1; i <= a.size(); ++i) {
        next[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1] != b[j - 1] ? 1U : 0U)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                next[j] = std::min(next[j], last[j - 2] + 1);
            }
        }
        last.swap(row);
        row.swap(next);
    }
    return row[b.size()];
}

// A bit for each letter that a word has, whatever its case.
uint32_t LettersOf(const std::string &word)
{
    uint32_t letters = 0;
    for (const char c : word) {
        letters |= uint32_t{1} << (static_cast<unsigned char>(c) & 0x1F);
    }
    return letters;
}

// Whether two words are too different for `most` changes, each of which brings in or takes away two letters at most.
bool AreFar(uint32_t left, uint32_t right, size_t most)
{
    size_t different = 0;
    for (uint32_t bits = left ^ right; bits != 0; bits &= bits - 1) {
        ++different;
    }
    return different > 2 * most;
}

} // namespace

const char *SeverityWord(ESeverity severity)
{
    return severity == EError ? "error" : "warning";
}

const CheckInfo &InfoOf(ECheck check)
{
    return kChecks[check];
}

ECheck FindCheck(const std::string &name)
{
    const auto *const found =
        std::find_if(std::begin(kChecks), std::end(kChecks), [&](const CheckInfo &info) { return name == info.mName; });
    return static_cast<ECheck>(found - std::begin(kChecks));
}

std::string NearestName(const std::string &word, const std::vector<std::string> &names)
{
    constexpr size_t kLongestWord = 60; // nothing of that length is a slip of the pen
    if (word.empty() || word.size() > kLongestWord) {
        return std::string();
    }
    const std::string upper = UpperAscii(word);
    const uint32_t letters = LettersOf(word);
    size_t most = std::min<size_t>(3, (word.size() + 2) / 4);
    std::string nearest;
    for (const std::string &name : names) {
        if (AreFar(letters, LettersOf(name), most)) {
            continue;
        }
        const size_t distance = EditDistance(upper, UpperAscii(name), most);
        if (distance <= most && (nearest.empty() || distance < most)) {
            nearest = name;
            most = distance;
        }
    }
    return nearest;
}

std::string NearestHint(const std::string &word, const std::vector<std::string> &names)
{
    const std::string nearest = NearestName(word, names);
    return nearest.empty() ? std::string() : "; did you mean \"" + nearest + "\"?";
}
