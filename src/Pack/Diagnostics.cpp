#include "Pack/Diagnostics.h"

#include <tuple>
#include <utility>

bool ScriptPlace::operator<(const ScriptPlace &other) const
{
    return std::tie(mFile, mLine, mColumn, mLength) < std::tie(other.mFile, other.mLine, other.mColumn, other.mLength);
}

bool ScriptPlace::operator==(const ScriptPlace &other) const
{
    return !(*this < other) && !(other < *this);
}

bool Diagnostic::operator<(const Diagnostic &other) const
{
    return std::tie(mPlace, mCheck, mText) < std::tie(other.mPlace, other.mCheck, other.mText);
}

void CDiagnostics::Add(ECheck check, const ScriptPlace &place, std::string text, std::vector<ScriptPlace> seeAlso)
{
    mAll.insert({check, place, std::move(text), std::move(seeAlso)});
}
