#include "Common/TraceSettings.h"

namespace {

int gDiagnosticLevel = kDefaultDiagnosticLevel;
bool gTraceToDebugOut = true;
bool gAssertsToDebugOut = true;

} // namespace

int DiagnosticLevel()
{
    return gDiagnosticLevel;
}

void SetDiagnosticLevel(int level)
{
    gDiagnosticLevel = level;
}

bool TracesToDebugOut()
{
    return gTraceToDebugOut;
}

void SetTracesToDebugOut(bool on)
{
    gTraceToDebugOut = on;
}

bool AssertsToDebugOut()
{
    return gAssertsToDebugOut;
}

void SetAssertsToDebugOut(bool on)
{
    gAssertsToDebugOut = on;
}
