// From a package and the description of a machine to the plan of a run.
#pragma once

#include "Pack/PackageFolder.h"
#include "Pack/PackageTree.h"
#include "Pack/PlanMachine.h"
#include "Pack/PlanTree.h"

// Makes the plan: the decisions in front of the first step by the product's own rules, then the steps. `source` gives
// the package's files, `tree` knows their names. Throws std::invalid_argument, with words for the user, for a
// description that makes no sense.
Plan MakePlan(const PlanOptions &options, IScriptSource &source, const CPackageTree &tree);
