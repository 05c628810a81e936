// What a folder holds, with the names as the ANSI code page has them.
#pragma once

#include <windows.h>

#include <string>

#include "Common/Handles.h"

struct ListedEntry {
    std::string mName;  // as far as the code page can hold it
    std::string mShort; // of eight and three characters; empty where there is none
    bool mLost = false; // the code page lacks characters of the name, and mName does not lead to the entry
    DWORD mAttributes = 0;
    DWORD mReparseTag = 0; // when the attributes say that it is one

    // A name that leads to the entry; empty where there is none.
    const std::string &UsableName() const { return mLost ? mShort : mName; }
    bool IsFolder() const { return (mAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

// Walks the entries of a folder, the two for itself and its parent left out:
//
//     for (CFolderListing listing(path); listing.Next();) { ... listing.Entry() ... }
class CFolderListing {
public:
    explicit CFolderListing(const std::string &folder);

    // Whether there is anything to list; the last error tells why not.
    bool IsOpen() const { return static_cast<bool>(mSearch); }

    // Goes to the first entry, then to the next. Answers false with the last error behind the last one
    // (ERROR_NO_MORE_FILES) and on failure.
    bool Next();

    const ListedEntry &Entry() const { return mEntry; }

private:
    WIN32_FIND_DATAW mFound;
    CFindHandle mSearch;
    bool mBegun = false;
    ListedEntry mEntry;
};
