// Foreign packages through all checks. Each finding stands at a place that there is, and a second look finds the same.
#include <sstream>

#include "Pack/CheckReport.h"
#include "Pack/CodePage.h"
#include "Common/StringUtilities.h"
#include "Common/UserLanguage.h"
#include "Require.h"
#include "TraceRecorder.h"

namespace {

// A package out of the bytes: the script, and behind each record separator a further one.
class CFuzzPackage : public IScriptSource {
public:
    explicit CFuzzPackage(const std::string &bytes)
    {
        size_t from = 0;
        for (const char *const name : {"INSTALLER.DAT", "MORE.DAT", "WORDS.DAT"}) {
            const size_t end = std::min(bytes.find('\x1e', from), bytes.size());
            mFiles[name] = bytes.substr(from, end - from);
            from = std::min(end + 1, bytes.size());
        }
    }
    std::optional<std::string> ReadFile(const std::string &path) override
    {
        const std::optional<std::string> plain = PlainPackagePath(path);
        const auto file = mFiles.find(UpperAscii(plain.value_or(std::string())));
        return file != mFiles.end() ? std::optional<std::string>(file->second) : std::nullopt;
    }

private:
    std::map<std::string, std::string> mFiles;
};

const CPackageTree &Tree()
{
    static const auto &tree = *new CPackageTree([] {
        CPackageTree made;
        for (const char *const path : {"installer.dat", "more.dat", "words.dat", "pen.ini", "payload\\Pen.dll"}) {
            made.AddFile(path);
        }
        return made;
    }());
    return tree;
}

} // namespace

uint32_t GetUserLocaleId()
{
    return 0;
}

uint16_t GetUserUILanguageId()
{
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    CFuzzPackage package(TextOf(data, size));
    const CPackageCheck check(package, Tree(), {"Repair"});
    for (const Diagnostic &found : check.Found()) {
        const std::string_view line = check.LineOf(found.mPlace);
        Require(found.mPlace.mLine != 0 && found.mPlace.mColumn != 0 && !found.mText.empty());
        Require(found.mPlace.mColumn <= line.size() + 1);
    }
    std::ostringstream text;
    WriteCheckText({{"package", check}}, true, text);
    // Twice the work, so not for each input.
    if (size % 256 == 0) {
        const CPackageCheck again(package, Tree(), {"Repair"});
        Require(again.Found().size() == check.Found().size());
        WriteCheckSarif({{"package", again}}, text);
    }
    Require(text.str().size() > 20);
    TakeTraceRecords();
    return 0;
}
