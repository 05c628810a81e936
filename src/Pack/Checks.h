// The checks by number, name and weight.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

enum ESeverity : uint8_t { EError, EWarning };

// "error" or "warning".
const char *SeverityWord(ESeverity severity);

#define TVX_CHECK(id, name, severity, summary) ECheck##id,
enum ECheck : uint8_t {
#include "Pack/CheckRows.h"
    ECheckCount
};
#undef TVX_CHECK

struct CheckInfo {
    const char *mName;
    ESeverity mSeverity;
    const char *mSummary;
};

const CheckInfo &InfoOf(ECheck check);

// The check of a name; ECheckCount when there is none.
ECheck FindCheck(const std::string &name);

// The one of `names` that a person may have meant by `word`: equal but for case, or a few letters away. Empty when none
// is near.
std::string NearestName(const std::string &word, const std::vector<std::string> &names);

// The same as a question behind a message: `; did you mean "Name"?`, empty when none is near.
std::string NearestHint(const std::string &word, const std::vector<std::string> &names);
