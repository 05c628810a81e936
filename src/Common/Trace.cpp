#include "Common/Trace.h"

#include <windows.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Common/DebugOutput.h"
#include "Common/Handles.h"
#include "Common/TraceFile.h"
#include "Common/TvxSemaphore.h"

namespace {

// A record begins "HH:MM:SS.mmm -- ppppp/ttttt -- "; process and thread ids have ten digits at most.
constexpr size_t kPrefixRoom = 64;
// Most messages fit here and need no allocation.
constexpr size_t kShortMessage = 1024;

struct CTraceSink {
    std::string mPath;
    DWORD mDisposition = OPEN_ALWAYS;
    CHandle mFile;
};

// A manual-reset event that is signalled when it is made and never reset: the place where an exclusion of records would
// go. Neither waiting on it nor signalling it would do anything, and each costs more than a record, so trace() does
// neither.
CHandle gTraceGate;

CTraceSink &Sink()
{
    static CTraceSink &sink = *new CTraceSink; // outlives the process's end, like the lock
    return sink;
}

// Made before the entry of the program runs and never destroyed: nobody waits for the threads of a run, and one may
// trace while the process ends.
std::shared_ptr<CTvxSemaphore> MakeTraceLock()
{
    auto ntSemaphore = std::make_shared<CWinNTTvxSemaphore>();
    TVX_ASSERT(ntSemaphore);
    return ntSemaphore;
}
const std::shared_ptr<CTvxSemaphore> *const gTraceLock = new std::shared_ptr<CTvxSemaphore>(MakeTraceLock());

bool OpenSinkFile(CTraceSink &sink)
{
    if (!sink.mFile) {
        // FILE_APPEND_DATA alone makes every write go to the end of the file, whoever else appends to it.
        // Others may read and write it, and nobody deletes it under the run.
        sink.mFile.Reset(CreateFileA(sink.mPath.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                     sink.mDisposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    }
    return static_cast<bool>(sink.mFile);
}

// Appends a number in decimal, filled with zeros to `width` digits at least, and the text behind it. By hand: printf
// would take as long for the prefix as the platform takes for the write.
char *PutNumber(char *to, DWORD number, int width, const char *behind)
{
    char digits[10];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + number % 10);
        number /= 10;
    } while (number != 0);
    while (width-- > count) {
        *to++ = '0';
    }
    while (count > 0) {
        *to++ = digits[--count];
    }
    while (*behind != '\0') {
        *to++ = *behind++;
    }
    return to;
}

// Hours to seconds of the local time, as the records of one second have them in common. Asking the platform for the
// local time costs a fifth of the write; the system's own time is nearly free. Used under the lock.
class CClockText {
public:
    // Appends "HH:MM:SS.mmm -- ", the time of now.
    char *Put(char *to)
    {
        FILETIME now;
        GetSystemTimeAsFileTime(&now);
        ULARGE_INTEGER time;
        time.LowPart = now.dwLowDateTime;
        time.HighPart = now.dwHighDateTime;
        const ULONGLONG second = time.QuadPart / kTicksOfSecond;
        if (second != mSecond) {
            mSecond = second;
            Format(now);
        }
        to = std::copy(mText, mText + sizeof mText, to);
        // Zones of time differ by whole minutes, so these are the milliseconds of the local time, too.
        return PutNumber(to, static_cast<DWORD>(time.QuadPart % kTicksOfSecond) / kTicksOfMillisecond, 3, " -- ");
    }

private:
    static constexpr DWORD kTicksOfSecond = 10000000; // FILETIME counts in 100 ns
    static constexpr DWORD kTicksOfMillisecond = 10000;

    void Format(const FILETIME &now)
    {
        FILETIME local = now;
        SYSTEMTIME fields = {};
        FileTimeToLocalFileTime(&now, &local);
        FileTimeToSystemTime(&local, &fields);
        PutNumber(PutNumber(PutNumber(mText, fields.wHour, 2, ":"), fields.wMinute, 2, ":"), fields.wSecond, 2, ".");
    }

