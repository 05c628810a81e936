// What the checks have found.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Pack/Checks.h"

// A place in a script file of the package.
struct ScriptPlace {
    uint32_t mFile = 0;   // number of the file in the model
    uint32_t mLine = 0;   // from 1
    uint32_t mColumn = 1; // in bytes, from 1
    uint32_t mLength = 1; // of what is marked, in bytes

    bool operator<(const ScriptPlace &other) const;
    bool operator==(const ScriptPlace &other) const;
};

struct Diagnostic {
    ECheck mCheck;
    ScriptPlace mPlace;
    std::string mText;
    std::vector<ScriptPlace> mSeeAlso; // other lines that the text speaks of

    bool operator<(const Diagnostic &other) const;
};

class CDiagnostics {
public:
    void Add(ECheck check, const ScriptPlace &place, std::string text, std::vector<ScriptPlace> seeAlso = {});

    // What was found, by place; each once, however many ways led there.
    const std::set<Diagnostic> &All() const { return mAll; }

    // Takes one away.
    void Remove(const Diagnostic &diagnostic) { mAll.erase(diagnostic); }

private:
    std::set<Diagnostic> mAll;
};
