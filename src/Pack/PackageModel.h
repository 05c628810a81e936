// A package as the checks see it: its script files by way of the program's own readers, its groups as step lists with
// the place of each step, the words of its languages.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Commands/CommandFields.h"
#include "Pack/PackageTree.h"
#include "Pack/ProfileReader.h"
#include "Pack/ScriptLine.h"
#include "Script/ScriptFiles.h"
#include "Script/StepList.h"

constexpr char kMainScript[] = ".\\installer.dat";

// How a file comes to be one that the program reads.
enum class EScriptRole { EMain, EInclude, EDialogData, ECalled };

struct ScriptFile {
    std::string mPath; // as the package names it
    EScriptRole mRole;
    const CProfileFile *mFile;
};

// A field of a step, behind the command word.
struct StepField {
    std::string mText; // as the program sees it, before macros
    size_t mFrom = 0;  // of its first byte in the line's text
};

struct ScriptStep {
    CScriptLine mLine;
    std::string mLabel;
    std::string mWord; // the command word or the mark of a called group
    size_t mWordFrom = 0;
    std::vector<StepField> mFields;
    const CommandInfo *mCommand = nullptr;
    std::string mCall; // the group that the step calls in its bare form

    // The text of a field by its number in the command's row; empty past the last. A row that begins with a pause is
    // read as the program does, with and without one.
    std::string Field(size_t number) const;
    // Which of the step's fields that is; the count of them past the last.
    size_t FieldAt(size_t number) const;

    // The place of the word, of a field (that of the step past the last), of a part of a field.
    ScriptPlace Place() const;
    ScriptPlace PlaceOfField(size_t at) const;
    ScriptPlace PlaceInField(size_t at, size_t from, size_t length) const;
};

struct ScriptGroup {
    std::string mName;
    std::string mScript; // the script while the group runs; empty for the main one
    uint32_t mFile = 0;  // that it stands in
    ScriptPlace mPlace;  // of the line with its name
    bool mExists = false;
    bool mCut = false;               // it is longer than what the program reads
    std::unique_ptr<StepList> mList; // the program's own, step for step the same as mSteps
    std::vector<ScriptStep> mSteps;
};

// A language of the run, and the section that holds its words.
struct PackageLanguage {
    std::string mName;
    bool mHasSection = false;
    std::map<std::string, std::string> mWords; // what was asked for so far, by key
};

class CPackageModel {
public:
    // Both outlive the model.
    CPackageModel(IScriptSource &source, const CPackageTree &tree);
    ~CPackageModel();
    CPackageModel(const CPackageModel &) = delete;
    CPackageModel &operator=(const CPackageModel &) = delete;

    const CPackageTree &Tree() const { return mTree; }
    const std::vector<ScriptFile> &Files() const { return mFiles; }
    const CProfileFile &File(uint32_t number) const { return *mFiles[number].mFile; }

    // The number of a script file, read if it is not yet; nothing when the package has none of this path.
    std::optional<uint32_t> AddFile(const std::string &path, EScriptRole role);

    // A value by the program's rules, and the line that it comes from (none for a default).
    std::string Value(const std::string &section, const std::string &key, const std::string &defaultValue = "");
    const ProfileLine *ValueLine(const std::string &section, const std::string &key, uint32_t *file_O = nullptr);
    uint32_t Number(const std::string &section, const std::string &key, uint32_t defaultValue);

    // The place of a line's key or value; that of the first line of the main script for null.
    static ScriptPlace PlaceOfKey(const ProfileLine *line, uint32_t file);
    static ScriptPlace PlaceOfValue(const ProfileLine *line, uint32_t file);

    // A group as a call in a script (empty for the main one) finds it. The reference holds.
    ScriptGroup &Group(const std::string &script, const std::string &name);
    const std::vector<std::unique_ptr<ScriptGroup>> &Groups() const { return mGroups; }

    // The languages that a run can come to have.
    std::vector<PackageLanguage> &Languages() { return mLanguages; }

    // A word of a language; nothing when it lacks the key.
    std::optional<std::string> Word(PackageLanguage &language, const std::string &key);
    uint32_t WordNumber(const PackageLanguage &language, const std::string &key, uint32_t defaultValue);

    // The place of a word's value; that of the language's section when it lacks the word. The place of the section.
    ScriptPlace PlaceOfWord(const PackageLanguage &language, const std::string &key);
    ScriptPlace PlaceOfLanguage(const PackageLanguage &language) const;

    // The wide text of a word's bytes.
    static std::u16string WideWord(const PackageLanguage &language, const std::string &bytes);

    // Whether a section is one of those that hold no steps.
    bool IsDataSection(const std::string &name) const;
    bool IsLanguageSection(const std::string &name) const;

    // The paths in Include as they stand, expanded, and of DialogData.
    const std::vector<std::string> &Includes() const { return mIncludes; }

private:
    class CNotingReader;
    struct LanguageFiles;

    void ReadIncludes();
    void ReadLanguages();
    void LoadGroup(ScriptGroup &group_O);
    LanguageFiles &FilesOf(const PackageLanguage &language);

    IScriptSource &mSource;
    const CPackageTree &mTree;
    std::unique_ptr<CNotingReader> mReader;
    std::unique_ptr<CScriptFiles> mScripts;
    std::vector<std::string> mIncludes;
    std::string mDialogData;
    std::vector<ScriptFile> mFiles;
    std::map<std::string, uint32_t> mFileNumbers; // by the path in capitals
    std::vector<std::unique_ptr<ScriptGroup>> mGroups;
    std::map<std::string, ScriptGroup *> mGroupsByName;
    std::vector<PackageLanguage> mLanguages;
    std::map<std::string, std::unique_ptr<LanguageFiles>> mLanguageFiles;
};

// The code page that the words of a language are in: that of machines which show it.
uint32_t CodePageOf(const std::string &language);
