#include "Common/HeldFiles.h"

#include "Common/Handles.h"

namespace {

constexpr DWORD kStepMs = 10;
constexpr DWORD kSpreadMs = 17; // runs that were started at once do not come back at once

DWORD StepMs(DWORD tries)
{
    return kStepMs + GetCurrentProcessId() / 4 * (tries + 1) % kSpreadMs; // process ids are multiples of four
}

} // namespace

bool FailedAsHeld()
{
    const DWORD error = GetLastError();
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

bool TryWhileHeld(const std::function<bool()> &work, DWORD patienceMs, DWORD *waited_O)
{
    const DWORD begin = GetTickCount();
    for (DWORD tries = 0;; ++tries) {
        const bool done = work();
        const DWORD error = GetLastError();
        const DWORD waited = tries == 0 ? 0 : GetTickCount() - begin;
        if (done || !FailedAsHeld() || waited >= patienceMs) {
            if (waited_O != nullptr) {
                *waited_O = waited;
            }
            SetLastError(error);
            return done;
        }
        Sleep(StepMs(tries));
    }
}

bool IsHeld(const std::string &path)
{
    const DWORD error = GetLastError();
    const CHandle file(CreateFileA(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const bool held = !file && FailedAsHeld();
    SetLastError(error);
    return held;
}
