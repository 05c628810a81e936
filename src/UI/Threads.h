// Bodies of the two threads of a run, and the messages by which the worker drives the window.
#pragma once

#include <windows.h>

constexpr UINT WM_TVX_CLEARCONTROLS = WM_USER + 1; // destroy all page controls
constexpr UINT WM_TVX_PROGRESSPAGE = WM_USER + 2;  // build the progress page
constexpr UINT WM_TVX_DONEDIALOG = WM_USER + 3;    // the work is over, show the closing page

// Runs the group of the run between a cleared window and the closing page; every message is answered before the next.
DWORD WINAPI DoWorkByThread(LPVOID);

// Moves the bar by one step every half second while it stands below its target; ends when it is full or the run over.
DWORD WINAPI DoProgressByThread(LPVOID);
