// What the records of steps tell: the words are those that the commands trace.
#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "Common/Status.h"
#include "Pack/ErrorTexts.h"
#include "Pack/TraceRun.h"

namespace {

bool StartsWith(const std::string &text, const char *front)
{
    return text.rfind(front, 0) == 0;
}

bool Contains(const std::string &text, const char *part)
{
    return text.find(part) != std::string::npos;
}

bool TakeBack(std::string_view &text_I, std::string_view back)
{
    const bool found = text_I.size() >= back.size() && text_I.substr(text_I.size() - back.size()) == back;
    text_I.remove_suffix(found ? back.size() : 0);
    return found;
}

// Takes a decimal number off the end of a text.
bool TakeNumber(std::string_view &text_I, uint32_t &number_O)
{
    size_t from = text_I.size();
    while (from > 0 && text_I.size() - from < 11 && text_I[from - 1] >= '0' && text_I[from - 1] <= '9') {
        --from;
    }
    if (from == text_I.size()) {
        return false;
    }
    from -= from > 0 && text_I[from - 1] == '-' ? 1 : 0;
    number_O = static_cast<uint32_t>(std::strtoll(std::string(text_I.substr(from)).c_str(), nullptr, 10));
    text_I.remove_suffix(text_I.size() - from);
    return true;
}

// The end of a result: Yes or No, and the last error from before the action. "Created No 2", "Removed No 64 3",
// "Copied No => 0", "(No,3)", "Set No 0".
constexpr std::string_view kResultWords[] = {"Copied",    "Copyed",  "Created", "Deleted", "DirCopied", "Emptied",
                                             "Installed", "Move",    "Ran",     "Reboot",  "Removed",   "Set",
                                             "Started",   "Stopped", "changed", "removed"};

struct Result {
    bool mIsOne = false;
    bool mDone = false;
    uint32_t mErrorBefore = 0;
};

Result ResultOf(const std::string &message)
{
    Result result;
    std::string_view text = message;
    TakeBack(text, ", no resource");
    TakeBack(text, ")");
    if (!TakeNumber(text, result.mErrorBefore)) {
        return result;
    }
    TakeBack(text, " ");
    TakeBack(text, " =>");
    TakeBack(text, " 64");
    TakeBack(text, ",");
    result.mDone = TakeBack(text, "Yes");
    if (!result.mDone && !TakeBack(text, "No")) {
        return result;
    }
    if (TakeBack(text, "(") || TakeBack(text, ", ")) {
        result.mIsOne = true;
    } else if (TakeBack(text, " ")) {
        const std::string_view word = text.substr(text.find_last_of(" ,") + 1); // the whole text when there is neither
        result.mIsOne = std::find(std::begin(kResultWords), std::end(kResultWords), word) != std::end(kResultWords);
    }
    return result;
}

// The error of its own that a record ends in, not the one from before; 0 when there is none.
uint32_t ErrorOf(const std::string &message)
{
    std::string_view text = message;
    uint32_t error = 0;
    TakeBack(text, ")");
    if (!TakeNumber(text, error) || error == 0) {
        return 0;
    }
    constexpr const char *kFronts[] = {" failed ",         "\":",    " - error: ", "FAILED with status: ",
                                       "waiting for one ", "Error ", "; error ",   "reading registry key: "};
    for (const char *front : kFronts) {
        if (TakeBack(text, front)) {
            return error;
        }
    }
    const bool known =
        (StartsWith(message, "DevRemove: FAILED") && TakeBack(text, ": ")) ||
        (StartsWith(message, "Import Init: Could not load ") && TakeBack(text, " (")) ||
        (StartsWith(message, "Exception: ") && TakeBack(text, ":")) ||
        (StartsWith(message, "File ") && Contains(message, " is in use, taken for missing ") && TakeBack(text, ", ")) ||
        (StartsWith(message, ", SetupCopyOEMInf ") && TakeBack(text, ", No "));
    return known ? error : 0;
}

// The program's own status of a registry step at the end of a record; 0 when there is none.
uint32_t RegistryStatus(const std::string &message)
{
    size_t at = message.rfind("status: 0x");
    size_t length = 10;
    if (at == std::string::npos) {
        at = message.rfind("status 0x");
        length = 9;
    }
    if (at == std::string::npos || message.find_first_not_of("0123456789ABCDEF", at + length) != std::string::npos) {
        return 0;
    }
    return static_cast<uint32_t>(std::strtoul(message.c_str() + at + length, nullptr, 16));
}

const char *WordsOfStatus(uint32_t status)
{
    switch (status) {
    case TVXSTATUS_BUFFER_TOO_SMALL:
        return "the value holds more than the program reads";
    case TVXSTATUS_NOT_SUPPORTED:
        return "written into a section of the script";
    case TVXSTATUS_KEY_NOT_FOUND:
        return "there is no such key";
    case TVXSTATUS_VALUE_NOT_FOUND:
        return "there is no such value";
    default:
        return "the registry refused; the trace does not tell why";
    }
}

// An expectation of the program that was broken reads as it does in the source.
bool IsExpectation(const std::string &message)
{
    if (StartsWith(message, "Assert:(") || StartsWith(message, "!\"")) {
        return true;
    }
    const size_t name =
        message.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.:()->[]");
    return name != 0 && name != std::string::npos && message[name] == ' ' &&
           (message.compare(name, 4, " != ") == 0 || message.compare(name, 4, " == ") == 0 ||
            message.compare(name, 4, " <= ") == 0 || message.compare(name, 4, " >= ") == 0);
}

struct KnownRecord {
    const char *mFront;
    ETraceVerdict mVerdict;
    const char *mWhy;
};

// Records that are known by how they begin.
constexpr KnownRecord kKnown[] = {
    {", Source missing", ETraceVerdict::ENote, "nothing was copied"},
    {", Source Inf missing", ETraceVerdict::ENote, "nothing was copied"},
    {", invalid resource", ETraceVerdict::EFailed, "the field names no text of a library"},
    {"Assert:(mRelease ==", ETraceVerdict::ENothing, ""},
    {"Couldn't load source XML", ETraceVerdict::EFailed, "missing, or no XML"},
    {"DevRemove: FAILED", ETraceVerdict::ENote, "the companion is missing or no companion"},
    {"DevUpdate: A reboot is required", ETraceVerdict::EWaits, "the driver asks for the restart"},
    {"DevUpdate: Failed", ETraceVerdict::ENote, "the companion is missing or no companion"},
    {"Driver type not recognized", ETraceVerdict::EFailed, "PrefType of MAIN is none of the package lines"},
    {"Link command ", ETraceVerdict::ENote, "no link is made to a program that is not there"},
    {"No device found that this package is for", ETraceVerdict::ENote, "see the page about devices"},
    {"No place beside ", ETraceVerdict::EFailed, "the step tries on until there is one"},
    {"PendingFileRenameOperations exists", ETraceVerdict::ENote, "something waits for a restart already"},
    {"Platform not supported", ETraceVerdict::ENote, "the package does not know this Windows"},
    {"Reboot requested from the script", ETraceVerdict::EWaits, "the script asks for the restart"},
    {"Service is hung", ETraceVerdict::EFailed, "the service does not answer in the time that it named"},
    {"Service status is dirty", ETraceVerdict::ENote, "a service waits for a restart to go"},
    {"Skipping command: file does not exist", ETraceVerdict::ENote, "the group was not run"},
    {"The macros of ", ETraceVerdict::EFailed, "a macro holds itself"},
    {"The run failed: ", ETraceVerdict::EFailed, ""},
    {"TraceXmlError: ", ETraceVerdict::ENote, ""},
    {"Unknown step command: ", ETraceVerdict::ENote, ""},
    {"User is not admin", ETraceVerdict::ENote, "the run needs the rights of an administrator"},
    {"Version mismatch: ", ETraceVerdict::EFailed, "Version of MAIN is for another program"},
    {"endBang != std::string::npos", ETraceVerdict::ENote, "a \"!\" without its partner"},
    {"endHat != std::string::npos", ETraceVerdict::ENote, "a \"^\" without its partner"},
    // In every run of the package lines but one.
    {"mDriverType == EDriverISDTouch", ETraceVerdict::ENothing, ""},
    {"Checking ", ETraceVerdict::ENothing, ""},
};

std::string WhyOfNo(const std::string &reason, uint32_t errorBefore)
{
    if (!reason.empty()) {
        return reason;
    }
    const std::string before =
        errorBefore == 0 ? std::string() : "; the last error before the step was " + WordsOfError(errorBefore);
    return "the record does not tell why" + before;
}

} // namespace

