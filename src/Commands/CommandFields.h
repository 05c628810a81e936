// What the commands of the script are and take, for everything that looks at steps without running them. Needs neither
// Windows nor the handlers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Commands/CommandTable.h"

// What a field is.
enum EFieldKind : uint8_t {
    EFieldSource,       // a file or folder that the step reads and cannot do without
    EFieldCustomSource, // the same, with the product's name in its path or without
    EFieldData,         // a file that the step reads when it is there
    EFieldLinked,       // a file that something is to refer to
    EFieldProgram,      // a file that is run or opened
    EFieldCompanion,    // the companion, a library or a program
    EFieldFile,         // the file that the step writes, deletes, tests or names
    EFieldFolder,       // the folder that the step makes, fills, empties or deletes
    EFieldScript,       // the script file of a called group
    EFieldGroup,        // a group between marks: !GROUP!
    EFieldTarget,       // of a condition: a label, a group between marks, <DONE>
    EFieldKey,          // a path of the registry; a mark at its beginning names an entry of PlatformData
    EFieldValueName,    // of a value, in the registry or in a data file
    EFieldText,
    EFieldNumber, // decimal
    EFieldPause,  // a number other than 0; a text is the next field
    EFieldPermissions,
    EFieldVersion, // major.minor or major.x
    EFieldFlag,
    EFieldDevice,
    EFieldService,
};

// How the handler reads a field, see CStep.
enum EFieldReading : uint8_t {
    EReadPlain,
    EReadExpanded,
    EReadNumber,
};

// Whether a step can do without a field.
enum EFieldNeed : uint8_t {
    ENeedText,    // it says something
    ENeedField,   // it may be empty, which has a meaning
    ENeedNothing, // it may be missing
};

struct CommandField {
    const char *mName; // as the manual calls it; null behind the last field
    EFieldKind mKind;
    EFieldReading mReading;
    EFieldNeed mNeed;
};

// What a command does.
enum EEffect : uint8_t {
    EDoesNothing,
    ETests,
    ETestsFile,
    ETestsValue,
    EJumps,
    ECallsGroup,
    EEndsGroup,
    ETraces,
    EMovesTrace,
    EWaits,
    EShowsBox,
    EAsksRestart,
    ESetsFlag,
    EWritesFile,
    EWritesFolder,
    EGivesInf,
    EMakesFolder,
    EDeletesFile,
    EDeletesFolder,
    EEmptiesFolder,
    EDeletesPrefs,
    EWritesValue, // an empty one deletes it, or the key when it has no name
    EAddsEntry,
    ETakesEntry,
    EMakesLink,
    EDeletesLink,
    ENamesFile,
    ERegisters,
    EUnregisters,
    EStartsProgram,
    EStopsService,
    EStartsService,
    EMakesDriver,
    ERemovesDriver,
    ENamesDevice,
    ESetsDevices,
    EAsksTablet,
};

// The word for it, as in "writes file".
const char *EffectWord(EEffect effect);

// Which of the two views of 64-bit Windows, onto the system folder or the registry, a command works in.
enum EView : uint8_t {
    EViewNone,       // it does not matter
    EView64,         // that of 64-bit programs
    EViewRedirected, // that of a 32-bit program
    EViewMixed,      // reads in the one and writes in the other
};

constexpr size_t kMostFields = 6;

struct CommandInfo {
    const char *mName;
    uint32_t mNumber;
    EEffect mEffect;
    EView mView;
    CommandField mFields[kMostFields + 1]; // the last one has no name

    size_t CountFields() const;
    // Whether the last field is a target.
    bool HasTarget() const;
};

// In the order of their numbers, as gCommands.
extern const CommandInfo gCommandInfos[kCommandCount];

// The description of a command by its word, exact with regard to case; null for a word that is none.
const CommandInfo *FindCommand(std::string_view name);
