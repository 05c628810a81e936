// What was found, written for people and for programs.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Pack/PackageCheck.h"

struct CheckedPackage {
    std::string mFolder; // as it was named
    const CPackageCheck &mCheck;
};

// Each finding with its line and a mark below, and the numbers at the end.
void WriteCheckText(const std::vector<CheckedPackage> &packages, bool colour, std::ostream &out_O);

void WriteCheckJson(const std::vector<CheckedPackage> &packages, std::ostream &out_O);

// The interchange format of static analysis, version 2.1.0.
void WriteCheckSarif(const std::vector<CheckedPackage> &packages, std::ostream &out_O);

// A path of the package below the folder, with slashes.
std::string FilePath(const CheckedPackage &package, const ScriptPlace &place);
