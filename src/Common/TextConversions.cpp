#include "Common/TextConversions.h"

#include <windows.h>

#include <climits>

namespace {

// Flags stay 0: with UTF-8 Windows XP refuses nearly every one of them.
std::wstring ToWide(UINT codePage, const std::string &text)
{
    if (text.empty() || text.size() > INT_MAX) {
        return {};
    }
    const int size = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<size_t>(needed), L'\0');
    const int written = MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), needed);
    wide.resize(static_cast<size_t>(written));
    return wide;
}

std::string FromWide(UINT codePage, const std::wstring &text)
{
    if (text.empty() || text.size() > INT_MAX) {
        return {};
    }
    const int size = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(codePage, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(needed), '\0');
    const int written = WideCharToMultiByte(codePage, 0, text.data(), size, narrow.data(), needed, nullptr, nullptr);
    narrow.resize(static_cast<size_t>(written));
    return narrow;
}

} // namespace

std::wstring Utf8ToWide(const std::string &text)
{
    return ToWide(CP_UTF8, text);
}

std::wstring AnsiToWide(const std::string &text)
{
    return ToWide(CP_ACP, text);
}

std::string WideToUtf8(const std::wstring &text)
{
    return FromWide(CP_UTF8, text);
}

std::string WideToAnsi(const std::wstring &text)
{
    return FromWide(CP_ACP, text);
}

std::string AnsiToUtf8(const std::string &text)
{
    return WideToUtf8(AnsiToWide(text));
}

std::string Utf8ToAnsi(const std::string &text)
{
    return WideToAnsi(Utf8ToWide(text));
}

bool FitsAnsi(const std::wstring &text)
{
    return AnsiToWide(WideToAnsi(text)) == text;
}
