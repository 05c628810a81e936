#include "Pack/HostServices.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>

#include <io.h>
#else
#include <unistd.h>
#endif

#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "Common/UserLanguage.h"
#include "Pack/CodePage.h"
#include "Shell/XmlCodePages.h"

std::function<void(int level, const std::string &message)> gTraceListener;

namespace {

int Record(int level, const char *format, va_list arguments)
{
    if (!gTraceListener) {
        return 0;
    }
    va_list again;
    va_copy(again, arguments);
    const int length = vsnprintf(nullptr, 0, format, arguments);
    if (length >= 0) {
        std::string message(static_cast<size_t>(length) + 1, '\0');
        vsnprintf(message.data(), message.size(), format, again);
        message.pop_back();
        if (!message.empty() && message.back() == '\n') {
            message.pop_back();
        }
        gTraceListener(level, message);
    }
    va_end(again);
    return length;
}

bool IsTerminal()
{
#ifdef _WIN32
    // Terminals of Windows before 10 do not know the marks of colours, and refuse this mode.
    constexpr DWORD kTakesMarks = 4;
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return _isatty(_fileno(stdout)) != 0 && GetConsoleMode(output, &mode) != 0 &&
           SetConsoleMode(output, mode | kTakesMarks) != 0;
#else
    return isatty(fileno(stdout)) != 0;
#endif
}

} // namespace

int trace(int level, const char *format, ...)
{
    if (level >= DiagnosticLevel()) {
        return 0;
    }
    va_list arguments;
    va_start(arguments, format);
    const int length = Record(level, format, arguments);
    va_end(arguments);
    return length;
}

int traceAlways(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = Record(0, format, arguments);
    va_end(arguments);
    return length;
}

void traceExpectation(const char *text)
{
    trace(0, "%s\n", text);
}

void reportAssertion(const char *expression, const char *file, int line)
{
    traceAlways("Assert:(%s) in %s at %i\n", expression, file, line);
}

std::string AnsiToUtf8(const std::string &text)
{
    return gCodePage.ToUtf8(text);
}

std::string Utf8ToAnsi(const std::string &text)
{
    return gCodePage.FromUtf8(text);
}

// The host's library of XML knows the code pages by itself, and the tool merges no documents on Windows.
void RegisterXmlCodePages() {}

// The language of a run is that of the machine it is for, never that of the machine that the tool runs on.
uint16_t GetUserUILanguageId()
{
    return 0;
}

uint32_t GetUserLocaleId()
{
    return 0;
}

bool PrepareConsole(const std::string &colour)
{
    const bool terminal = IsTerminal();
#ifdef _WIN32
    static UINT former = 0;
    if (_isatty(_fileno(stdout)) != 0) {
        former = GetConsoleOutputCP();
        SetConsoleOutputCP(CP_UTF8);
        std::atexit([] { SetConsoleOutputCP(former); }); // the console goes on living
    }
#endif
    return colour == "always" || (colour == "auto" && terminal && std::getenv("NO_COLOR") == nullptr);
}
