// What stands in MAIN, and the files and languages that it names.
#include <algorithm>

#include "Common/LanguageProvider.h"
#include "Common/StringUtilities.h"
#include "Common/TokenSplitter.h"
#include "Installer/DriverTypes.h"
#include "Pack/CheckContext.h"
#include "Pack/NumberText.h"
#include "Pack/PackMacros.h"
#include "Script/ScriptVersion.h"

namespace {

const std::vector<std::string> kTexts = {"Version", "PrefType",   "Languages",
                                         "Include", "DialogData", "MustUninstallFile"};
const std::vector<std::string> kNumbers = {
    "ISD", "VISD", "TOUCH", "INK_OVERRIDE", "WINTE_OVERRIDE", "WIN64_OVERRIDE", "OBSOS_OVERRIDE", "AllowOEM"};

bool Has(const std::vector<std::string> &names, const std::string &name)
{
    return std::any_of(names.begin(), names.end(), [&](const std::string &known) { return EqualsNoCase(known, name); });
}

// The place of a piece of a value; of the whole value when the piece is written in another way.
ScriptPlace PlaceOfPiece(CPackageModel &model, const ProfileLine *line, uint32_t file, const std::string &piece)
{
    ScriptPlace place = CPackageModel::PlaceOfValue(line, file);
    if (line != nullptr && !piece.empty()) {
        const std::string text(model.File(file).LineText(place.mLine));
        const size_t at = text.find(piece, place.mColumn - 1);
        if (at != std::string::npos) {
            place.mColumn = static_cast<uint32_t>(at + 1);
            place.mLength = static_cast<uint32_t>(piece.size());
        }
    }
    return place;
}

void CheckVersionAndLine(CheckContext &context)
{
    CPackageModel &model = context.mModel;
    uint32_t file = 0;
    const std::string version = model.Value("MAIN", "Version");
    if (!IsScriptVersion(version)) {
        const ProfileLine *const line = model.ValueLine("MAIN", "Version", &file);
        context.mFound.Add(ECheckWrongVersion, CPackageModel::PlaceOfValue(line, file),
                           "MAIN needs a Version that begins with " + std::string(kScriptVersion, kComparedVersion) +
                               ", and has \"" + version + "\": every run ends at once");
    }
    file = 0;
    const std::string prefType = model.Value("MAIN", "PrefType");
    if (!SettleDriverType(prefType)) {
        const ProfileLine *const line = model.ValueLine("MAIN", "PrefType", &file);
        context.mFound.Add(ECheckWrongPrefType, CPackageModel::PlaceOfValue(line, file),
                           "MAIN needs a PrefType, and has \"" + prefType +
                               "\": it is Pen_Tablet, Tavix_Tablet, ISD_Tablet, Pen_Touch, Tavix_Touch or ISD_Touch");
    }
}

// A further script file, of Include or DialogData.
void CheckScriptPath(CheckContext &context, const char *key, const std::string &written, bool first)
{
    CPackMacros macros;
    const std::string path = ExpandMacros(written, macros);
    if (path.empty()) {
        return;
    }
    uint32_t file = 0;
    const ProfileLine *const line = context.mModel.ValueLine("MAIN", key, &file);
    std::string name = path;
    name.erase(0, name.find_last_of("\\/") + 1);
    const ScriptPlace place = PlaceOfPiece(context.mModel, line, file, name);
    if (path.find_first_of("\\/:") == std::string::npos) {
        context.mFound.Add(ECheckPathWithoutFolder, place,
                           "Windows reads " + path + " in its own folder; write .\\\\" + path);
    } else if (const PackageEntry *const entry = context.mModel.Tree().Find(path); entry == nullptr) {
        context.mFound.Add(ECheckMissingInclude, place,
                           path + " is not in the package" +
                               (first ? ": its groups and words are missing, and every text that no file has is empty "
                                        "even where it has a default"
                                      : ": its groups and words are missing"));
    } else if (!context.mModel.Tree().IsWrittenSo(path, *entry)) {
        context.mFound.Add(ECheckOtherCase, place, "the package has this file as " + entry->mPath);
    }
}

void CheckIncludes(CheckContext &context)
{
    TokenSplitter items(";", context.mModel.Value("MAIN", "Include"));
    bool first = true;
    for (std::string item = items.First(); !items.AtEnd(); item = items.Next()) {
        CheckScriptPath(context, "Include", item, first);
        first = false;
    }
    CheckScriptPath(context, "DialogData", context.mModel.Value("MAIN", "DialogData"), false);
}

void CheckLanguages(CheckContext &context)
{
    CPackageModel &model = context.mModel;
    uint32_t file = 0;
    const ProfileLine *const line = model.ValueLine("MAIN", "Languages", &file);
    TokenSplitter items(";", model.Value("MAIN", "Languages"));
    for (std::string item = items.First(); line != nullptr && !items.AtEnd(); item = items.Next()) {
        if (!item.empty() && !LanguageProvider(item).IsSupported()) {
            context.mFound.Add(ECheckUnknownLanguage, PlaceOfPiece(model, line, file, item),
                               "the program knows en, zh_CN and neutral, and no \"" + item + "\"");
        }
    }
    for (const PackageLanguage &language : model.Languages()) {
        if (!language.mHasSection) {
            context.mFound.Add(ECheckMissingLanguage, PlaceOfPiece(model, line, file, language.mName),
                               line != nullptr
                                   ? "no script file has a section [" + language.mName + "] with the words of it"
                                   : "without Languages in MAIN a run can be in " + language.mName +
                                         ", which no section has words for");
        }
    }
}

void CheckKeysOfMain(CheckContext &context)
{
    std::vector<std::string> known = kTexts;
    known.insert(known.end(), kNumbers.begin(), kNumbers.end());
    for (uint32_t number = 0; number < context.mModel.Files().size(); ++number) {
        const ProfileSection *const section = context.mModel.File(number).Find(u"MAIN");
        for (const ProfileLine &line : section != nullptr ? section->mLines : std::vector<ProfileLine>()) {
            const std::string key = gCodePage.FromWide(line.mKey);
            if (line.IsComment()) {
                continue;
            }
            if (!Has(known, key)) {
                context.mFound.Add(ECheckUnknownSetting, CPackageModel::PlaceOfKey(&line, number),
                                   "the program reads no " + key + " from MAIN" + NearestHint(key, known));
            } else if (Has(kNumbers, key)) {
                const std::string fault = FaultOfNumber(gCodePage.FromWide(line.mValue));
                if (!fault.empty()) {
                    context.mFound.Add(ECheckBadNumber, CPackageModel::PlaceOfValue(&line, number), fault);
                }
            }
        }
    }
}

} // namespace

void CheckSettings(CheckContext &context)
{
    CheckVersionAndLine(context);
    CheckIncludes(context);
    CheckLanguages(context);
    CheckKeysOfMain(context);
}
