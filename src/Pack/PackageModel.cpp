#include "Pack/PackageModel.h"

#include <algorithm>
#include <utility>

#include "Common/LanguageProvider.h"
#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Common/TokenSplitter.h"
#include "Installer/Options.h"
#include "Pack/NumberText.h"
#include "Pack/PackMacros.h"
#include "Script/Macros.h"

namespace {

constexpr const char *kDataSections[] = {"MAIN",     "STATIC_FLAGS", "PlatformData", "OSSupportedFiles",
                                         "REGISTRY", "LINK"};
constexpr const char *kLanguages[] = {"en", "zh_CN", "neutral"};

// No value of a script is this, so that a read with it as its default tells whether there is one.
constexpr char kNoValue[] = "\x01no value";

} // namespace

// Tells which file a read has found its section in.
class CPackageModel::CNotingReader : public CProfileReader {
public:
    using CProfileReader::CProfileReader;

    uint32_t ReadSection(const std::string &file, const std::string &section, char *buffer_O, uint32_t size) override
    {
        const uint32_t length = CProfileReader::ReadSection(file, section, buffer_O, size);
        mFound = length != 0 ? file : mFound;
        return length;
    }
    uint32_t ReadValue(const std::string &file, const std::string &section, const std::string &key,
                       const std::string &defaultValue, char *buffer_O, uint32_t size) override
    {
        mFound = ValueLine(file, section, key) != nullptr ? file : mFound;
        return CProfileReader::ReadValue(file, section, key, defaultValue, buffer_O, size);
    }

    std::string mFound;
};

// The words of a language are read as a machine reads them that shows it.
struct CPackageModel::LanguageFiles {
    LanguageFiles(IScriptSource &source, uint32_t codePage)
        : mCodePage(codePage), mReader(source, mCodePage, kMainScript), mScripts(mReader)
    {
    }
    CCodePage mCodePage;
    CProfileReader mReader;
    CScriptFiles mScripts;
};

// --- steps ---

size_t ScriptStep::FieldAt(size_t number) const
{
    // The first field is the file itself when it does not begin with a number other than 0. Of a 0 that was meant as a
    // pause, the checks tell that it is none, and go on as if it were.
    const bool noPause = mCommand != nullptr && mCommand->mFields[0].mKind == EFieldPause &&
                         (mFields.empty() ||
                          (DecimalNumber(mFields.front().mText) == 0 && !FaultOfNumber(mFields.front().mText).empty()));
    if (noPause) {
        return number == 0 ? mFields.size() : std::min(number - 1, mFields.size());
    }
    return std::min(number, mFields.size());
}

std::string ScriptStep::Field(size_t number) const
{
    const size_t at = FieldAt(number);
    return at < mFields.size() ? mFields[at].mText : std::string();
}

ScriptPlace ScriptStep::Place() const
{
    return mLine.PlaceOf(mLine.RawOffset(mWordFrom), mWord.size());
}

ScriptPlace ScriptStep::PlaceOfField(size_t at) const
{
    return at < mFields.size() ? PlaceInField(at, 0, mFields[at].mText.size()) : Place();
}

ScriptPlace ScriptStep::PlaceInField(size_t at, size_t from, size_t length) const
{
    if (at >= mFields.size()) {
        return Place();
    }
    const size_t begin = mLine.RawOffset(mFields[at].mFrom + from);
    const size_t end = mLine.RawOffset(mFields[at].mFrom + from + length);
    return mLine.PlaceOf(begin, end - begin);
}

// --- files and values ---

CPackageModel::CPackageModel(IScriptSource &source, const CPackageTree &tree)
    : mSource(source), mTree(tree), mReader(std::make_unique<CNotingReader>(source, gCodePage, kMainScript)),
      mScripts(std::make_unique<CScriptFiles>(*mReader))
{
    mScripts->SetConfigFile("");
    AddFile(kMainScript, EScriptRole::EMain);
    mDialogData = Value("MAIN", "DialogData");
    ReadIncludes();
    if (!mDialogData.empty()) {
        AddFile(mDialogData, EScriptRole::EDialogData);
    }
    ReadLanguages();
}

CPackageModel::~CPackageModel() = default;

std::optional<uint32_t> CPackageModel::AddFile(const std::string &path, EScriptRole role)
{
    const auto known = mFileNumbers.find(UpperAscii(PlainPackagePath(path).value_or(path)));
    if (known != mFileNumbers.end()) {
        return known->second;
    }
    const CProfileFile *const file = mReader->File(path);
    if (file == nullptr) {
        return std::nullopt;
    }
    const auto number = static_cast<uint32_t>(mFiles.size());
    mFiles.push_back({PlainPackagePath(path).value_or(path), role, file});
    mFileNumbers[UpperAscii(mFiles.back().mPath)] = number;
    return number;
}