TraceFinding JudgeRecord(const std::string &command, const TraceRecord &record, std::string &reason_I)
{
    TraceFinding finding;
    finding.mLine = record.mLine;
    const std::string &message = record.mMessage;
    // What the script itself writes is no outcome.
    if (command == "Log" || command == "LogExpanded") {
        return finding;
    }
    const auto tell = [&](ETraceVerdict verdict, const std::string &why) {
        finding.mVerdict = verdict;
        finding.mRecord = message.size() <= 300 ? message : message.substr(0, 300) + " ...";
        finding.mWhy = why;
        return finding;
    };
    const uint32_t error = ErrorOf(message);
    if (error != 0) {
        reason_I = WordsOfError(error);
    }
    for (const KnownRecord &known : kKnown) {
        if (StartsWith(message, known.mFront)) {
            return known.mVerdict == ETraceVerdict::ENothing
                       ? finding
                       : tell(known.mVerdict, error == 0 || reason_I.empty() ? known.mWhy : reason_I);
        }
    }
    const Result result = ResultOf(message);
    if (StartsWith(message, ", Reboot ")) {
        return !result.mIsOne ? finding
               : result.mDone ? tell(ETraceVerdict::EWaits,
                                     Contains(message, ", Move ")
                                         ? "the file was in use; the new one takes its place at the next start"
                                         : "the file goes at the next start")
                              : tell(ETraceVerdict::EFailed, WhyOfNo(reason_I, result.mErrorBefore));
    }
    if (result.mIsOne) {
        return result.mDone ? finding : tell(ETraceVerdict::EFailed, WhyOfNo(reason_I, result.mErrorBefore));
    }
    if (const uint32_t status = RegistryStatus(message)) {
        const bool missing = status == TVXSTATUS_KEY_NOT_FOUND || status == TVXSTATUS_VALUE_NOT_FOUND;
        return tell(missing ? ETraceVerdict::ENote : ETraceVerdict::EFailed, WordsOfStatus(status));
    }
    if (error != 0) {
        return tell(ETraceVerdict::ENote, reason_I);
    }
    if (StartsWith(message, ", Missing") && StartsWith(command, "Execute")) {
        return tell(ETraceVerdict::EFailed, "the program is not there");
    }
    std::string_view text = message;
    if ((StartsWith(message, "ProcessXMLData(") || StartsWith(message, "CleanupXMLData(")) && TakeBack(text, ") No")) {
        return tell(ETraceVerdict::EFailed, WhyOfNo(reason_I, 0));
    }
    if ((StartsWith(message, "Step ") && Contains(message, " failed: ")) ||
        (StartsWith(message, "Group ") && Contains(message, " is not run"))) {
        return tell(ETraceVerdict::EFailed, std::string());
    }
    if (StartsWith(message, "Section ") && Contains(message, " is too large (")) {
        return tell(ETraceVerdict::EFailed, "the steps behind what fits were never read");
    }
    if (IsExpectation(message)) {
        return tell(ETraceVerdict::ENote, "something is not as the program expects");
    }
    return finding;
}