    ULONGLONG mSecond = 0;
    char mText[9] = {}; // "HH:MM:SS."
};

CClockText gClockText;

size_t FormatPrefix(char *prefix)
{
    char *to = gClockText.Put(prefix);
    to = PutNumber(to, GetCurrentProcessId(), 5, "/");
    to = PutNumber(to, GetCurrentThreadId(), 5, " -- ");
    return static_cast<size_t>(to - prefix);
}

// Writes one record with one call: prefix and message, line ends as a text file of the platform has them.
void WriteRecord(HANDLE file, const char *message, size_t length)
{
    char shortRecord[kPrefixRoom + 2 * kShortMessage];
    std::unique_ptr<char[]> longRecord;
    char *record = shortRecord;
    if (length > kShortMessage) {
        longRecord.reset(new char[kPrefixRoom + 2 * length]);
        record = longRecord.get();
    }
    size_t size = FormatPrefix(record);
    const char *const end = message + length;
    for (const char *from = message; from < end;) {
        // Line by line: nearly every record is one.
        const char *const found = static_cast<const char *>(std::memchr(from, '\n', static_cast<size_t>(end - from)));
        const char *const stop = found != nullptr ? found : end;
        std::memcpy(record + size, from, static_cast<size_t>(stop - from));
        size += static_cast<size_t>(stop - from);
        if (found != nullptr) {
            record[size++] = '\r';
            record[size++] = '\n';
        }
        from = found != nullptr ? found + 1 : end;
    }
    DWORD written = 0;
    WriteFile(file, record, static_cast<DWORD>(size), &written, nullptr);
}

// Tracing has to leave the last error alone: result lines report the error of the work around them.
int TraceMessage(const char *message, size_t length)
{
    const DWORD error = GetLastError();
    DebugOutput(message);
    {
        CTvxLock lock(*gTraceLock);
        CTraceSink &sink = Sink();
        if (!sink.mPath.empty() && OpenSinkFile(sink)) {
            WriteRecord(sink.mFile.Get(), message, length);
        }
    }
    SetLastError(error);
    return static_cast<int>(length);
}

int TraceFormatted(const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    char shortMessage[kShortMessage];
    const int length = vsnprintf(shortMessage, sizeof shortMessage, format, arguments);
    int result = -1;
    if (length >= 0 && static_cast<size_t>(length) < sizeof shortMessage) {
        result = TraceMessage(shortMessage, static_cast<size_t>(length));
    } else if (length >= 0) {
        const std::unique_ptr<char[]> message(new char[static_cast<size_t>(length) + 1]);
        vsnprintf(message.get(), static_cast<size_t>(length) + 1, format, again);
        result = TraceMessage(message.get(), static_cast<size_t>(length));
    }
    va_end(again);
    return result;
}

} // namespace

void OpenTraceGate()
{
    gTraceGate.Reset(CreateEventA(nullptr, TRUE, TRUE, nullptr));
}

void CloseTraceGate()
{
    gTraceGate.Reset();
}

bool OpenTraceSink(const std::string &path, bool anew)
{
    CTvxLock lock(*gTraceLock);
    CTraceSink &sink = Sink();
    sink.mFile.Reset();
    sink.mPath = path;
    sink.mDisposition = anew ? CREATE_NEW : OPEN_ALWAYS;
    return !path.empty() && OpenSinkFile(sink);
}

void CloseTraceSink()
{
    CTvxLock lock(*gTraceLock);
    Sink().mFile.Reset();
    Sink().mPath.clear();
}

std::string TraceSinkPath()
{
    CTvxLock lock(*gTraceLock);
    return Sink().mPath;
}

int trace(int level, const char *format, ...)
{
    if (level >= DiagnosticLevel()) {
        return 0;
    }
    va_list arguments;
    va_start(arguments, format);
    const int result = TraceFormatted(format, arguments);
    va_end(arguments);
    return result;
}

int traceAlways(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int result = TraceFormatted(format, arguments);
    va_end(arguments);
    return result;
}

void traceExpectation(const char *text)
{
    trace(0, "%s\n", text);
}

void reportAssertion(const char *expression, const char *file, int line)
{
    traceAlways("Assert:(%s) in %s at %i\n", expression, file, line);
}