void CPackageModel::ReadIncludes()
{
    TokenSplitter items(";", Value("MAIN", "Include"));
    for (std::string item = items.First(); !items.AtEnd(); item = items.Next()) {
        CPackMacros macros;
        const std::string path = ExpandMacros(item, macros);
        mIncludes.push_back(path);
        mScripts->AddIncludeFile(path);
        if (!path.empty()) {
            AddFile(path, EScriptRole::EInclude);
        }
    }
}

std::string CPackageModel::Value(const std::string &section, const std::string &key, const std::string &defaultValue)
{
    return mScripts->ReadString(section, key, defaultValue);
}

const ProfileLine *CPackageModel::ValueLine(const std::string &section, const std::string &key, uint32_t *file_O)
{
    mReader->mFound.clear();
    if (mScripts->ReadString(section, key, kNoValue) == kNoValue || mReader->mFound.empty()) {
        return nullptr;
    }
    if (file_O != nullptr) {
        *file_O = AddFile(mReader->mFound, EScriptRole::EInclude).value_or(0);
    }
    return mReader->ValueLine(mReader->mFound, section, key);
}

uint32_t CPackageModel::Number(const std::string &section, const std::string &key, uint32_t defaultValue)
{
    return mScripts->ReadInteger(section, key, defaultValue);
}

ScriptPlace CPackageModel::PlaceOfKey(const ProfileLine *line, uint32_t file)
{
    if (line == nullptr) {
        return {0, 1, 1, 1};
    }
    return {file, line->mKeyPlace.mLine, line->mKeyPlace.mColumn, static_cast<uint32_t>(line->mKey.size())};
}

ScriptPlace CPackageModel::PlaceOfValue(const ProfileLine *line, uint32_t file)
{
    if (line == nullptr || !line->mHasValue) {
        return PlaceOfKey(line, file);
    }
    const auto length = static_cast<uint32_t>(std::max<size_t>(line->mValue.size(), 1));
    return {file, line->mValuePlace.mLine, line->mValuePlace.mColumn, length};
}

// --- groups ---

ScriptGroup &CPackageModel::Group(const std::string &script, const std::string &name)
{
    const std::string id = UpperAscii(script) + "\n" + UpperAscii(name);
    const auto known = mGroupsByName.find(id);
    if (known != mGroupsByName.end()) {
        return *known->second;
    }
    mGroups.push_back(std::make_unique<ScriptGroup>());
    ScriptGroup &group = *mGroups.back();
    mGroupsByName[id] = &group;
    group.mName = name;
    group.mScript = script;
    LoadGroup(group);
    return group;
}

void CPackageModel::LoadGroup(ScriptGroup &group_O)
{
    std::string text;
    mReader->mFound.clear();
    {
        const CScriptScope scope(*mScripts, group_O.mScript);
        text = mScripts->ReadString(group_O.mName, "", "");
    }
    group_O.mList = std::make_unique<StepList>(text);
    const std::string file = mReader->mFound;
    if (file.empty()) {
        // A section without a line reads like one that is not there.
        for (uint32_t at = 0; at < mFiles.size() && !group_O.mExists; ++at) {
            const ProfileSection *const section = mFiles[at].mFile->Find(gCodePage.ToWide(group_O.mName));
            if (section != nullptr) {
                group_O.mExists = true;
                group_O.mFile = at;
                group_O.mPlace = {at, section->mPlace.mLine, section->mPlace.mColumn,
                                  static_cast<uint32_t>(section->mName.size()) + 2};
            }
        }
        return;
    }
    group_O.mExists = true;
    group_O.mFile = AddFile(file, EScriptRole::ECalled).value_or(0);
    const ProfileSection &section = *File(group_O.mFile).Find(gCodePage.ToWide(group_O.mName));
    group_O.mPlace = {group_O.mFile, section.mPlace.mLine, section.mPlace.mColumn,
                      static_cast<uint32_t>(section.mName.size()) + 2};
    for (const SectionLine &line : mReader->SectionLines(file, group_O.mName, &group_O.mCut)) {
        for (CScriptLine &piece : CScriptLine::Cut(line, group_O.mFile)) {
            const size_t index = group_O.mSteps.size();
            if (piece.Text().compare(0, 1, "#") == 0 || index >= group_O.mList->Count()) {
                continue; // a comment, which the program's list does not have
            }
            const StepRecord &record = group_O.mList->Records()[index];
            ScriptStep &step = group_O.mSteps.emplace_back();
            step.mLine = std::move(piece);
            step.mLabel = record.mLabel;
            step.mWordFrom = step.mLine.Text().size() - record.mText.size();
            TokenSplitter fields(";", record.mText);
            step.mWord = fields.First();
            size_t from = step.mWordFrom + step.mWord.size() + 1;
            for (std::string field = fields.Next(); !fields.AtEnd(); field = fields.Next()) {
                step.mFields.push_back({field, from});
                from += field.size() + 1;
            }
            step.mCommand = FindCommand(step.mWord);
            step.mCall = step.mCommand == nullptr ? ExtractBangName(step.mWord) : std::string();
        }
    }
}

