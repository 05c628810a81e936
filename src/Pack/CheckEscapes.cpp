// Back-slashes that do not mean what was meant.
#include <cstring>

#include "Common/StringUtilities.h"
#include "Pack/CheckContext.h"

namespace {

// What the letter behind a back-slash makes; null when the back-slash is only dropped.
const char *MeaningOf(char letter)
{
    switch (letter) {
    case 'a':
        return "a bell";
    case 'b':
        return "a backspace";
    case 'f':
        return "a form feed";
    case 'n':
        return "a line end";
    case 'r':
        return "a carriage return";
    case 't':
        return "a tab";
    case 'v':
        return "a vertical tab";
    case '0':
        return "the end of the line";
    default:
        return nullptr;
    }
}

bool IsPlainEscape(char letter)
{
    return letter == '\\' || letter == '"' || letter == '\'';
}

// Looks at the escapes of a raw text. `place` turns a place in it and a length into that in the file.
void CheckText(CheckContext &context, std::string_view raw, bool path,
               const std::function<ScriptPlace(size_t, size_t)> &place)
{
    for (size_t at = raw.find('\\'); at != std::string_view::npos; at = raw.find('\\', at + 2)) {
        if (at + 1 >= raw.size()) {
            context.mFound.Add(ECheckLostBackslash, place(at, 1),
                               "a back-slash at the end of a line is dropped; double it");
            return;
        }
        const char letter = raw[at + 1];
        const char *const meaning = MeaningOf(letter);
        const std::string escape = {'\\', letter};
        const std::string doubled = "write \\" + escape;
        if (meaning == nullptr && !IsPlainEscape(letter)) {
            context.mFound.Add(ECheckLostBackslash, place(at, 2),
                               "the back-slash of " + escape + " is dropped; " + doubled);
        } else if (meaning != nullptr && path) {
            context.mFound.Add(ECheckEscapeInPath, place(at, 2), escape + " is " + meaning + " here; " + doubled);
        }
    }
}

void CheckStep(CheckContext &context, const ScriptStep &step)
{
    const std::string &raw = step.mLine.Raw();
    // A path in front, as in a step without its command, counts as text.
    const auto check = [&](size_t from, size_t end, bool path) {
        CheckText(context, std::string_view(raw).substr(from, end - from), path,
                  [&](size_t at, size_t length) { return step.mLine.PlaceOf(from + at, length); });
    };
    if (step.mFields.empty()) {
        check(0, raw.size(), false);
        return;
    }
    std::vector<bool> paths(step.mFields.size(), false);
    if (step.mCommand == nullptr) {
        paths.front() = !step.mCall.empty();
    }
    ForEachField(
        step, [&](const CommandField &field, size_t at, const std::string &) { paths[at] = IsPathField(field.mKind); });
    check(0, step.mLine.RawOffset(step.mFields.front().mFrom), false);
    for (size_t at = 0; at < step.mFields.size(); ++at) {
        const size_t from = step.mLine.RawOffset(step.mFields[at].mFrom);
        const bool last = at + 1 == step.mFields.size();
        const size_t end = last ? raw.size() : step.mLine.RawOffset(step.mFields[at + 1].mFrom - 1);
        check(from, end, paths[at]);
        if (last && paths[at] && step.mLine.EndsInNul()) {
            context.mFound.Add(ECheckEscapeInPath, step.mLine.PlaceOf(raw.size(), 2),
                               "\\0 is the end of the line here; write \\\\0");
        }
    }
}

// The text with plain letters in place of characters of two bytes, and of the back-slash that stands up for the second
// byte of one.
std::string WithoutPairs(const CCodePage &codePage, std::string text)
{
    std::vector<uint32_t> places;
    codePage.ToWide(text, &places);
    for (size_t at = 0; at + 1 < places.size(); ++at) {
        const size_t from = places[at], next = places[at + 1];
        if (next - from == 2) {
            const bool doubled = text[from + 1] == '\\' && next < text.size() && text[next] == '\\';
            text.replace(from, doubled ? 3 : 2, doubled ? 3 : 2, 'x');
        }
    }
    return text;
}

// Values of the sections that hold them; those of the keys and sections that name paths are paths.
void CheckValues(CheckContext &context, uint32_t file, const ProfileSection &section, const std::string &name)
{
    for (const ProfileLine &line : section.mLines) {
        const std::string key = gCodePage.FromWide(line.mKey);
        if (!line.mHasValue || line.mValue.empty() || line.IsComment() || key.find(';') != std::string::npos) {
            continue;
        }
        const bool path = EqualsNoCase(name, "PlatformData") || EqualsNoCase(key, "Include") ||
                          EqualsNoCase(key, "DialogData") || EqualsNoCase(key, "MustUninstallFile") ||
                          EqualsNoCase(key, "LicenseFile");
        const CCodePage codePage(CodePageOf(name));
        const std::string raw = WithoutPairs(codePage, gCodePage.FromWide(line.mValue));
        const ScriptPlace begin = CPackageModel::PlaceOfValue(&line, file);
        CheckText(context, raw, path, [&](size_t at, size_t length) {
            return ScriptPlace{file, begin.mLine, begin.mColumn + static_cast<uint32_t>(at),
                               static_cast<uint32_t>(length)};
        });
    }
}

} // namespace

void CheckEscapes(CheckContext &context)
{
    ForEachStep(context, [&](const CheckedStep &checked) { CheckStep(context, checked.mStep); });
    for (uint32_t file = 0; file < context.mModel.Files().size(); ++file) {
        for (const ProfileSection &section : context.mModel.File(file).Sections()) {
            const std::string name = gCodePage.FromWide(section.mName);
            const bool raw = EqualsNoCase(name, "REGISTRY"); // taken as it stands
            if (!raw && (context.mModel.IsDataSection(name) || context.mModel.IsLanguageSection(name))) {
                CheckValues(context, file, section, name);
            }
        }
    }
}
