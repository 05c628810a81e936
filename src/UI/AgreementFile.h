// The file that holds the text of the agreement.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// The whole file with a NUL behind it, as it is: plain text or rich text. Empty when there is no such file, when it
// cannot be opened alone, or when it holds nothing. What goes wrong with one that is open is traced; what was read is
// the answer all the same.
std::vector<char> ReadAgreement(const std::string &path);

// Makes the text, up to its NUL, that of a rich edit control, which tells rich text from plain by itself.
void ShowAgreement(HWND control, const std::vector<char> &text);
