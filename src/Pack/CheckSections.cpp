// Sections and keys that are never read, or not to their end.
#include <map>
#include <set>

#include "Common/StringUtilities.h"
#include "Pack/CheckContext.h"

namespace {

std::string NameOf(const ProfileSection &section)
{
    return gCodePage.FromWide(section.mName);
}

ScriptPlace PlaceOf(const ProfileSection &section, uint32_t file)
{
    return {file, section.mPlace.mLine, section.mPlace.mColumn, static_cast<uint32_t>(section.mName.size()) + 2};
}

void CheckStrayLines(CheckContext &context, uint32_t file)
{
    for (const ProfileLine &line : context.mModel.File(file).Sections().front().mLines) {
        if (!line.IsComment() && line.mKey.substr(0, 1) != u"#") {
            context.mFound.Add(ECheckStrayLine, CPackageModel::PlaceOfKey(&line, file),
                               "nothing reads a line in front of the first section");
            return;
        }
    }
}

// Of two keys the first counts; the flags are read as a whole, so there it is the last.
void CheckDuplicateKeys(CheckContext &context, const ProfileSection &section, uint32_t file)
{
    const bool flags = EqualsNoCase(NameOf(section), "STATIC_FLAGS");
    const bool words = context.mModel.IsLanguageSection(NameOf(section));
    std::map<std::string, const ProfileLine *> seen;
    for (const ProfileLine &line : section.mLines) {
        // The group of a language has steps between its words.
        if (!line.mHasValue || line.IsComment() || (words && line.mKey.find(u';') != std::u16string::npos)) {
            continue;
        }
        const std::string key = gCodePage.FromWide(line.mKey);
        const auto [first, isNew] = seen.insert({flags ? key : UpperAscii(key), &line});
        if (isNew) {
            continue;
        }
        const ProfileLine *const lost = flags ? first->second : &line;
        const ProfileLine *const read = flags ? &line : first->second;
        context.mFound.Add(ECheckDuplicateKey, CPackageModel::PlaceOfKey(lost, file),
                           key + " stands twice, and the " + (flags ? "last" : "first") + " one counts, in line " +
                               std::to_string(read->mKeyPlace.mLine),
                           {CPackageModel::PlaceOfKey(read, file)});
        first->second = flags ? &line : first->second;
    }
}

void CheckDuplicateSections(CheckContext &context, uint32_t file)
{
    std::map<std::string, const ProfileSection *> seen;
    for (const ProfileSection &section : context.mModel.File(file).Sections()) {
        if (section.mPlace.mLine == 0) {
            continue;
        }
        const std::string name = NameOf(section);
        const auto [first, isNew] = seen.insert({UpperAscii(name), &section});
        if (!isNew) {
            context.mFound.Add(ECheckDuplicateSection, PlaceOf(section, file),
                               "[" + name +
                                   "] stands twice, and nothing reads the second one; the first begins in line " +
                                   std::to_string(first->second->mPlace.mLine),
                               {PlaceOf(*first->second, file)});
        } else if (context.mModel.IsDataSection(name) || context.mModel.IsLanguageSection(name)) {
            CheckDuplicateKeys(context, section, file);
        }
    }
}

// Files of Include and the main script are searched together, so a group of one can hide that of another.
void CheckShadowedGroups(CheckContext &context, uint32_t file)
{
    const ScriptFile &script = context.mModel.Files()[file];
    if (script.mRole != EScriptRole::EInclude) {
        return;
    }
    for (const ProfileSection &section : script.mFile->Sections()) {
        const std::string name = NameOf(section);
        if (section.mPlace.mLine == 0 || name.empty() || context.mModel.IsDataSection(name) ||
            context.mModel.IsLanguageSection(name)) {
            continue;
        }
        const ScriptGroup &read = context.mModel.Group("", name);
        if (read.mExists && read.mFile != file && !read.mSteps.empty()) {
            context.mFound.Add(ECheckShadowedGroup, PlaceOf(section, file),
                               "[" + name + "] is never read: the group of " +
                                   context.mModel.Files()[read.mFile].mPath + " counts",
                               {read.mPlace});
        }
    }
}

void CheckLengths(CheckContext &context, uint32_t file)
{
    for (const ProfileSection &section : context.mModel.File(file).Sections()) {
        for (const ProfileLine &line : section.mLines) {
            if (line.mHasValue && !line.IsComment() && line.mValue.size() >= kValueBufferSize) {
                context.mFound.Add(ECheckValueTooLong, CPackageModel::PlaceOfKey(&line, file),
                                   "a value has at most " + std::to_string(kValueBufferSize - 1) +
                                       " characters, the rest is cut off");
            }
        }
    }
}

} // namespace

void CheckSections(CheckContext &context)
{
    for (uint32_t file = 0; file < context.mModel.Files().size(); ++file) {
        CheckStrayLines(context, file);
        CheckDuplicateSections(context, file);
        CheckShadowedGroups(context, file);
        CheckLengths(context, file);
    }
    for (const auto &group : context.mModel.Groups()) {
        if (group->mCut && !group->mSteps.empty()) {
            const ScriptStep &last = group->mSteps.back();
            context.mFound.Add(ECheckSectionTooLong, last.mLine.PlaceOf(0, last.mLine.Raw().size()),
                               "a section has at most " + std::to_string(kValueBufferSize - 2) +
                                   " characters: the program reads [" + group->mName + "] up to here",
                               {group->mPlace});
        }
    }
}
