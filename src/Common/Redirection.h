// The file-system redirection of 64-bit Windows, which shows a 32-bit process another System32 than it
// names. It is a property of the thread: what is switched off has to be switched on again on that thread.
#pragma once

#include <windows.h>

// Switches the redirection of this thread on or off. Answers whether it worked: FALSE on 32-bit Windows.
BOOL EnableWow64Redirection(bool enable);

// Switches the redirection off for the length of a scope when `disable` says so; a scope that asks for
// nothing changes nothing. Scopes do not count: the end of an inner one switches the redirection on.
class STDisableRedirect {
public:
    explicit STDisableRedirect(bool disable);
    ~STDisableRedirect();
    STDisableRedirect(const STDisableRedirect &) = delete;
    STDisableRedirect &operator=(const STDisableRedirect &) = delete;

    // Whether the redirection was switched off here.
    bool Disabled() const { return mDisabled; }

    // What traces of file steps say of it: ", 64 Yes", ", 64 No", or nothing where it was left alone.
    const char *TraceText() const { return !mAsked ? "" : mDisabled ? ", 64 Yes" : ", 64 No"; }

private:
    bool mAsked;
    bool mDisabled = false;
};
