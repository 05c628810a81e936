#include "Common/Redirection.h"

#include "Common/importWin32API.h"
#include "Common/Trace.h"
#include "Common/winplats.h"

namespace {

// Wow64EnableWow64FsRedirection of kernel32 (64-bit Windows XP, Server 2003 SP1), or a stand-in that always
// answers FALSE. Null until the first use.
BOOLEAN(WINAPI *gWow64EnableRedirection)(BOOLEAN enable) = nullptr;

BOOLEAN WINAPI Wow64EnableWow64FsRedirectionStub(BOOLEAN)
{
    return FALSE;
}

// Finds the entry once. 32-bit XP has neither redirection nor entry and is not asked for it.
void BindRedirection()
{
    if (gWow64EnableRedirection != nullptr) {
        return;
    }
    if (!IsPlatformXP()) {
        trace(1, "STDisableRedirect: GetProcAddress of Wow64EnableWow64FsRedirection\n");
        gWow64EnableRedirection = Kernel32().Wow64EnableWow64FsRedirection.Get();
    }
    if (gWow64EnableRedirection == nullptr) {
        trace(1, "CWinInstallMain: using Wow64EnableWow64FsRedirectionStub\n");
        gWow64EnableRedirection = Wow64EnableWow64FsRedirectionStub;
    }
}

} // namespace

BOOL EnableWow64Redirection(bool enable)
{
    BindRedirection();
    return gWow64EnableRedirection(enable ? TRUE : FALSE) != FALSE;
}

STDisableRedirect::STDisableRedirect(bool disable) : mAsked(disable)
{
    BindRedirection();
    if (disable) {
        mDisabled = EnableWow64Redirection(false) != FALSE;
    }
}

STDisableRedirect::~STDisableRedirect()
{
    if (mDisabled) {
        EnableWow64Redirection(true);
    }
}
