// What a trace record costs beside the bare write of its bytes. The same steps are run twice, traced and with their
// records filtered out by the diagnostic level; the difference is what the trace takes.
#include <string>
#include <vector>

#include "Bench.h"

namespace {

constexpr int kRounds = 9;
constexpr int kCalls = 20;  // of the middle group by Install, and of the last group by the middle one
constexpr int kLines = 125; // steps of the last group; a section holds 10 KB at most

// The diagnostic level of runs while this lives, in the settings of the installer.
class DiagnosticLevel {
public:
    explicit DiagnosticLevel(DWORD level)
    {
        DWORD disposition = 0;
        if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, kSettings, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &mKey,
                            &disposition) != ERROR_SUCCESS ||
            RegSetValueExA(mKey, kName, 0, REG_DWORD, reinterpret_cast<const BYTE *>(&level), sizeof level) !=
                ERROR_SUCCESS) {
            Fail("setting the diagnostic level");
        }
        mNewKey = disposition == REG_CREATED_NEW_KEY;
    }
    ~DiagnosticLevel()
    {
        RegDeleteValueA(mKey, kName);
        RegCloseKey(mKey);
        if (mNewKey) {
            RegDeleteKeyA(HKEY_LOCAL_MACHINE, kSettings);
        }
    }
    DiagnosticLevel(const DiagnosticLevel &) = delete;
    DiagnosticLevel &operator=(const DiagnosticLevel &) = delete;

private:
    static constexpr char kSettings[] = "Software\\TAVIX\\Installer";
    static constexpr char kName[] = "DiagnosticLevel";
    HKEY mKey = nullptr;
    bool mNewKey = false;
};

std::string Lines(const char *group, int count, const std::string &step)
{
    std::string text = "[" + std::string(group) + "]\r\n";
    for (int line = 0; line < count; ++line) {
        text += step + "\r\n";
    }
    return text;
}

} // namespace

int main()
{
    const StagedPackage package;
    package.Script(Lines("Install", kCalls, "Command;!Middle!") + Lines("Middle", kCalls, "Command;!Last!") +
                   Lines("Last", kLines, "Log;a record of about eighty characters, as most of them are"));
    std::vector<double> traced;
    std::vector<double> filtered;
    std::vector<double> trace;
    std::vector<double> bare;
    size_t records = 0;
    size_t bytes = 0;
    for (int round = 0; round < kRounds; ++round) {
        traced.push_back(package.Run().mMilliseconds);
        const std::string written = package.Trace();
        if (CountOf(written, "-- Instruction Log") != static_cast<size_t>(kCalls) * kCalls * kLines) {
            Fail("the trace does not tell of the steps of the script");
        }
        {
            const DiagnosticLevel onlyErrors(1);
            filtered.push_back(package.Run().mMilliseconds);
        }
        const size_t kept = Records(package.Trace()).size();
        std::vector<std::string> own = Records(written);
        own.resize(own.size() - kept); // as many as the difference of the two runs wrote
        bare.push_back(WriteBare(own, package.Path("bare.txt")));
        trace.push_back(traced.back() - filtered.back());
        records = own.size();
        bytes = FileSize(package.Path("bare.txt"));
    }
    Print("records", static_cast<double>(records), "records", 0);
    Print("their size", static_cast<double>(bytes) / 1024, "KiB", 0);
    Print("traced run", Median(traced), "ms");
    Print("the same with the records filtered", Median(filtered), "ms");
    Print("trace", Median(trace), "ms");
    Print("records a second", 1000.0 * static_cast<double>(records) / Median(trace), "/s", 0);
    Print("bare writes", Median(bare), "ms");
    Print("bare writes a second", 1000.0 * static_cast<double>(records) / Median(bare), "/s", 0);
    Print("trace ratio of the medians", Median(trace) / Median(bare), "x", 2);
    Print("trace ratio of the best", (Least(traced) - Least(filtered)) / Least(bare), "x", 2);
    return 0;
}
