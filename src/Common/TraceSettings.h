// What the settings say about traces and assertions, for the whole process. The threads of a run read it; it is written
// before they begin.
#pragma once

// Threshold of trace(): a record passes when its level is strictly below.
constexpr int kDefaultDiagnosticLevel = 100;
int DiagnosticLevel();
void SetDiagnosticLevel(int level);

// The settings TraceToDebugOut and AssertsToDebugOut, both on until the settings are read.
bool TracesToDebugOut();
void SetTracesToDebugOut(bool on);
bool AssertsToDebugOut();
void SetAssertsToDebugOut(bool on);
