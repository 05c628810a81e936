// Text between UTF-8, the ANSI code page and the wide text of Windows. Every length and any bytes are taken, NULs
// included; what the platform cannot convert comes out as its replacement character. Empty in, or a text longer than
// the platform takes: empty out.
#pragma once

#include <string>

std::wstring Utf8ToWide(const std::string &text);
std::wstring AnsiToWide(const std::string &text);
std::string WideToUtf8(const std::wstring &text);
std::string WideToAnsi(const std::wstring &text);
std::string AnsiToUtf8(const std::string &text);
std::string Utf8ToAnsi(const std::string &text);

// Whether the ANSI code page holds the text as it is, so that it comes back the same.
bool FitsAnsi(const std::wstring &text);
