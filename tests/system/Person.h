// A person at the installer's window: another process, which finds the window by its class, reads what stands there,
// and uses the keyboard and the mouse of the machine.
#pragma once

#include <windows.h>

#include <string>

#include <gtest/gtest.h>

// The window when it shows, null otherwise; waits a moment for it with `patient`.
HWND InstallerWindowOnScreen(bool patient = false);

// What stands in the window: a line for the title with the size of the window, then one for each control in the order
// of the keyboard: id, text, place as x, y, width and height inside the window, "focus" for the one that has it. Texts
// in UTF-8, with "/" for a line end. Empty without a window.
//
//     Title 480x205
//     129 &Yes 6 130 170 30 focus
//     0 Question? 5 38 464 64
std::string Page();

// The control of the installer that has the focus.
HWND FocusOnScreen();

// The control with this id, or the progress bar for 0.
HWND ControlOnScreen(int id);

// Does one thing after another, parted by ";", and waits for what has to come first:
//
//     sees TEXT         until the page shows it; "|" parts several, a "!" in front means that it must not be there
//     press KEY KEY     keys, such as Return, Tab, Down, A, Alt+A
//     click ID          a button, with the mouse
//     wheel N           notches up, or down below zero
//     bar N             until the bar stands there or further
//     break             answers the box of the step Break
//     close             what closes a window from outside
//     gone              until there is no window
//
// Answers what did not come, with the page as it was.
::testing::AssertionResult Person(const std::string &moves);
