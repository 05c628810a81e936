// What all checks work with, and the checks themselves, by the file that holds them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Pack/Diagnostics.h"
#include "Pack/GroupFlow.h"
#include "Pack/PackageModel.h"

struct CheckContext {
    CPackageModel &mModel;
    CGroupFlow &mFlow;
    CDiagnostics &mFound;
    // The folder that the package installs its program into, where a removal runs; empty when it does not.
    std::string mRemovalFolder;
};

// A step as a check gets it. One that no run reaches is looked at as if all runs did.
struct CheckedStep {
    ScriptGroup &mGroup;
    uint32_t mIndex;
    const ScriptStep &mStep;
    RunSet mRuns;
    bool mReached;
};

void ForEachStep(CheckContext &context, const std::function<void(const CheckedStep &)> &visit);

// A field of a step that the command's row describes, and where it is among the step's own.
using FieldVisit = std::function<void(const CommandField &field, size_t at, const std::string &text)>;
void ForEachField(const ScriptStep &step, const FieldVisit &visit);

// Whether a field holds a path of files or of the registry.
bool IsPathField(EFieldKind kind);

// Whether a text is "; check: allow ..." behind a step, which the program takes for a field too many.
bool IsAllowField(const std::string &text);

// "name, other" of a list.
std::string Listed(const std::vector<std::string> &names);

void CheckSettings(CheckContext &context);  // CheckSettings.cpp
void CheckSections(CheckContext &context);  // CheckSections.cpp
void CheckLetters(CheckContext &context);   // CheckLetters.cpp
void CheckSteps(CheckContext &context);     // CheckSteps.cpp
void CheckFields(CheckContext &context);    // CheckFields.cpp
void CheckKeys(CheckContext &context);      // CheckKeys.cpp
void CheckLabels(CheckContext &context);    // CheckLabels.cpp
void CheckGroups(CheckContext &context);    // CheckGroups.cpp
void CheckEndless(CheckContext &context);   // CheckEndless.cpp
void CheckEscapes(CheckContext &context);   // CheckEscapes.cpp
void CheckMacros(CheckContext &context);    // CheckMacros.cpp
void CheckPages(CheckContext &context);     // CheckPages.cpp
void CheckFiles(CheckContext &context);     // CheckFiles.cpp
void CheckRemoval(CheckContext &context);   // CheckRemoval.cpp; finds mRemovalFolder
void CheckInventory(CheckContext &context); // CheckInventory.cpp
