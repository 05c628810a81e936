#include "Files/WholeCopy.h"

#include <windows.h>

#include "Common/HeldFiles.h"
#include "Common/Paths.h"
#include "Common/StringUtilities.h"
#include "Files/FileDelete.h"

namespace {

// In every folder the same, of eight and three letters, so that it is no longer than it has to be.
constexpr char kName[] = "~TvxCopy.tmp";

bool CopyNew(const std::string &source, const std::string &target)
{
    return CopyFileA(source.c_str(), target.c_str(), TRUE) != FALSE;
}

// Takes away what a copy that failed has left, and keeps its error.
void DropPiece(const std::string &path)
{
    const DWORD error = GetLastError();
    DeleteOrFail(path);
    SetLastError(error);
}

// A name that ends in a separator is none; a rename would take it for the name without.
bool EndsInSeparator(const std::string &path)
{
    const std::string text = path.substr(0, path.find('\0')); // a NUL may end it early
    return !text.empty() && (text.back() == '/' || text.back() == '\\');
}

} // namespace

CWholeCopy::CWholeCopy(const std::string &source, const std::string &target) : mSource(source), mTarget(target) {}

bool CWholeCopy::Write(const std::string &name)
{
    Drop(); // it takes room
    mTried = true;
    const bool taken = PathExists(name); // a device is there and takes a copy; what fails on a file is not ours
    const bool copied = CopyNew(mSource, name);
    if (!copied && !taken) {
        DropPiece(name);
    }
    return copied;
}

bool CWholeCopy::Make()
{
    if (mTried) {
        return !mBeside.empty();
    }
    mTried = true;
    const std::string target = FullPath(mTarget);
    const std::vector<size_t> separators = FindBackslashes(target);
    if (mTarget.empty() || separators.empty()) {
        return false;
    }
    const std::string beside = target.substr(0, separators.back() + 1) + kName;
    if (EqualsNoCase(beside, target)) {
        return false;
    }
    bool made = CopyNew(mSource, beside);
    if (!made && GetLastError() == ERROR_FILE_EXISTS) {
        // What a run left that was stopped, or a link that somebody laid: it goes, nothing is written through it.
        made = DeleteOrFail(beside) && CopyNew(mSource, beside);
    }
    if (!made) {
        if (GetLastError() != ERROR_FILE_EXISTS) {
            DropPiece(beside);
        }
        return false;
    }
    mBeside = beside;
    return true;
}

bool CWholeCopy::Rename(const std::string &name, bool replace)
{
    if (EndsInSeparator(name)) {
        SetLastError(ERROR_INVALID_NAME);
        return false;
    }
    // Somebody who looks at new files, such as a virus scanner, has the copy open for a moment.
    const DWORD flags = replace ? MOVEFILE_REPLACE_EXISTING : 0;
    const bool renamed = TryWhileHeld([&] { return MoveFileExA(mBeside.c_str(), name.c_str(), flags) != FALSE; });
    if (renamed) {
        mBeside.clear();
    }
    return renamed;
}

void CWholeCopy::Drop()
{
    if (!mBeside.empty()) {
        DropPiece(mBeside);
        mBeside.clear();
    }
}
