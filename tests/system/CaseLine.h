// One line of a page that sets the machine up or asks it, taken apart.
#pragma once

#include <string>

#include "Registry.h"

// What stands behind the word of a line. A path can begin with "64:", a key with the view "32 " or "64 ".
enum ECaseForm {
    ENothing,
    EText,
    EPath,
    EPathIsText,  // PATH = TEXT
    EPathToPath,  // PATH -> PATH
    ENameIsData,  // NAME = TYPE DATA
    EKey,         // VIEW ROOT\PATH
    EValue,       // VIEW ROOT\PATH;NAME
    EValueIsData, // VIEW ROOT\PATH;NAME = TYPE DATA
};

struct CaseLine {
    std::string mLeft;  // in front of the sign, or all of it
    std::string mRight; // behind it, as it stands

    HKEY mRoot = nullptr;
    std::string mKey;
    std::string mName;
    EView mView = EProcessView;
    RegData mData = {REG_NONE, ""};
};

// Takes apart what stands behind the word: one for each of the paths or keys that it names, with ", " between them.
// Throws std::invalid_argument with the reason when it has another form, an unknown root or an unknown type.
std::vector<CaseLine> ParseCaseLines(ECaseForm form, const std::string &text);

// The text with \n, \r, \t, \0 and \xHH as they are in C; a back-slash in front of anything else goes.
std::string Unescaped(const std::string &text);
