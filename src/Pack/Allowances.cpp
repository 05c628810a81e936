#include "Pack/Allowances.h"

#include <algorithm>
#include <map>

#include "Common/StringUtilities.h"

namespace {

constexpr std::string_view kAllow = "check: allow ";

struct Allowance {
    ECheck mCheck;
    ScriptPlace mPlace; // of the name
    bool mUsed = false;
};

using Allowances = std::multimap<std::pair<uint32_t, uint32_t>, Allowance>; // by file and line that they speak of

std::vector<std::string> CheckNames()
{
    std::vector<std::string> names;
    names.reserve(ECheckCount);
    for (int check = 0; check < ECheckCount; ++check) {
        names.emplace_back(InfoOf(static_cast<ECheck>(check)).mName);
    }
    return names;
}

size_t Blanks(std::string_view text, size_t from)
{
    const size_t at = text.find_first_not_of(" \t", from);
    return at == std::string_view::npos ? text.size() : at;
}

bool IsCommentLine(std::string_view text)
{
    const size_t first = Blanks(text, 0);
    return first < text.size() && (text[first] == ';' || text[first] == '#');
}

// Where the names of a comment begin; npos for a line without one.
size_t FindNames(std::string_view text)
{
    for (size_t at = text.find_first_of(";#"); at != std::string_view::npos; at = text.find_first_of(";#", at + 1)) {
        const size_t words = Blanks(text, at + 1);
        if (text.substr(words, kAllow.size()) == kAllow) {
            return words + kAllow.size();
        }
    }
    return std::string_view::npos;
}

void TakeLine(std::string_view text, uint32_t file, uint32_t line, uint32_t meant, Allowances &allowances_I_O,
              CDiagnostics &found_I_O)
{
    for (size_t at = FindNames(text); at < text.size();) {
        const size_t end = std::min(text.find_first_of(", \t", at), text.size());
        const std::string name(text.substr(at, end - at));
        const ScriptPlace place{file, line, static_cast<uint32_t>(at + 1), static_cast<uint32_t>(name.size())};
        const ECheck check = FindCheck(name);
        if (check == ECheckCount) {
            found_I_O.Add(ECheckUnknownCheck, place, "no check \"" + name + "\"" + NearestHint(name, CheckNames()));
        } else {
            allowances_I_O.insert({{file, meant}, {check, place}});
        }
        const size_t next = Blanks(text, end);
        if (next >= text.size() || text[next] != ',') {
            return; // what follows is a reason
        }
        at = Blanks(text, next + 1);
    }
}

void TakeFile(const CProfileFile &file, uint32_t number, Allowances &allowances_I_O, CDiagnostics &found_I_O)
{
    for (uint32_t line = 1; line <= file.LineCount(); ++line) {
        const std::string_view text = file.LineText(line);
        if (text.find(kAllow) == std::string_view::npos) {
            continue;
        }
        uint32_t meant = line;
        while (meant < file.LineCount() && (IsCommentLine(file.LineText(meant)) ||
                                            Blanks(file.LineText(meant), 0) == file.LineText(meant).size())) {
            ++meant;
        }
        TakeLine(text, number, line, meant, allowances_I_O, found_I_O);
    }
}

} // namespace

void ApplyAllowances(const CPackageModel &model, CDiagnostics &found_I_O)
{
    Allowances allowances;
    for (uint32_t file = 0; file < model.Files().size(); ++file) {
        TakeFile(model.File(file), file, allowances, found_I_O);
    }
    const std::set<Diagnostic> all = allowances.empty() ? std::set<Diagnostic>() : found_I_O.All();
    for (const Diagnostic &diagnostic : all) {
        const auto [first, last] = allowances.equal_range({diagnostic.mPlace.mFile, diagnostic.mPlace.mLine});
        for (auto at = first; at != last; ++at) {
            if (at->second.mCheck == diagnostic.mCheck) {
                at->second.mUsed = true;
                found_I_O.Remove(diagnostic);
            }
        }
    }
    for (const auto &[line, allowance] : allowances) {
        if (!allowance.mUsed) {
            found_I_O.Add(ECheckUnusedAllow, allowance.mPlace,
                          std::string(InfoOf(allowance.mCheck).mName) + " finds nothing here that could be allowed");
        }
    }
}