bool CPackageModel::IsDataSection(const std::string &name) const
{
    return std::any_of(std::begin(kDataSections), std::end(kDataSections),
                       [&](const char *data) { return EqualsNoCase(name, data); });
}

// --- languages ---

uint32_t CodePageOf(const std::string &language)
{
    constexpr uint32_t kSimplifiedChinese = 936;
    return EqualsNoCase(language, "zh_CN") ? kSimplifiedChinese : gCodePage.Number();
}

void CPackageModel::ReadLanguages()
{
    const std::string list = Value("MAIN", "Languages");
    for (const char *const shown : kLanguages) {
        LanguageProvider language{std::string(shown)};
        SettleLanguage(list, language);
        const std::string name = language.GetName();
        if (std::any_of(mLanguages.begin(), mLanguages.end(),
                        [&](const PackageLanguage &known) { return known.mName == name; })) {
            continue;
        }
        PackageLanguage found;
        found.mName = name;
        found.mHasSection = std::any_of(mFiles.begin(), mFiles.end(), [&](const ScriptFile &file) {
            return file.mFile->Find(gCodePage.ToWide(name)) != nullptr;
        });
        mLanguages.push_back(std::move(found));
    }
}

CPackageModel::LanguageFiles &CPackageModel::FilesOf(const PackageLanguage &language)
{
    std::unique_ptr<LanguageFiles> &files = mLanguageFiles[language.mName];
    if (!files) {
        files = std::make_unique<LanguageFiles>(mSource, CodePageOf(language.mName));
        files->mScripts.SetConfigFile("");
        files->mScripts.SetDialogData(mDialogData);
        for (const std::string &include : mIncludes) {
            files->mScripts.AddIncludeFile(include);
        }
    }
    return *files;
}

std::optional<std::string> CPackageModel::Word(PackageLanguage &language, const std::string &key)
{
    const auto known = language.mWords.find(key);
    const std::string word = known != language.mWords.end()
                                 ? known->second
                                 : language.mWords[key] =
                                       FilesOf(language).mScripts.ReadLanguageString(language.mName, key, kNoValue);
    return word == kNoValue ? std::nullopt : std::optional<std::string>(word);
}

uint32_t CPackageModel::WordNumber(const PackageLanguage &language, const std::string &key, uint32_t defaultValue)
{
    return FilesOf(language).mScripts.ReadLanguageInteger(language.mName, key, defaultValue);
}

// In the order of the search: the script, the file of words, the included files from the last on.
ScriptPlace CPackageModel::PlaceOfWord(const PackageLanguage &language, const std::string &key)
{
    std::vector<std::string> search = {kMainScript, mDialogData};
    search.insert(search.end(), mIncludes.rbegin(), mIncludes.rend());
    for (const std::string &path : search) {
        const ProfileLine *const line =
            path.empty() ? nullptr : FilesOf(language).mReader.ValueLine(path, language.mName, key);
        if (line != nullptr) {
            return PlaceOfValue(line, AddFile(path, EScriptRole::EInclude).value_or(0));
        }
    }
    return PlaceOfLanguage(language);
}

ScriptPlace CPackageModel::PlaceOfLanguage(const PackageLanguage &language) const
{
    for (uint32_t at = 0; at < mFiles.size(); ++at) {
        const ProfileSection *const section = mFiles[at].mFile->Find(gCodePage.ToWide(language.mName));
        if (section != nullptr) {
            return {at, section->mPlace.mLine, section->mPlace.mColumn,
                    static_cast<uint32_t>(section->mName.size()) + 2};
        }
    }
    return {0, 1, 1, 1};
}

std::u16string CPackageModel::WideWord(const PackageLanguage &language, const std::string &bytes)
{
    return CCodePage(CodePageOf(language.mName)).ToWide(bytes);
}

bool CPackageModel::IsLanguageSection(const std::string &name) const
{
    return std::any_of(std::begin(kLanguages), std::end(kLanguages),
                       [&](const char *language) { return EqualsNoCase(name, language); }) ||
           std::any_of(mLanguages.begin(), mLanguages.end(),
                       [&](const PackageLanguage &language) { return EqualsNoCase(name, language.mName); });
}
