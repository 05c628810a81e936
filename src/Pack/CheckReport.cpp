#include "Pack/CheckReport.h"

#include <algorithm>

#include "Pack/CodePage.h"

namespace {

constexpr size_t kWidestLine = 160;

struct Colours {
    const char *mBold = "";
    const char *mError = "";
    const char *mWarning = "";
    const char *mMark = "";
    const char *mEnd = "";
};

constexpr Colours kNoColours;
constexpr Colours kColours = {"\x1b[1m", "\x1b[1;31m", "\x1b[1;35m", "\x1b[1;32m", "\x1b[0m"};

std::string Plural(size_t count, const char *word)
{
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

// The line and the mark below. Of a long line the part around the mark is shown; bytes that would move the cursor
// become blanks.
void WriteLine(std::string_view line, const ScriptPlace &place, const Colours &colours, std::ostream &out_O)
{
    const size_t column = std::min<size_t>(place.mColumn - 1, line.size());
    const size_t from = column > kWidestLine / 2 ? column - kWidestLine / 2 : 0;
    const size_t length = std::min(line.size() - from, kWidestLine);
    std::string shown(line.substr(from, length));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    const size_t marked =
        std::min<size_t>(std::max<size_t>(place.mLength, 1), length - std::min(length, column - from) + 1);
    const std::string front = gCodePage.ToUtf8(shown.substr(0, column - from));
    const auto letters = [](const std::string &text) {
        return static_cast<size_t>(std::count_if(
            text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
    };
    out_O << "    " << front << gCodePage.ToUtf8(shown.substr(column - from)) << "\n    "
          << std::string(letters(front), ' ') << colours.mMark << '^' << std::string(marked > 1 ? marked - 1 : 0, '~')
          << colours.mEnd << '\n';
}

} // namespace

std::string FilePath(const CheckedPackage &package, const ScriptPlace &place)
{
    std::string path = gCodePage.ToUtf8(package.mCheck.PathOf(place));
    std::replace(path.begin(), path.end(), '\\', '/');
    const bool separated = package.mFolder.empty() || package.mFolder.back() == '/';
    return package.mFolder + (separated ? "" : "/") + path;
}

void WriteCheckText(const std::vector<CheckedPackage> &packages, bool colour, std::ostream &out_O)
{
    const Colours &colours = colour ? kColours : kNoColours;
    size_t errors = 0, warnings = 0, steps = 0;
    for (const CheckedPackage &package : packages) {
        for (const Diagnostic &found : package.mCheck.Found()) {
            const CheckInfo &info = InfoOf(found.mCheck);
            const ScriptPlace &place = found.mPlace;
            out_O << colours.mBold << FilePath(package, place) << ':' << place.mLine << ':' << place.mColumn << ": "
                  << colours.mEnd << (info.mSeverity == EError ? colours.mError : colours.mWarning)
                  << SeverityWord(info.mSeverity) << ": " << colours.mEnd << colours.mBold
                  << gCodePage.ToUtf8(found.mText) << colours.mEnd << " [" << info.mName << "]\n";
            WriteLine(package.mCheck.LineOf(place), place, colours, out_O);
        }
        errors += package.mCheck.Count(EError);
        warnings += package.mCheck.Count(EWarning);
        steps += package.mCheck.CountSteps();
    }
    out_O << Plural(packages.size(), "package") << ", " << Plural(steps, "step") << ": " << Plural(errors, "error")
          << ", " << Plural(warnings, "warning") << '\n';
}
