#include "Pack/PlanCommand.h"

void WritePlanPage(const Plan &, const std::string &, std::ostream &) {}
