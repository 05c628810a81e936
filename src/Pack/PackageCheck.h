// A package looked at by all checks.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Pack/Diagnostics.h"
#include "Pack/PackageModel.h"
#include "Pack/PackageTree.h"

class CPackageCheck {
public:
    // Both outlive the object. `commands` are groups that /command runs, besides Install and Uninstall.
    CPackageCheck(IScriptSource &source, const CPackageTree &tree, const std::vector<std::string> &commands = {});

    // Whether there is a script at all; without one nothing is found.
    bool HasScript() const { return !mModel->Files().empty(); }

    // What is wrong, by place.
    const std::set<Diagnostic> &Found() const { return mFound.All(); }
    size_t Count(ESeverity severity) const;

    // The path of a file in the package, and a line of it.
    const std::string &PathOf(const ScriptPlace &place) const { return mModel->Files()[place.mFile].mPath; }
    std::string_view LineOf(const ScriptPlace &place) const { return mModel->File(place.mFile).LineText(place.mLine); }

    // How many steps were looked at.
    size_t CountSteps() const;

private:
    std::unique_ptr<CPackageModel> mModel;
    CDiagnostics mFound;
};
