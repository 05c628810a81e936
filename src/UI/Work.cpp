#include "UI/Work.h"

#include "Common/ComApartment.h"
#include "Common/Trace.h"
#include "Script/CRunState.h"
#include "UI/WindowCalls.h"

namespace {

// No box for a critical error, none for a file that cannot be opened: nobody may be there to answer it.
constexpr UINT kWorkErrorMode = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;

class CErrorModeScope {
public:
    explicit CErrorModeScope(UINT mode) : mFormer(SetErrorMode(mode)) {}
    ~CErrorModeScope() { SetErrorMode(mFormer); }
    CErrorModeScope(const CErrorModeScope &) = delete;
    CErrorModeScope &operator=(const CErrorModeScope &) = delete;

private:
    UINT mFormer;
};

} // namespace

DWORD DoWork(CRunState &run)
{
    trace(6, "DoWork\n");
    const CErrorModeScope errorMode(kWorkErrorMode); // restored last
    const CComApartmentScope apartment;
    const CWaitCursor cursor;
    run.RunSteps(run.mCommand);
    return 0;
}
