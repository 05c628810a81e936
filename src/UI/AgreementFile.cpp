#include "UI/AgreementFile.h"

#include <richedit.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/Trace.h"
#include "UI/WindowCalls.h"

namespace {

// Zeros for `size` bytes and a NUL; empty when memory does not hold them.
std::vector<char> BufferOf(DWORD size)
{
    try {
        return std::vector<char>(size_t{size} + 1);
    } catch (const std::bad_alloc &) {
    } catch (const std::length_error &) {
    }
    return {};
}

// Plain text beyond this size goes into the control piece by piece: as a whole it would hold up the page for minutes on
// systems whose control was not made for so much (Wine's takes five megabytes in seconds this way).
constexpr size_t kLargeText = 500'000;

struct RestOfText {
    const char *mBegin;
    const char *mEnd;
};

DWORD CALLBACK NextPiece(DWORD_PTR cookie, LPBYTE piece_O, LONG room, LONG *length_O)
{
    RestOfText &rest = *reinterpret_cast<RestOfText *>(cookie);
    *length_O = static_cast<LONG>(std::min<ptrdiff_t>(room, rest.mEnd - rest.mBegin));
    std::copy_n(rest.mBegin, *length_O, piece_O);
    rest.mBegin += *length_O;
    return 0;
}

} // namespace

std::vector<char> ReadAgreement(const std::string &path)
{
    const CHandle file(
        CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return {};
    }
    const DWORD fileSize = GetFileSize(file.Get(), nullptr);
    trace(1, "fileSize = %i\n", static_cast<int>(fileSize));
    if (fileSize == 0) {
        traceExpectation("fileSize > 0");
        return {};
    }
    std::vector<char> buffer = fileSize != INVALID_FILE_SIZE ? BufferOf(fileSize) : std::vector<char>();
    DWORD read = 0;
    if (buffer.empty() || !ReadFile(file.Get(), buffer.data(), fileSize, &read, nullptr)) {
        traceExpectation("!\"CreateLicense failed to read EULA file.\"");
        trace(1, "CreateLicense failed to read EULA file.\n");
    } else if (read < fileSize) {
        traceExpectation("!\"CreateLicense did not read enough bytes from EULA file.\"");
        trace(1, "CreateLicense did not read enough bytes from EULA file.\n");
    }
    return buffer;
}

void ShowAgreement(HWND control, const std::vector<char> &text)
{
    RestOfText rest = {text.data(), text.data() + std::strlen(text.data())};
    const bool rich = std::strncmp(rest.mBegin, "{\\rtf", 5) == 0;
    if (rich || rest.mEnd - rest.mBegin <= static_cast<ptrdiff_t>(kLargeText)) {
        User32().SetWindowTextA(control, text.data());
        return;
    }
    SendToWindow(control, EM_EXLIMITTEXT, 0, rest.mEnd - rest.mBegin);
    EDITSTREAM stream = {};
    stream.dwCookie = reinterpret_cast<DWORD_PTR>(&rest);
    stream.pfnCallback = NextPiece;
    SendToWindow(control, EM_STREAMIN, SF_TEXT, reinterpret_cast<LPARAM>(&stream));
}
