#include "Files/FolderListing.h"

#include "Common/Paths.h"
#include "Common/TextConversions.h"

CFolderListing::CFolderListing(const std::string &folder)
    : mSearch(FindFirstFileW(AnsiToWide(JoinPath(folder, "\\*.*")).c_str(), &mFound))
{
}

bool CFolderListing::Next()
{
    if (!mSearch) {
        return false;
    }
    do {
        if (mBegun && !FindNextFileW(mSearch.Get(), &mFound)) {
            return false;
        }
        mBegun = true;
        mEntry.mName = WideToAnsi(mFound.cFileName);
    } while (mEntry.mName == "." || mEntry.mName == "..");
    mEntry.mShort = WideToAnsi(mFound.cAlternateFileName);
    mEntry.mLost = !FitsAnsi(mFound.cFileName);
    mEntry.mAttributes = mFound.dwFileAttributes;
    mEntry.mReparseTag = mFound.dwReserved0;
    return true;
}
